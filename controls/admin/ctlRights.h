// The rights editor: the users and groups of the installation, and what each of them may do.
#pragma once

#include "controls/admin/AdminControl.h"
#include "model/userRights.h"

namespace kavidex::controls {

class ctlRights : public AdminControl {
public:
    explicit ctlRights(const platform::Workstation& workstation);

private:
    using Holder = model::RightsHolder;
    static constexpr std::string_view rightToChangeRights = "UpdateEditRights";

    void Read() override;
    void Show() override;
    bool MayWrite() const override;
    bool MaySave() override;
    void Write(const model::Store& store) override;

    void ShowRights();
    void ShowEffective();
    void Choose(std::int32_t id); // shows it as if the user had chosen it
    Holder* Chosen();
    Holder* Find(std::int32_t id);
    const Holder* Named(std::string_view name) const;
    const Holder* Before(std::int32_t id) const; // as it is stored, null for a new one

    void Search();
    void AddGroup() { AddHolder(true); }
    void AddUser() { AddHolder(false); }
    void AddHolder(bool group);
    void Remove() override;
    void PutInto(std::int32_t group, std::vector<Holder> moved); // right behind it
    bool IsWithin(std::int32_t id, std::int32_t group) const {
        return model::IsWithin(lclHolders, id, group);
    }
    void Editing(forms::FieldEvent& event);
    void Rename(forms::FieldEvent& event);
    void DragOver(forms::FieldEvent& event);
    void Dropped(forms::FieldEvent& event);
    void Key(forms::FieldEvent& event);
    void Tick(forms::FieldEvent& event);
    void Copy();
    void SwitchUse();

    model::UserTree lclPlace;
    std::vector<Holder> lclStored, lclHolders;
    bool lclStoredUse = false, lclUse = false;
    bool lclNobodyAccepted = false; // that nobody may change rights any more
    std::int32_t lclNext = -1;      // the id of the next new one
};

} // namespace kavidex::controls
