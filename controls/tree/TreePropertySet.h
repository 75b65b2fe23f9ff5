// The tree control's properties, one by one.
#pragma once

#include <cstdint>
#include <string>

#include "controls/tree/TreeEvents.h"
#include "controls/tree/TreeProperties.h"

namespace kavidex::controls {

class TreePropertySet : public TreeSignals {
public:
    // Name() and SetName(value) of one saved property; a change is reported and takes effect.
#define KAVIDEX_TREE_PROPERTY(Type, Name)                                                          \
    const Type& Name() const { return lclState.Name; }                                             \
    void Set##Name(const Type& value) { Change(&TreeProperties::Name, value); }

    KAVIDEX_TREE_PROPERTY(bool, ShowExternalViewer)
    KAVIDEX_TREE_PROPERTY(std::int32_t, BackColor)
    KAVIDEX_TREE_PROPERTY(std::int32_t, ForeColor)
    KAVIDEX_TREE_PROPERTY(bool, Enabled)
    KAVIDEX_TREE_PROPERTY(std::int16_t, BackStyle)
    KAVIDEX_TREE_PROPERTY(std::int16_t, BorderStyle)
    KAVIDEX_TREE_PROPERTY(bool, AllowCreateFolders)
    KAVIDEX_TREE_PROPERTY(bool, AllowAddExternal)
    KAVIDEX_TREE_PROPERTY(bool, UpdateEnabled)
    KAVIDEX_TREE_PROPERTY(bool, DeleteEnabled)
    KAVIDEX_TREE_PROPERTY(bool, NewEnabled)
    KAVIDEX_TREE_PROPERTY(bool, ReadOnly)
    KAVIDEX_TREE_PROPERTY(std::string, Description)
    KAVIDEX_TREE_PROPERTY(std::string, AllowedTypes)
    KAVIDEX_TREE_PROPERTY(bool, ShowParentsOnly)
    KAVIDEX_TREE_PROPERTY(std::string, ShowParentsOnlyTypes)
    KAVIDEX_TREE_PROPERTY(bool, SelectItems)
    KAVIDEX_TREE_PROPERTY(std::string, NameForInsert)
    KAVIDEX_TREE_PROPERTY(std::string, TypeForInsert)
    KAVIDEX_TREE_PROPERTY(std::string, DossierType)
    KAVIDEX_TREE_PROPERTY(bool, FullExpand)
    KAVIDEX_TREE_PROPERTY(bool, OrderByName)
    KAVIDEX_TREE_PROPERTY(bool, FoldersAndDocs)
    KAVIDEX_TREE_PROPERTY(bool, AllwaysShowExt)
    KAVIDEX_TREE_PROPERTY(bool, AllwaysShowOrg)
    KAVIDEX_TREE_PROPERTY(bool, ShowMail)
    KAVIDEX_TREE_PROPERTY(bool, ShowPrint)
    KAVIDEX_TREE_PROPERTY(bool, ShowProperties)
    KAVIDEX_TREE_PROPERTY(bool, ShowDescriptionsInToolTip)
    KAVIDEX_TREE_PROPERTY(bool, ShowNumberOfChildren)
    KAVIDEX_TREE_PROPERTY(std::string, ValueFile)
    KAVIDEX_TREE_PROPERTY(std::string, EmailAddress)
    KAVIDEX_TREE_PROPERTY(std::int16_t, OLEDropMode)
    KAVIDEX_TREE_PROPERTY(bool, OpenDoubleClick)
    KAVIDEX_TREE_PROPERTY(bool, ShowDeleted)
#undef KAVIDEX_TREE_PROPERTY

protected:
    ~TreePropertySet() = default;

    using Row = Property<TreeProperties>;
    template <class Type>
    void Change(Type TreeProperties::*member, const Type& value) {
        const auto* row = FindProperty(TreePropertyTable(), member);
        if (row) CheckValue(*row, value);
        if (!Assign(lclState, member, value)) return;
        if (row) PropertyChanged.Raise(row->ReportedAs());
        TakeEffect(Row::Member(member));
    }
    virtual void TakeEffect(const Row::Member& member) = 0;

    TreeProperties lclState;
};

} // namespace kavidex::controls
