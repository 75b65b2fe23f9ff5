' The data classes with hostile texts in every property, values of the wrong kind, and objects whose
' owners are gone.
Option Explicit
Dim fso, folder, cn
Set fso = CreateObject("Scripting.FileSystemObject")
folder = WScript.Arguments(0)
Set cn = CreateObject("Kavidex.EmbeddedDatabase").OpenOrCreate(folder & "\model.kdb")
Function Made(name)
    Set Made = CreateObject("Kavidex." & name)
    Set Made.DbConnection = cn
End Function
Sub Same(found, wanted, what)
    If CStr(found) <> CStr(wanted) Then WScript.Echo "failed: " & what & " is " & Left(found, 80)
End Sub
' The call just made must have failed, with words.
Sub Refused(what)
    If Err.Number = 0 Then WScript.Echo "failed: " & what & " was taken"
    If Err.Number <> 0 And Err.Description = "" Then WScript.Echo "failed: " & what & " gave no words"
    If InStr(Err.Description, "0x") > 0 Then WScript.Echo "failed: " & what & " says " & Err.Description
    Err.Clear
End Sub
Dim binder : Set binder = Made("ctrlCorrespondence")
Set binder = Nothing
Made("clsSettings").SetSetting "Storage", "DocumentPath", folder & "\store"

' Texts
Dim texts(5), text, tree, again, child, doc, key, list, number
texts(0) = "O'Br''ien"
texts(1) = "a""b\c\\d\"
texts(2) = "50% [x] * ? _ {y} -- /* ; #"
texts(3) = "tab" & Chr(9) & "cr" & vbCrLf & Chr(1) & "end"
texts(4) = fso.OpenTextFile(folder & "\emoji.txt", 1, False, -1).ReadAll
texts(5) = "nul" & Chr(0) & "end"
For Each text In texts
    Set tree = Made("clsTree")
    tree.Description = text
    tree.CreateNew
    tree.AddChildItem 0, "tab", Nothing, 0, text, tree.Item.Id
    tree.AddChildTab("x", tree.Item.Id).Description = text
    Set again = Made("clsTree")
    again.TreeId = tree.TreeId
    Same again.Description, text, "a tree's name"
    Same again.Item.ChildCollection.Count, 2, "the number of folders"
    For Each child In again.Item.ChildCollection
        Same child.Description, text, "a folder's name"
    Next
    Set doc = CreateObject("Kavidex.clsDocument")
    Set doc.DatabaseObject = cn
    doc.ExternalId = text
    doc.InsertedBy = text
    doc.Description = text
    doc.SendTo = text
    doc.RecievedFrom = text
    doc.SendOn = text
    doc.RecievedOn = text
    doc.DocType = "txt"
    doc.InsertDate = "20261123"
    Same doc.SaveNewRow(), True, "SaveNewRow"
    doc.Id = doc.DocId
    Same doc.OpenDataSource() And doc.LoadData(), True, "the document's row"
    Same doc.ExternalId & doc.InsertedBy & doc.Description, text & text & text, "the document"
    Same doc.SendTo & doc.RecievedFrom & doc.SendOn & doc.RecievedOn, text & text & text & text, "the mail"
    Set key = Made("clsDossierDbRelations")
    key.DbKey = text
    Same key.SaveNewRow(), True, "the key"
    Set again = Made("clsDossierDbRelations")
    again.DbKey = text
    Same again.OpenDataSource() And Not again.EOF, True, "finding the key"
    Same again.DossierId, key.DossierId, "the dossier number"
Next

' Objects that outlive their owners
Dim root, folderItem, walked, member
Set tree = Made("clsTree")
tree.Description = "T"
tree.CreateNew
Set root = tree.Item
Set folderItem = tree.AddChildTab("f", root.Id)
For number = 1 To 5
    tree.AddChildItem 0, "tif", Nothing, number, "d" & number, folderItem.Id
Next
number = tree.TreeId
Set tree = Nothing
Set root = Nothing
folderItem.Description = "f2"
For Each member In folderItem.ChildCollection
    Set folderItem = Nothing
    walked = walked & member.Description
Next
Same walked, "d1d2d3d4d5", "the walk over released parents"
Set tree = Made("clsTree")
tree.TreeId = number
Same tree.Item.ChildCollection(1).Description, "f2", "the name given without a tree"
walked = 0
For Each member In tree.Item.ChildCollection
    tree.TreeId = 0
    walked = walked + 1
Next
Same walked, 1, "the walk over a tree that was reset"
tree.TreeId = number
Set list = Made("clsCheckListType")
list.CreateField 1, "a", 1, "", "t"
list.CreateField 2, "b", 1, "", "t"
Set again = list.CheckListFields
Set list = Nothing
walked = ""
For Each member In again
    Set again = Nothing
    walked = walked & member.FieldDescription
Next
Same walked, "ab", "the walk over a released list"

' Values of the wrong kind
Dim children, value
Set root = tree.Item
Set children = root.ChildCollection
Set folderItem = children(1)
On Error Resume Next
Set folderItem.ChildCollection = children : Refused "a folder that holds itself"
children.AddItem 99, "tab", children, 0, "x", cn, 1 : Refused "a collection that holds itself"
children.Remove Nothing : Refused "Remove Nothing"
children.Remove Array(1) : Refused "Remove of an array"
children.Remove 1E99 : Refused "Remove 1E99"
children.Remove "" : Refused "Remove of an empty key"
Set value = children.Item(0) : Refused "Item 0"
Set value = tree.Item.ChildCollection(40000) : Refused "Item 40000"
Set value = tree.Item.ChildCollection("C2") : Refused "Item by key"
Set value = tree.MoveItem(folderItem.ChildCollection(1).Id, root.Id, 0) : Refused "a move from nowhere"
For Each member In tree : Exit For : Next
Refused2 "For Each over a tree"
Sub Refused2(what) ' the engine's own words, or none
    If Err.Number = 0 Then WScript.Echo "failed: " & what & " was taken"
    Err.Clear
End Sub
Set tree.Item = fso : Refused "a root that is no item"
tree.TreeId = "text" : Refused "TreeId of a text"
tree.TreeId = 3000000000 : Refused "TreeId beyond 32 bits"
tree.Description = Array(1) : Refused "an array as a text"
tree.Description = String(65536, "x") : Refused "a name of 64 K"
Same tree.Description, "T", "the name after it"
On Error Goto 0
children.Remove "" & folderItem.Id
Same children.Count, 0, "removed by the digits of an id"
tree.TreeId = number
Set value = Nothing
Same tree.DeleteItem(value, tree.Item.ChildCollection(1).Id), True, "DeleteItem by id"
tree.TreeId = number
Same tree.Item.ChildCollection Is Nothing, True, "no children left"
cn.Close
WScript.Echo "done: model_classes"
