' The data and model classes, as a script uses them without any control.
Option Explicit
Dim fso, folder, cn, found, value

Sub Demand(condition, what)
    If condition Then Exit Sub
    WScript.Echo "failed: " & what
    WScript.Quit 1
End Sub

Set fso = CreateObject("Scripting.FileSystemObject")
folder = fso.BuildPath(fso.GetSpecialFolder(2), fso.GetTempName())
fso.CreateFolder folder
Set cn = CreateObject("Kavidex.EmbeddedDatabase").OpenOrCreate(folder & "\model.kdb")

' A control brings the tables to their current version when it gets its connection.
Dim binder : Set binder = CreateObject("Kavidex.ctrlCorrespondence")
Set binder.DbConnection = cn
Set binder = Nothing
Demand cn.State = 1, "the control closed a connection that is not its own"

' Settings
Dim settings : Set settings = CreateObject("Kavidex.clsSettings")
Set settings.DbConnection = cn
settings.SetSetting "Storage", "DocumentPath", folder
fso.CreateFolder folder & "\store"
settings.SetSetting "Storage", "DocumentPath", folder & "\store"
Demand settings.GetSetting("Storage", "DocumentPath", value), "the setting is not found"
Demand value = folder & "\store", "the setting is " & value
Demand Not settings.GetSetting("Storage", "Nothing", value) And value = "", "a missing setting is found"
Demand settings.DbConnection Is cn, "the connection comes back as another object"

' A tree
Dim tree : Set tree = CreateObject("Kavidex.clsTree")
Set tree.DbConnection = cn
tree.Description = "Dossier"
tree.NewEnabled = True
Demand tree.CreateNew(), "no tree"
Dim post : Set post = tree.AddChildTab("Post", tree.Item.Id)
Dim archive : Set archive = tree.AddChildTab("Archief", tree.Item.Id)
Dim letter : Set letter = tree.AddChildItem(0, "tif", Nothing, 4711, "Brief", post.Id)
Demand tree.AddChildItem(0, "tif", Nothing, 1, "x", letter.Id) Is Nothing, "a leaf took a child"
Demand tree.MoveItem(letter.Id, archive.Id, post.Id) Is letter, "the item did not move"

Dim again : Set again = CreateObject("Kavidex.clsTree")
Set again.DbConnection = cn
again.TreeId = tree.TreeId
Demand again.Description = "Dossier", "the tree is called " & again.Description
Dim child, names
For Each child In again.Item.ChildCollection
    names = names & child.Description & ";"
Next
Demand names = "Post;Archief;", "children are " & names
Demand again.Item.ChildCollection(2).ChildCollection(1).ItemId = 4711, "the default member of the collection"
Demand again.Item.ChildCollection.Count = 2, "Count"
Demand Not again.Item Is tree.Item, "two trees share a root"
Demand again.Item Is again.Item, "one root, two faces"

Dim doomed : Set doomed = again.GetItem(0, "archief")
Demand again.DeleteItem(doomed, doomed.Id), "not deleted"
Demand doomed Is Nothing, "the reference is not cleared"
again.TreeId = tree.TreeId
Demand again.Item.ChildCollection.Count = 1, "the folder is still there"

' A document
Dim document : Set document = CreateObject("Kavidex.clsDocument")
Set document.DatabaseObject = cn
document.BaseSaveDirectory = folder & "\store\"
document.Description = "Brief"
document.DocType = "txt"
document.InsertDate = "20261122"
document.InsertTime = "1200"
document.SendTo = "iemand"
Demand document.SaveNewRow(), "the document has no row"
Demand document.DocId > 0, "the document has no id"
document.Criteria = "DocId = " & document.DocId
Demand document.OpenDataSource() And Not document.EOF, "the document is not found"
Demand document.LoadData() And document.Description = "Brief" And document.SendTo = "iemand", "the document's data"
Demand document.Description_Size = 255, "Description_Size is " & document.Description_Size
document.CloseDataSource

' A dossier and its key
Dim key : Set key = CreateObject("Kavidex.clsDossierDbRelations")
Set key.DbConnection = cn
key.DbKey = "Klant-1"
Demand key.SaveNewRow() And key.DossierId > 0, "no dossier number"
Dim dossier : Set dossier = CreateObject("Kavidex.clsDossier")
Set dossier.DbConnection = cn
dossier.DossierId = key.DossierId
dossier.DossierType = "Klant"
dossier.TreeId = tree.TreeId
Demand dossier.SaveNewRow() And dossier.Id > 0, "no relation"
Dim sought : Set sought = CreateObject("Kavidex.clsDossier")
Set sought.DbConnection = cn
sought.DossierId = key.DossierId
Demand sought.OpenDataSource() And sought.RecordCount = 1 And sought.TreeId = tree.TreeId, "the dossier is not found"

' Rights
Dim rights, name : Set rights = CreateObject("Kavidex.clsUserAuth")
Set rights.DbConnection = cn
rights.UserId = "piet"
rights.SetRight " EditDossiers ", "True"
Demand rights.SaveRights(), "rights are not saved"
Dim loaded : Set loaded = CreateObject("Kavidex.clsUserAuth")
Set loaded.DbConnection = cn
loaded.UserId = "piet"
Demand loaded.LoadRights() And loaded.GetRight("EditDossiers") = "True", "rights are not loaded"
Demand loaded.GetFirstRight(name, value) And name = "EditDossiers" And value = "True", "the first right is " & name

' A checklist
Dim list : Set list = CreateObject("Kavidex.clsCheckListType")
Set list.DbConnection = cn
list.CheckListTabType = "A^B"
list.CreateField 2, "tweede", 1, "", "tif"
Demand list.CreateField(1, "eerste", 3, "brief", "tif").NumberToRecieve = 3, "the field"
list.UpdateCurrentType
Dim read : Set read = CreateObject("Kavidex.clsCheckListType")
Set read.DbConnection = cn
Demand read.GetType("A", "B") = 0 And read.CheckListFields.Count = 2, "the list has " & read.CheckListFields.Count
Demand read.CheckListFields(1).FieldDescription = "eerste", "the order of the list"

' A table
Dim table : Set table = CreateObject("Kavidex.clsTable")
Set table.DbConnection = cn
table.TableName = "tblTree"
Demand table.EOF And table.RecordCount = 0, "a table that is not open"
Demand table.OpenDbConnection() And table.RecordCount = 1, "the table has no row"
Demand table.GetField("Description") = "Dossier" And table.GetFieldLength("Description") = 255, "the field"
Demand table.RecordSet("Description") & "" <> "", "the recordset"
table.SetField "Description", "  Anders  "
Demand table.UpdateCurrentRow(), "the row is not written"
table.ReQuery
Demand table.GetField("Description") = "Anders", "the row came back as " & table.GetField("Description")
table.CloseDataSource

' The whole way of a control through the ADO engine: the connection asks to be called by names.
Dim late : Set late = CreateObject("Kavidex.EmbeddedDatabase").Create(folder & "\late.kdb")
late.LateBound = True
Set binder = CreateObject("Kavidex.ctrlCorrespondence")
Set binder.DbConnection = late
Demand binder.DbConnection Is late, "the control gives back another connection"
Demand binder.OpenOrCreate("Klant-1", "Dossier", "", "", "") = 0 And binder.Id > 0, "no dossier by name"
Demand late.Execute("select count(*) as N from tblTreeItem")("N") = 1, "the dossier has no root"
Set binder = Nothing
late.Close

settings.CloseSettings
sought.CloseDataSource
cn.Close
fso.DeleteFolder folder, True
WScript.Echo "all checks passed"
