' The embedded database and its ADODB-compatible objects, as a script uses them.
Option Explicit
Dim fso, path, cn, rs, field, names, touched

Sub Demand(condition, what)
    If condition Then Exit Sub
    WScript.Echo "failed: " & what
    WScript.Quit 1
End Sub

Set fso = CreateObject("Scripting.FileSystemObject")
path = fso.BuildPath(fso.GetSpecialFolder(2), fso.GetTempName())

Dim database : Set database = CreateObject("Kavidex.EmbeddedDatabase")
Set cn = database.Create(path)
Demand cn.State = 1, "the new database is not open"
Demand cn.Properties("DBMS Name") = "ACCESS", "DBMS Name is " & cn.Properties("DBMS Name")
Demand cn.DefaultDatabase <> "", "no DefaultDatabase"

' A new file holds the base tables at their first version.
Set rs = cn.Execute("select [Value] from tblSettings where Section = 'Build' and sKey = 'DbVersion'")
Demand Trim(rs("Value")) = "1.0.8", "version is " & rs("Value")
rs.Close

cn.Execute "create table tblThing (Id COUNTER, Name TEXT(50), Amount LONG, Done BIT)"
cn.Execute "insert into tblThing (Name, Amount, Done) values ('O''Brien " & Chr(233) & "', 5, True)", touched
Demand touched = 1, "rows touched: " & touched
cn.Execute "insert into tblThing (Name) values ('second')"

Set rs = cn.Execute("select * from tblThing order by Id")
Demand rs("Name") = "O'Brien " & Chr(233), "the name came back as " & rs("Name")
Demand rs.Fields("Name").Value & "" = rs.Fields(1) & "", "a field by name and by number differ"
Demand rs("Done") = True And rs("Amount") + 1 = 6, "values have no type"
names = ""
For Each field In rs.Fields
    names = names & field.Name & ";"
Next
Demand names = "Id;Name;Amount;Done;", "fields are " & names
rs("Amount") = 7
rs.Fields("Name") = "renamed"
rs.Update
rs.MoveNext
Demand IsNull(rs("Amount").Value), "null is lost"
Demand rs.AbsolutePosition = 2 And rs.RecordCount = 2, "position"
rs.AddNew
rs("Name") = "third"
rs.Update
rs.Close

cn.BeginTrans
cn.Execute "delete from tblThing"
cn.RollbackTrans
Demand cn.Execute("select count(*) as N from tblThing")("N") = 3, "the rollback lost rows"

' Errors arrive with number and text, and stand in the connection's list.
On Error Resume Next
cn.Execute "selekt nothing"
Demand Err.Number <> 0 And Err.Description <> "", "a refused statement raised nothing"
Demand cn.Errors.Count = 1, "Errors.Count is " & cn.Errors.Count
Demand cn.Errors(0).Description = Err.Description, "Errors says " & cn.Errors(0).Description
Err.Clear
rs = cn.Execute("select * from tblThing")("Nowhere")
Demand Err.Number = 3265 Or Err.Number = &H800A0CC1, "an unknown field gave " & Hex(Err.Number)
Err.Clear
CreateObject("Kavidex.EmbeddedDatabase").Open "C:\no\such\file.kdb"
Demand Err.Number <> 0, "a missing file opened"
Err.Clear
On Error Goto 0

' A sound file has no findings; a copy of an open one can be opened in its turn.
Demand UBound(database.Check(cn)) = -1, "the check finds faults"
database.BackupTo cn, path & ".copy"
cn.Close
Demand cn.State = 0, "the connection did not close"
Set cn = database.Open(path & ".copy")
Demand cn.Execute("select count(*) as N from tblThing")("N") = 3, "the copy is not whole"
Set rs = Nothing
cn.Close
fso.DeleteFile path & "*"
WScript.Echo "all checks passed"
