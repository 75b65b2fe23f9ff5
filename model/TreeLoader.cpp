#include "model/TreeLoader.h"

#include <algorithm>

#include "data/logText.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/General.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::model {
namespace {

constexpr std::string_view routine = "fncLoadCollectionFromDatabase";
constexpr std::string_view deletedMark = " VERWIJDERD";

} // namespace

TreeLoader::TreeLoader(const clsTree& tree, const platform::Workstation& workstation,
                       const data::ConnectionPtr& connection, bool orderByName,
                       data::Translation translation)
    : lclWorkstation(workstation), lclStore(connection), lclTranslation(std::move(translation)),
      lclOrderByName(orderByName),
      lclShowDeleted(platform::GetRegFlag(workstation, "TreeSettings", "ShowDeleted")),
      lclWork(workstation, data::Translated(lclTranslation, "Dossier openen"),
              data::Translated(lclTranslation, "Mappen en documenten worden gelezen."), &tree) {}

clsItemColPtr TreeLoader::Load(NodeId parentId) {
    lclFolders.insert(parentId);
    clsItemColPtr top = ReadChildren(parentId);
    while (!lclToRead.empty()) {
        lclWork.Step();
        clsItem& folder = *lclToRead.back();
        lclToRead.pop_back();
        if (clsItemColPtr children = ReadChildren(folder.Id()))
            folder.AttachChildren(std::move(children));
    }
    return top;
}

std::string TreeLoader::Statement(NodeId parentId) const {
    const std::string parent = Number(parentId);
    std::string statement = "Select * from tblTreeItem where ParentId = " + parent;
    if (parentId >= 0 && lclShowDeleted) statement += " or ParentId = -" + parent;
    return statement += lclOrderByName ? " ORDER BY Description" : " ORDER BY TreeItemId";
}

clsItemColPtr TreeLoader::ReadChildren(NodeId parentId) {
    clsItemColPtr children;
    const std::size_t waiting = lclToRead.size();
    try {
        const data::RecordsetPtr rows = lclStore.Read(Statement(parentId));
        if (rows->Eof()) return nullptr;
        children = std::make_shared<clsItemCol>(lclWorkstation);
        children->SetDbConnection(lclStore.Connection());
        children->Reserve(static_cast<std::size_t>(std::max<std::int64_t>(rows->RecordCount(), 0)));
        AddRows(*rows, *children);
        rows->Close();
    } catch (const std::exception& error) {
        Report(error);
    }
    std::reverse(lclToRead.begin() + static_cast<std::ptrdiff_t>(waiting), lclToRead.end());
    return children;
}

void TreeLoader::AddRows(data::Recordset& rows, clsItemCol& children) {
    const std::size_t idField = rows.IndexOf("TreeItemId"), typeField = rows.IndexOf("Type"),
                      itemField = rows.IndexOf("ItemId"), parentField = rows.IndexOf("ParentId"),
                      textField = rows.IndexOf("Description");
    for (; !rows.Eof(); rows.MoveNext()) {
        lclWork.Step();
        const NodeId id = data::ToInt32(rows.Get(idField));
        const std::string type = TrimmedText(rows.Get(typeField));
        const bool folder = fncCanHaveChildren(type);
        if (id == 0 || (folder && !lclFolders.insert(id).second)) {
            lclWorkstation.log.Write(routine,
                                     "Node " + Number(id) + " left out: " +
                                         (id == 0 ? "it has no id" : "it is in the tree already"));
            continue;
        }
        std::string description = TrimmedText(rows.Get(textField));
        if (data::ToInt32(rows.Get(parentField)) < 0) description += deletedMark;
        auto item = std::make_shared<clsItem>(id, type, data::ToInt32(rows.Get(itemField)),
                                              description, lclStore.Connection());
        if (folder) lclToRead.push_back(item.get());
        children.Append(std::move(item));
    }
}

void TreeLoader::Report(const std::exception& error) {
    const auto* const known = dynamic_cast<const platform::Error*>(&error);
    const std::int32_t number =
        known ? platform::ShownNumber(known->Number()) : platform::errors::fail;
    const std::string text = std::string(error.what()) + " " + Number(number);
    lclWorkstation.log.Write(routine, data::InLog(error) + " " + Number(number));
    // A connection that is gone fails for every folder of the tree: one box tells it.
    if (std::find(lclShown.begin(), lclShown.end(), text) != lclShown.end()) return;
    lclShown.push_back(text);
    platform::Message message;
    message.text = text;
    message.caption = data::Translated(lclTranslation, "Error in $%$", {std::string(routine)});
    lclWorkstation.messages.Show(message);
}

} // namespace kavidex::model
