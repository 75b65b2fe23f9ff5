' Builds a dossier step by step from the data classes, without any control on a form: its key, its
' folders, documents with their files, the rights of a user and a checklist; then opens it by its
' key as a host would, and lists what is there.
'   cscript //nologo build_dossier.vbs [FOLDER [KEY]]
Option Explicit

Dim fso : Set fso = CreateObject("Scripting.FileSystemObject")

Function Argument(index, fallback)
    If WScript.Arguments.Count > index Then Argument = WScript.Arguments(index) Else Argument = fallback
End Function

Sub Demand(condition, complaint)
    If condition Then Exit Sub
    WScript.Echo "failed: " & complaint
    WScript.Quit 1
End Sub

' An object of the library on the one connection of this script.
Dim connection
Function Made(name)
    Set Made = CreateObject("Kavidex." & name)
    Set Made.DbConnection = connection
End Function

Dim folder : folder = Argument(0, fso.BuildPath(fso.GetSpecialFolder(2), "kavidex-build"))
Dim key    : key    = Argument(1, "Klant-4712")
If Not fso.FolderExists(folder) Then fso.CreateFolder folder
Dim store : store = fso.BuildPath(folder, "store")
If Not fso.FolderExists(store) Then fso.CreateFolder store

' The database; a control that gets the connection brings its tables to the current version.
Set connection = CreateObject("Kavidex.EmbeddedDatabase").OpenOrCreate(fso.BuildPath(folder, "kavidex.kdb"))
Dim binder : Set binder = Made("ctrlCorrespondence")
Made("clsSettings").SetSetting "Storage", "DocumentPath", store

' The key of the host's record gives the dossier its number; asked first, a dossier is made once.
Dim number : Set number = Made("clsDossierDbRelations")
number.DbKey = key
Demand number.OpenDataSource(), "the keys cannot be read"
Demand number.EOF, "there is a dossier for " & key & " already"
number.CloseDataSource
Demand number.SaveNewRow(), "the key is not stored"

' Its folder tree.
Dim tree : Set tree = Made("clsTree")
tree.Description = "Dossier van " & key
tree.NewEnabled = True
tree.UpdateEnabled = True
Demand tree.CreateNew(), "there is no tree"
Dim post    : Set post    = tree.AddChildTab("Post", tree.Item.Id)
Dim incoming : Set incoming = tree.AddChildTab("Inkomend", post.Id)
Dim papers  : Set papers  = tree.AddChildTab("Papieren", tree.Item.Id)

' The relation ties number, type and tree together.
Dim relation : Set relation = Made("clsDossier")
relation.DossierId = number.DossierId
relation.DossierType = "Klant"
relation.TreeId = tree.TreeId
Demand relation.SaveNewRow(), "the relation is not stored"

' A document is a row, a file in the store and an item in the tree, in this order: whatever stops
' the script in between loses no file.
Sub AddDocument(target, name, text, sender)
    Dim source : source = fso.BuildPath(folder, name & ".txt")
    With fso.CreateTextFile(source, True)
        .WriteLine text
        .Close
    End With
    Dim document : Set document = CreateObject("Kavidex.clsDocument")
    Set document.DatabaseObject = connection
    document.ExternalId = key
    document.InsertedBy = "voorbeeld"
    document.InsertDate = CStr(Year(Now) * 10000 + Month(Now) * 100 + Day(Now))
    document.InsertTime = CStr(Hour(Now) * 100 + Minute(Now))
    document.DocType = "txt"
    document.Description = name
    document.RecievedFrom = sender
    Demand document.SaveNewRow(), "no row for " & name
    Demand document.AddDocument(source, True, True), "no file for " & name
    Demand Not fso.FileExists(source), "the source of " & name & " is still there"
    Demand Not tree.AddChildItem(0, "txt", Nothing, document.DocId, name, target.Id) Is Nothing, _
           "no item for " & name
End Sub
AddDocument incoming, "Brief van O'Brien", "Hierbij stuur ik u de stukken.", "O'Brien"
AddDocument papers, "Loonstrook 100%", "Bruto en netto.", ""
AddDocument papers, "Paspoort", "Geldig tot 2031.", ""

' What a user may do, kept under his name.
Dim rights, right : Set rights = Made("clsUserAuth")
rights.UserId = "jansen"
For Each right In Array("ReadDossiers", "EditDossiers", "ViewAnnotations")
    rights.SetRight right, "True"
Next
Demand rights.SaveRights(), "the rights are not stored"

' What is expected in the folder Papieren of this type of dossier.
Dim list : Set list = Made("clsCheckListType")
Demand list.GetType("Klant", "Papieren") = 0, "the checklist cannot be read"
list.NewType
list.CreateField 1, "Loonstroken", 3, "loonstrook;salaris", "txt"
list.CreateField 2, "Identiteitsbewijs", 1, "paspoort", "txt"
list.UpdateCurrentType

' All of it again, as the next program finds it.
Dim result : result = binder.OpenOrCreate(key, "", "", "", "")
Demand result = 0, "OpenOrCreate gave " & result
Demand binder.Id = tree.TreeId, "the key opens another tree"
Demand binder.ContainsDocuments("") = 3, "there are " & binder.ContainsDocuments("") & " documents"

Sub Show(item, indent)
    Dim child
    WScript.Echo indent & item.Description & " (" & item.ItemType & ")"
    If item.ChildCollection Is Nothing Then Exit Sub
    For Each child In item.ChildCollection
        Show child, indent & "  "
    Next
End Sub
Dim again : Set again = Made("clsTree")
again.TreeId = tree.TreeId
Show again.Item, ""

Dim loaded, name, value : Set loaded = Made("clsUserAuth")
loaded.UserId = "jansen"
Demand loaded.LoadRights() And loaded.GetFirstRight(name, value), "the rights are gone"
Do
    WScript.Echo "right " & name & " = " & value
Loop While loaded.GetNextRight(name, value)

Dim expected, field : Set expected = Made("clsCheckListType")
Demand expected.GetType("Klant", "Papieren") = 0, "the checklist is gone"
For Each field In expected.CheckListFields
    WScript.Echo "expected " & field.NumberToRecieve & " x " & field.FieldDescription
Next

binder.CloseObject
Set binder.DbConnection = Nothing
connection.Close
WScript.Echo "done: build_dossier"
