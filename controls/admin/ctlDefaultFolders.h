// The editor of a dossier type's default folders: which folders its dossiers begin with, what they
// are called, and which checklist each has.
#pragma once

#include "controls/admin/AdminControl.h"
#include "model/dossierTypes.h"

namespace kavidex::controls {

class ctlDefaultFolders : public AdminControl {
public:
    explicit ctlDefaultFolders(const platform::Workstation& workstation);

private:
    // A folder of the type; the order is that of the list, each before what it holds.
    struct Folder {
        std::int32_t id = 0, parent = 0; // of this editor
        std::int32_t row = 0;            // its row's id, 0 for a new one
        std::string name, type;
        bool automatic = true;
    };

    void Read() override;
    void Show() override;
    void Write(const model::Store& store) override;
    bool MaySave() override;

    void ReadFolders();
    void HoldUnchanged(const model::Store& store) const; // throws ChangedMeanwhile
    std::vector<Folder> FromTabs(const std::vector<model::DossierTab>& tabs);
    std::string PathOf(const Folder& folder) const;
    std::vector<model::DossierTab> Tabs() const;
    Folder* Find(std::int32_t id);
    Folder* Chosen();
    void ShowChosen();
    void Choose(std::int32_t id);
    bool LiesWithin(std::int32_t id, std::int32_t top);
    bool HasNamed(std::int32_t parent, std::string_view name) const;
    bool MayBeNamed(const Folder& folder, std::string_view name);

    void ChooseType();
    void AddType();
    void RemoveType();
    void CopyFrom();
    void Add() override;
    void Remove() override;
    void Editing(forms::FieldEvent& event);
    void Rename(forms::FieldEvent& event);
    void Tick(forms::FieldEvent& event);
    void DragOver(forms::FieldEvent& event);
    void Dropped(forms::FieldEvent& event);
    void NameType();
    void MoveBy(int steps) override;
    bool Indent(bool deeper) override; // below the one before it, or beside its parent
    void Place(std::int32_t id, std::int32_t target, forms::Place place);
    void InsertToken();

    std::vector<model::DossierType> lclTypes;
    model::DossierType lclType;
    std::vector<model::DossierTab> lclStored;
    std::vector<Folder> lclFolders;
    std::int32_t lclNext = 1;
};

} // namespace kavidex::controls
