// The checklist of a dossier: what is expected in its folders, what is there and what is missing,
// and what users say of it.
#pragma once

#include "controls/admin/FormControl.h"
#include "model/Checklist.h"

namespace kavidex::controls {

class ctlChecklist : public FormControl {
public:
    explicit ctlChecklist(const platform::Workstation& workstation);

    // A dossier type, or one list by its key ("type^tab type"); empty: none.
    const std::string& CheckListType() const { return lclType; }
    void SetCheckListType(std::string_view type);
    const std::string& DossierStatus() const { return lclStatus; }
    void SetDossierStatus(std::string_view status); // shown beside the list's name
    // The tree of the dossier, loaded here, or one that its owner has and changes.
    std::int32_t TreeId() const;
    void SetTreeId(std::int32_t id);
    const std::shared_ptr<model::clsTree>& Tree() const { return lclTree; }
    void SetTree(std::shared_ptr<model::clsTree> tree);
    // The folder whose list shows, where it or one around it has one; 0: all lists.
    std::int32_t FolderId() const { return lclFolder; }
    void SetFolderId(std::int32_t folder);
    void ItemsChanged(); // the tree has other items now; nothing is read

    std::int32_t Missing() const; // of what is required, in the whole dossier

    Event<> EvChecklistChanged;       // a user changed a value
    Event<std::int32_t> FolderChosen; // by a double click on one of its lines

private:
    void Read() override;
    void Show() override;
    void ShowSummary();
    forms::Item ItemOf(std::size_t line) const;
    const model::ChecklistLine* LineOf(std::int32_t item) const;
    void Checked(forms::FieldEvent& event);
    void Editing(forms::FieldEvent& event) const;
    void Edited(forms::FieldEvent& event);
    // Writes and shows it; false when it was refused.
    bool Say(std::int32_t item, const std::function<void(model::ChecklistValue&)>& change);

    std::string lclType, lclStatus;
    std::shared_ptr<model::clsTree> lclTree;
    std::int32_t lclFolder = 0;
    bool lclOwnTree = false; // loaded here
    model::Checklist lclList;
};

} // namespace kavidex::controls
