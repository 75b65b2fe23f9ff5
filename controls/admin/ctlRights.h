// The rights editor: the users and groups of the installation, and what each of them may do.
#pragma once

#include <map>
#include <optional>

#include "controls/admin/AdminControl.h"
#include "model/userRights.h"

namespace kavidex::controls {

class ctlRights : public AdminControl {
public:
    explicit ctlRights(const platform::Workstation& workstation);

private:
    using Holder = model::RightsHolder;

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
    bool IsRenamed(const Holder& holder) const;  // users log on with the name that it had
    std::vector<std::string> NewNames() const;
    bool ConfirmWhoIsLeft(const std::vector<Holder>& after);
    // Of somebody whom the tree does not know.
    std::optional<model::RightSet> KeptUnder(std::string_view name) const;

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
    std::vector<Holder> lclToWrite; // the holders, with the rights that their groups give them
    std::map<std::int32_t, model::RightSet> lclKept; // what new ones have under their names already
    bool lclStoredUse = false, lclUse = false;
    bool lclNobodyAccepted = false; // that nobody may change rights, when they were switched on
    bool lclMayLeaveNobody = false; // the same of what is being written
    std::int32_t lclNext = -1;      // the id of the next new one
};

} // namespace kavidex::controls
