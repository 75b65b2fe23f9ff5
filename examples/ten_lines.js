// The ten lines of work that every example of this folder does: database, dossier, one file, the tree.
//   cscript //nologo ten_lines.js FOLDER FILE      FOLDER is there, and has a folder "store"
var folder = WScript.Arguments(0);
var connection = new ActiveXObject("Kavidex.EmbeddedDatabase").OpenOrCreate(folder + "\\kavidex.kdb");
var binder = new ActiveXObject("Kavidex.ctrlCorrespondence");
binder.DbConnection = connection;
var settings = new ActiveXObject("Kavidex.clsSettings");
settings.DbConnection = connection;
settings.SetSetting("Storage", "DocumentPath", folder + "\\store");
if (binder.OpenOrCreate("Client-4711", "Mr Jansen", "Letters;Policies", "", "") !== 0) WScript.Quit(1);
if (binder.AddFiles([WScript.Arguments(1)], "", 0, false, true) !== 0) WScript.Quit(1);
WScript.Echo(binder.ContainsDocuments("txt") + " text document(s) in dossier " + binder.Id);
binder.CloseObject();
binder.DbConnection = null;
connection.Close();
WScript.Echo("done: ten_lines");
