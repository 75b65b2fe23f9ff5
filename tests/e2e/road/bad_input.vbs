' What a host meets when it hands over something that is not as it should be.
Option Explicit
Dim folder : folder = WScript.Arguments(0)
Dim database : Set database = CreateObject("Kavidex.EmbeddedDatabase")
Dim connection, binder, settings, result

On Error Resume Next
Set connection = database.Open(folder & "\noise.kdb")
If Err.Number <> 0 And Err.Description <> "" Then WScript.Echo "noise refused: " & Err.Description
Err.Clear
Set connection = database.Open(folder & "\absent.kdb")
If Err.Number = 0 Then WScript.Echo "an absent database was opened"
Err.Clear
On Error Goto 0

Set connection = database.Create(folder & "\a.kdb")
Set binder = CreateObject("Kavidex.ctrlCorrespondence")
Set binder.DbConnection = connection
Set settings = CreateObject("Kavidex.clsSettings")
Set settings.DbConnection = connection
settings.SetSetting "Storage", "DocumentPath", folder & "\d\store"
result = binder.OpenOrCreate("K1", "Bad input", "", "", "")
If result <> 0 Then WScript.Echo "OpenOrCreate gave " & result

result = binder.AddFiles(Array(folder & "\absent.txt"), "", 0, False, True)
If result < 0 Then WScript.Echo "missing file refused: " & result
result = binder.AddFiles(Array(folder & "\good.txt"), "", 999999, False, False)
If result < 0 Then WScript.Echo "unknown folder refused: " & result
result = binder.AddFiles(Array(folder & "\good.txt"), "", 0, False, True)
If result <> 0 Then WScript.Echo "a good file was refused: " & result

' Nothing at all is no success; a name of a file that is no text is refused.
If binder.AddFiles(Null) = -4 And binder.AddFiles(Empty) = -4 And binder.AddFiles(Nothing) = -4 Then WScript.Echo "nothing refused"
If binder.AddFiles(Array()) <> 0 Then WScript.Echo "an empty list was refused"
' A number beyond 16 bits reaches the tree, which has no such folder.
On Error Resume Next
Set result = binder.AddItem(0, "tab", Nothing, 0, "x", 70000)
If Err.Number = 0 Then WScript.Echo "large number taken"
If Err.Number <> 0 Then WScript.Echo "large number: " & Err.Description
Err.Clear
binder.BorderStyle = 77
If Err.Number = 380 And Err.Source = "Kavidex.ctrlCorrespondence" Then WScript.Echo "border refused"
On Error Goto 0
Set binder.DbConnection = connection

WScript.Echo "documents " & binder.ContainsDocuments("txt")
binder.CloseObject
Set binder.DbConnection = Nothing
connection.Close
WScript.Echo "done: bad_input"
