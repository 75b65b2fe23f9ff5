' ADODB's own names from a script, and a control that opens by DbProvider and DbPath through them.
Option Explicit
Dim fso, path, binder, cn, rs, value, settings

Sub Demand(condition, what)
    If condition Then Exit Sub
    WScript.Echo "failed: " & what
    WScript.Quit 1
End Sub

Set fso = CreateObject("Scripting.FileSystemObject")
path = fso.BuildPath(fso.GetSpecialFolder(2), fso.GetTempName()) & ".mdb"
CreateObject("Kavidex.EmbeddedDatabase").Create(path).Close

Set cn = CreateObject("ADODB.Connection")
Demand cn.State = 0, "a new connection is open"
cn.Open "driver={Microsoft Access Driver (*.mdb)};DBQ=" & path & ";Password=Kw72p5n9"
Demand cn.State = 1, "the connection did not open"
Set rs = CreateObject("ADODB.Recordset")
rs.CursorLocation = 3
rs.LockType = 3
rs.Open "select * from tblSettings where Section = 'Build' and sKey = 'DbVersion'", cn
Demand Trim(rs("Value")) = "1.0.8", "the version is " & rs("Value")
rs.Close
cn.Close

Set binder = CreateObject("Kavidex.ctrlCorrespondence")
binder.DbProvider = "MsAccess"
binder.DbPath = path
value = binder.DbOpenConnection()
Demand binder.DbConnection.State = 1, "DbOpenConnection gave " & value
Set settings = CreateObject("Kavidex.clsSettings")
Set settings.DbConnection = binder.DbConnection
Demand settings.GetSetting("Build", "DbVersion", value) And Trim(value) = "1.1.8", "the upgrade stopped at " & value
Demand binder.OpenOrCreate("Klant-1", "Dossier", "", "", "") = 0 And binder.Id > 0, "no dossier by name"
Demand binder.DbConnection.Execute("select count(*) as N from tblTreeItem")("N") = 1, "the dossier has no root"
settings.CloseSettings
WScript.Echo "all checks passed"
