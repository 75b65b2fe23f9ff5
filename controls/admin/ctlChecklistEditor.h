// The editor of checklists: which documents and fields are expected in which folder of a type's
// dossiers.
#pragma once

#include "controls/admin/AdminControl.h"
#include "model/Checklist.h"

namespace kavidex::controls {

class ctlChecklistEditor : public AdminControl {
public:
    explicit ctlChecklistEditor(const platform::Workstation& workstation);

private:
    struct Line {
        std::string description, type, toCheck;
        int number = 1; // how many are expected; 0: none has to be there
        bool operator==(const Line&) const = default;
    };

    void Read() override;
    void Show() override;
    bool MaySave() override;
    void Write(const model::Store& store) override;

    std::vector<Line> Load(const std::string& key) const;
    std::string Key() const;
    void ShowLines(std::size_t chosen);
    void ShowButtonsOfLines();
    Line* Chosen();
    void ChooseType();
    void ChooseList();
    void CopyFrom();
    void Add() override;
    void Remove() override;
    void MoveTo(std::size_t from, std::size_t to);
    void MoveBy(int steps) override;
    void DragOver(forms::FieldEvent& event);
    void Dropped(forms::FieldEvent& event);
    void Editing(forms::FieldEvent& event);
    void Edited(forms::FieldEvent& event);

    std::vector<model::DossierType> lclTypes;
    std::vector<std::string> lclTabTypes, lclKeys;
    std::string lclType, lclTabType;
    std::vector<Line> lclStored, lclLines;
};

} // namespace kavidex::controls
