' Opens the dossier of a record, without any window; makes database and dossier when they are
' missing, sets the document path, adds a file and lists the tree.
'   cscript //nologo open_dossier.vbs [FOLDER [KEY [FILE...]]]
Option Explicit

Dim fso : Set fso = CreateObject("Scripting.FileSystemObject")

Function Argument(index, fallback)
    If WScript.Arguments.Count > index Then Argument = WScript.Arguments(index) Else Argument = fallback
End Function

Sub Demand(condition, complaint)
    If Not condition Then
        WScript.Echo "failed: " & complaint
        WScript.Quit 1
    End If
End Sub

' The folder tree, depth first; a folder without children has no collection.
Sub List(item, indent)
    Dim child
    WScript.Echo indent & item.Description & " (" & item.ItemType & ")"
    If item.ChildCollection Is Nothing Then Exit Sub
    For Each child In item.ChildCollection
        List child, indent & "  "
    Next
End Sub

Dim folder : folder = Argument(0, fso.BuildPath(fso.GetSpecialFolder(2), "kavidex-example"))
Dim key    : key    = Argument(1, "Klant-4711")
If Not fso.FolderExists(folder) Then fso.CreateFolder folder

' The database: one file, made with its base tables when it is not there yet.
Dim connection
Set connection = CreateObject("Kavidex.EmbeddedDatabase").OpenOrCreate(fso.BuildPath(folder, "kavidex.kdb"))
Demand connection.State = 1, "the database is not open"

' Handing over the connection brings its tables to the current version.
Dim binder
Set binder = CreateObject("Kavidex.ctrlCorrespondence")
Set binder.DbConnection = connection

' Where the document files go.
Dim store : store = fso.BuildPath(folder, "store")
If Not fso.FolderExists(store) Then fso.CreateFolder store
Dim settings : Set settings = CreateObject("Kavidex.clsSettings")
Set settings.DbConnection = connection
settings.SetSetting "Storage", "DocumentPath", store

' The dossier that belongs to the host's own key.
Dim result
result = binder.OpenOrCreate(key, "Dossier van " & key, "", "", "")
Demand result = 0, "OpenOrCreate gave " & result

' Files are given as any collection of names: here a dictionary's keys.
Dim files, index : Set files = CreateObject("Scripting.Dictionary")
For index = 2 To WScript.Arguments.Count - 1
    files(WScript.Arguments(index)) = True
Next
If WScript.Arguments.Count < 3 And binder.ContainsDocuments("txt") = 0 Then
    Dim note : note = fso.BuildPath(folder, "Welkom.txt")
    With fso.CreateTextFile(note, True)
        .WriteLine "Dit is het eerste document van dit dossier."
        .Close
    End With
    files(note) = True
End If
If files.Count > 0 Then
    result = binder.AddFiles(files, "", 0, False, True)
    Demand result = 0, "AddFiles gave " & result
End If

Dim tree : Set tree = CreateObject("Kavidex.clsTree")
Set tree.DbConnection = connection
tree.TreeId = binder.Id
List tree.Item, ""

binder.CloseObject
Set binder.DbConnection = Nothing
connection.Close
WScript.Echo "done: open_dossier"
