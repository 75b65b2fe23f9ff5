Attribute VB_Name = "TenLines"
' The same ten lines in a module of VBA or Visual Basic (32-bit). Early bound: set a reference to
' "Kavidex electronic dossiers" and declare the variables As Kavidex.ctrlCorrespondence and so on.
Option Explicit

Public Sub ShowDossier(ByVal folder As String, ByVal file As String)
    Dim connection As Object, binder As Object, settings As Object
    Set connection = CreateObject("Kavidex.EmbeddedDatabase").OpenOrCreate(folder & "\kavidex.kdb")
    Set binder = CreateObject("Kavidex.ctrlCorrespondence")  ' on a form: the control itself
    Set binder.DbConnection = connection
    Set settings = CreateObject("Kavidex.clsSettings")
    Set settings.DbConnection = connection
    settings.SetSetting "Storage", "DocumentPath", folder & "\store"
    If binder.OpenOrCreate("Client-4711", "Mr Jansen", "Letters;Policies", "", "") <> 0 Then Exit Sub
    If binder.AddFiles(Array(file), "", 0, False, True) <> 0 Then Exit Sub
    MsgBox binder.ContainsDocuments("txt") & " text document(s) in dossier " & binder.Id
    binder.CloseObject
    Set binder.DbConnection = Nothing
    connection.Close
End Sub
