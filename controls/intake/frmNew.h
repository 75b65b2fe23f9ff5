// The dialog "Nieuw": the kinds of items that can be made, the letter templates, or files from
// elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/forms/Form.h"
#include "controls/forms/FormView.h"

namespace kavidex::data {
class clsSettings;
}

namespace kavidex::controls {

struct NewKind {
    std::string name, type; // of NameForInsert and TypeForInsert
    bool allowed = true;
};

class frmNew {
public:
    // `workstation` must outlive it.
    frmNew(const platform::Workstation& workstation, std::shared_ptr<Translator> translator);

    // --- From the control, before it is shown ----------------------------------------------------
    std::string DossierType, DossierStatus; // with template folders of their names
    std::string TempPath;                   // the template folder; empty: as Settings has it
    data::clsSettings* Settings = nullptr;
    bool ChangeName = true; // the user may name the letter
    bool OpenFile = false;  // the letter is opened in its own program; the user may change that
    std::vector<NewKind> kinds;
    bool mayMakeLetters = true, mayAddFiles = true;

    // False when the user cancels: nothing is chosen then.
    bool Show(forms::FormPresenter& presenter);

    // A letter template with its folder, or a position among the kinds, or the wish for files from
    // elsewhere.
    const std::string& SelectedFile() const { return lclFile; }
    const std::string& SelectedFolder() const { return lclFolder; }
    const std::string& LetterName() const { return lclName; } // empty: as its file is called
    int SelectedKind() const { return lclKind; }              // -1: none
    bool WantsFiles() const { return lclWantsFiles; }

    forms::Form& Form() { return lclForm; }

    // By its extension: doc, dot, docx, dotx, docm, dotm.
    static bool IsTemplate(std::string_view fileName);

private:
    struct Folder {
        std::string path;
        bool read = false;
    };
    void Fill();
    void FillTree();
    void AddFolder(std::int32_t parent, const std::string& path, const std::string& name);
    void Open(std::int32_t id);
    void ShowImage(std::int32_t id, bool open);
    void ShowFiles();
    void ShowProblem(const std::string& words);
    void ShowAs(forms::ListMode mode);
    void Accept();
    void AllowOk();
    std::string TemplateRoot() const;
    std::string TypeName() const;

    const platform::Workstation& lclWorkstation;
    forms::Form lclForm;
    std::map<std::int32_t, Folder> lclFolders; // "Map0", "Map1" and so on, by that number and 1
    std::int32_t lclCounter = 0;
    std::vector<std::string> lclFiles; // names in the selected folder
    std::string lclFile, lclFolder, lclName;
    int lclKind = -1;
    bool lclWantsFiles = false;
};

} // namespace kavidex::controls
