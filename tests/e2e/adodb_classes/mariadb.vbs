' A whole dossier over ADODB's own names and ODBC in a MariaDB server: the tables are upgraded, files
' are filed and found again, by a connection that the host makes and by one that the control opens.
Option Explicit
Const options = "HKCU\Software\VB and VBA Program Settings\Kavidex\"
Dim fso, shell, variables, folder, server, cn, binder, settings, value, files, text, tree, id, document

Set fso = CreateObject("Scripting.FileSystemObject")
Set shell = CreateObject("WScript.Shell")
folder = fso.BuildPath(fso.GetSpecialFolder(2), fso.GetTempName())
Set variables = shell.Environment("PROCESS")
server = variables("KAVIDEX_MYSQL") & "DATABASE=" & WScript.Arguments(0) & ";"

' Nobody is there to answer a message box, and the check of the tables is still to be made.
shell.RegWrite options & "DebugFlags\Unattended", "True"
shell.RegWrite options & "CorrespSetting\DbCheck", "1"

Sub Finish()
    shell.RegWrite options & "DebugFlags\Unattended", "False"
    If fso.FolderExists(folder) Then fso.DeleteFolder folder, True
End Sub

Sub Demand(condition, what)
    If condition Then Exit Sub
    Finish
    WScript.Echo "failed: " & what
    WScript.Quit 1
End Sub

Function Setting(section, key)
    If Not settings.GetSetting(section, key, Setting) Then Setting = "(none)"
    Setting = Trim(Setting)
End Function

Function CountOf(table)
    CountOf = CLng(cn.Execute("select count(*) as N from " & table)("N"))
End Function

' The names below an item, depth first.
Function NamesBelow(item)
    Dim child
    NamesBelow = ""
    If item.ChildCollection Is Nothing Then Exit Function
    For Each child In item.ChildCollection
        NamesBelow = NamesBelow & child.Description & " (" & child.ItemType & ");" & NamesBelow(child)
    Next
End Function

Function TreeOf(dossier)
    Set TreeOf = CreateObject("Kavidex.clsTree")
    Set TreeOf.DbConnection = dossier.DbConnection
    TreeOf.TreeId = dossier.Id
End Function

' A host's own connection. The control checks the tables and brings them to the current version.
Set cn = CreateObject("ADODB.Connection")
cn.Open server
Demand cn.State = 1 And cn.Properties("DBMS Name") = "MySQL", "the server says " & cn.Properties("DBMS Name")
Set settings = CreateObject("Kavidex.clsSettings")
Set settings.DbConnection = cn
Demand Setting("Build", "DbVersion") = "1.0.8", "the base has version " & Setting("Build", "DbVersion")
Set binder = CreateObject("Kavidex.ctrlCorrespondence")
Set binder.DbConnection = cn
Demand Setting("Build", "DbVersion") = "1.1.8", "the upgrade stopped at " & Setting("Build", "DbVersion")
Demand CountOf("tblTranslations") > 100, "there are " & CountOf("tblTranslations") & " translations"
Demand shell.RegRead(options & "CorrespSetting\DbCheck") = "0", "the check was not made"

' A dossier with two documents.
fso.CreateFolder folder
fso.CreateFolder folder & "\store"
settings.SetSetting "Storage", "DocumentPath", folder & "\store"
Demand binder.OpenOrCreate("Klant-1", "Dossier van O'Brien", "", "", "") = 0 And binder.Id > 0, "no dossier"
id = binder.Id
Set files = CreateObject("Scripting.Dictionary")
For Each text In Array("Brief van O'Brien", "50% korting")
    fso.CreateTextFile(folder & "\" & text & ".txt").Write "inhoud van " & text
    files(folder & "\" & text & ".txt") = True
Next
value = binder.AddFiles(files, "", 0, False, True)
Demand value = 0, "AddFiles gave " & value
Demand CountOf("tblDocument") = 2, "tblDocument has " & CountOf("tblDocument") & " rows"
binder.CloseObject
Set binder.DbConnection = Nothing
Set binder = Nothing
cn.Close

' The control's own connection, opened by the second of the two properties; the driver of that name
' is MariaDB's here.
Set binder = CreateObject("Kavidex.ctrlCorrespondence")
binder.DbPath = Mid(server, InStr(server, "SERVER=") + 7)
binder.DbProvider = "SqlServer"
Demand Not binder.DbConnection Is Nothing, "DbOpenConnection assigned nothing"
Set cn = binder.DbConnection
Demand cn.State = 1, "DbOpenConnection gave " & binder.DbOpenConnection()
Set settings.DbConnection = cn
Demand binder.OpenOrCreate("Klant-1", "Anders", "", "", "") = 0 And binder.Id = id, "the dossier is another"
text = NamesBelow(TreeOf(binder).Item)
Demand InStr(text, "Brief van O'Brien (txt)") > 0 And InStr(text, "50% korting (txt)") > 0, "the tree has " & text

' What was filed, back from the store.
Set document = CreateObject("Kavidex.clsDocument")
Set document.DatabaseObject = cn
document.Criteria = "Description = 'Brief van O''Brien'"
Demand document.OpenDataSource() And document.LoadData(), "the document is not found"
Demand document.DocType = "txt", "the document is a " & document.DocType
value = Setting("Storage", "DocumentPath") & "\" & document.InsertDate & "\txt\" & document.DocId & ".txt"
Demand fso.FileExists(value), "the document's file is not there: " & value
Demand fso.OpenTextFile(value).ReadAll = "inhoud van Brief van O'Brien", "the document's text differs"
document.CloseDataSource

settings.CloseSettings
binder.CloseObject
Demand cn.State = 0, "the control left the connection open that it had opened"
Finish
WScript.Echo "all checks passed"
