#include "host/Menu.h"

#include <array>

#include "host/resources.h"
#include "platform/win32/Variant.h"

namespace kavidex::host {

namespace {

constexpr std::array<std::string_view, languages> texts[] = {
    {"&Dossier", "&Binder", "&Akte", "&Dossier"},
    {"&Openen...\tCtrl+O", "&Open...\tCtrl+O", "Ö&ffnen...\tCtrl+O", "&Ouvrir...\tCtrl+O"},
    {"&Bestanden toevoegen...\tCtrl+N", "&Add files...\tCtrl+N", "&Dateien hinzufügen...\tCtrl+N",
     "&Ajouter des fichiers...\tCtrl+N"},
    {"Dossier &sluiten", "&Close binder", "Akte &schließen", "&Fermer le dossier"},
    {"&Afsluiten", "E&xit", "&Beenden", "&Quitter"},
    {"&Beheer", "&Administration", "&Verwaltung", "&Administration"},
    {"&Gebruikers en rechten", "&Users and rights", "&Benutzer und Rechte",
     "&Utilisateurs et droits"},
    {"Standaard&mappen", "Default &folders", "Standard&ordner", "Dossiers par &défaut"},
    {"&Checklists", "&Checklists", "&Checklisten", "&Listes de contrôle"},
    {"&Post", "&Post", "&Post", "Co&urrier"},
    {"Checklist van dit dossier &tonen", "&Show the checklist of this binder",
     "Checkliste dieser Akte an&zeigen", "Afficher la liste de contrôle de ce &dossier"},
    {"&Instellingen", "&Settings", "&Einstellungen", "&Paramètres"},
    {"&Verbinding...", "&Connection...", "&Verbindung...", "&Connexion..."},
    {"&Taal", "&Language", "&Sprache", "&Langue"},
    {"Er is geen dossier open: kies Dossier, Openen (Ctrl+O)",
     "No binder is open: choose Binder, Open (Ctrl+O)",
     "Es ist keine Akte offen: Akte, Öffnen wählen (Ctrl+O)",
     "Aucun dossier n'est ouvert : choisissez Dossier, Ouvrir (Ctrl+O)"},
    {"Map", "Folder", "Ordner", "Sous-dossier"},
    {"Document", "Document", "Dokument", "Document"},
    {"Dossier", "Binder", "Akte", "Dossier"},
    {"Dossier openen", "Open binder", "Akte öffnen", "Ouvrir un dossier"},
    {"Sleutel van het record:", "Key of the record:", "Schlüssel des Datensatzes:",
     "Clé de l'enregistrement :"},
    {"Omschrijving:", "Description:", "Beschreibung:", "Description :"},
    {"OK", "OK", "OK", "OK"},
    {"Annuleren", "Cancel", "Abbrechen", "Annuler"},
    {"Verbinding", "Connection", "Verbindung", "Connexion"},
    {"Databasebestand:", "Database file:", "Datenbankdatei:", "Base de données :"},
    {"Documentenmap:", "Document folder:", "Dokumentenordner:", "Dossier des documents :"},
    {"Bestanden toevoegen", "Add files", "Dateien hinzufügen", "Ajouter des fichiers"},
    {"Wilt u de wijzigingen opslaan?", "Save the changes?", "Änderungen speichern?",
     "Enregistrer les modifications ?"},
    {"Het dossier kan niet geopend worden", "The binder cannot be opened",
     "Die Akte kann nicht geöffnet werden", "Le dossier ne peut pas être ouvert"},
    {"Niet alle bestanden zijn toegevoegd", "Not all files were added",
     "Nicht alle Dateien wurden hinzugefügt", "Tous les fichiers n'ont pas été ajoutés"},
};

constexpr std::string_view names[languages] = {"&Nederlands", "&English", "&Deutsch", "&Français"};

// One row an entry, a menu's own name first; an empty text is a line between entries.
constexpr struct Entry {
    std::string_view english;
    int command; // 0: a menu
} entries[] = {
    {"&Binder", 0},
    {"&Open...\tCtrl+O", ID_OPEN},
    {"&Add files...\tCtrl+N", ID_ADD_FILES},
    {"&Close binder", ID_CLOSE_DOSSIER},
    {"", -1},
    {"E&xit", ID_EXIT},
    {"&Administration", 0},
    {"&Users and rights", ID_ADMIN},
    {"Default &folders", ID_ADMIN + 1},
    {"&Checklists", ID_ADMIN + 2},
    {"&Post", ID_ADMIN + 3},
    {"", -1},
    {"&Show the checklist of this binder", ID_CHECKLIST},
    {"&Settings", 0},
    {"&Connection...", ID_CONNECTION},
};

void Append(HMENU menu, UINT flags, UINT_PTR what, std::string_view text) {
    AppendMenuW(menu, flags, what, platform::win32::ToWide(text).c_str());
}

} // namespace

std::string_view Text(std::string_view english, int language) {
    for (const auto& row : texts)
        if (row[1] == english) return row[static_cast<std::size_t>(language)];
    return english;
}

HMENU MakeMenu(int language) {
    const HMENU bar = CreateMenu();
    HMENU open = nullptr;
    for (const Entry& entry : entries) {
        if (entry.command == 0) {
            open = CreatePopupMenu();
            Append(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(open), Text(entry.english, language));
        } else if (entry.english.empty()) {
            AppendMenuW(open, MF_SEPARATOR, 0, nullptr);
        } else {
            Append(open, MF_STRING, static_cast<UINT_PTR>(entry.command),
                   Text(entry.english, language));
        }
    }
    const HMENU choice = CreatePopupMenu(); // below the settings
    for (int i = 0; i < languages; ++i)
        Append(choice, i == language ? MF_CHECKED : MF_STRING,
               static_cast<UINT_PTR>(ID_LANGUAGE + i), names[i]);
    Append(open, MF_POPUP, reinterpret_cast<UINT_PTR>(choice), Text("&Language", language));
    return bar;
}

} // namespace kavidex::host
