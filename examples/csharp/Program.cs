// The same ten lines in C#:  TenLines.exe FOLDER FILE
using System;

internal static class Program
{
    private static dynamic Create(string name) =>
        Activator.CreateInstance(Type.GetTypeFromProgID("Kavidex." + name, throwOnError: true)!)!;

    [STAThread] // the library is apartment threaded
    private static int Main(string[] arguments)
    {
        string folder = arguments[0], file = arguments[1];
        dynamic connection = Create("EmbeddedDatabase").OpenOrCreate(folder + @"\kavidex.kdb");
        dynamic binder = Create("ctrlCorrespondence");
        binder.DbConnection = connection;
        dynamic settings = Create("clsSettings");
        settings.DbConnection = connection;
        settings.SetSetting("Storage", "DocumentPath", folder + @"\store");
        if (binder.OpenOrCreate("Client-4711", "Mr Jansen", "Letters;Policies", "", "") != 0) return 1;
        if (binder.AddFiles(new[] { file }, "", 0, false, true) != 0) return 1;
        Console.WriteLine($"{binder.ContainsDocuments("txt")} text document(s) in dossier {binder.Id}");
        binder.CloseObject();
        binder.DbConnection = null;
        connection.Close();
        return 0;
    }
}
