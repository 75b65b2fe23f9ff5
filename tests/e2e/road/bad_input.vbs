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

WScript.Echo "documents " & binder.ContainsDocuments("txt")
binder.CloseObject
Set binder.DbConnection = Nothing
connection.Close
WScript.Echo "done: bad_input"
