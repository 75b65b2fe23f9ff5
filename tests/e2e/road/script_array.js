// A script's own array of file names.
var folder = WScript.Arguments(0);
var binder = new ActiveXObject("Kavidex.ctrlCorrespondence");
binder.DbConnection = new ActiveXObject("Kavidex.EmbeddedDatabase").OpenOrCreate(folder + "\\a.kdb");
binder.OpenOrCreate("K1", "", "", "", "");
WScript.Echo("array " + binder.AddFiles([folder + "\\good.txt", folder + "\\good.txt"], "", 0, false, true));
WScript.Echo("empty " + binder.AddFiles([], "", 0, false, true));
WScript.Echo("documents " + binder.ContainsDocuments("txt"));
binder.CloseObject();
WScript.Echo("done: script_array");
