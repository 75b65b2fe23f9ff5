#include "controls/intake/FiledBefore.h"

#include <exception>

#include "model/clsItem.h"
#include "model/clsItemCol.h"
#include "model/clsTree.h"
#include "model/documentFile.h"
#include "model/filing.h"
#include "model/storePath.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::size_t many = 64; // documents from which on the user sees that it takes a while

} // namespace

bool IsGone(const platform::Workstation& machine, const std::string& file) {
    try {
        const auto found = model::AttributesOf(machine, file);
        return !found || (*found & platform::attributes::directory) != 0;
    } catch (const platform::Error& error) {
        machine.log.Write("Intake", error.what());
        return error.Number() == platform::errors::invalidArgument; // no file has such a name
    } catch (const std::exception& error) {
        machine.log.Write("Intake", error.what());
        return false;
    }
}

FiledBefore::FiledBefore(IntakeSite& site)
    : lclSite(site), lclCaption(site.Text("Documenten toevoegen")) {}

FiledBefore::Answer FiledBefore::Look(const std::string& file) {
    try {
        if (!lclSite.Tree()) return Answer::Unknown;
        return Compare(file, DocumentsOf(model::DocumentTypeOf(file)));
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("Intake", error.what());
        return Answer::Unknown;
    }
}

FiledBefore::Answer FiledBefore::Compare(const std::string& file, const OfType& stored) const {
    const auto& machine = lclSite.Machine();
    const auto size = machine.files.Size(file);
    bool whole = stored.whole;
    for (const auto& one : stored.documents) {
        if (one.size != size) continue;
        try {
            if (!machine.files.SameBytes(file, one.path)) continue;
        } catch (const std::exception& error) {
            machine.log.Write("Intake", error.what());
            whole = false;
            continue;
        }
        try {
            model::RemoveCopied(machine, file, one.path);
            return Answer::Filed;
        } catch (const std::exception& error) {
            machine.log.Write("Intake", error.what());
            return Answer::FiledButThere;
        }
    }
    return whole ? Answer::No : Answer::Unknown;
}

const FiledBefore::OfType& FiledBefore::DocumentsOf(const std::string& type) {
    const auto known = lclTypes.find(type);
    if (known != lclTypes.end()) return known->second;
    std::vector<ItemPtr> found, items{lclSite.Tree()->Item()};
    for (std::size_t at = 0; at < items.size(); ++at) {
        const auto item = items[at];
        if (!item || item->Id() <= 0) continue;
        if (const auto children = item->ChildCollection())
            items.insert(items.end(), children->Items().begin(), children->Items().end());
        if (!item->AllowChildren() && platform::EqualNoCase(item->ItemType(), type))
            found.push_back(item);
    }
    auto& made = lclTypes[type];
    Resolve(found, made);
    return made;
}

// Nobody is let in meanwhile: the dossier stays.
void FiledBefore::Resolve(const std::vector<ItemPtr>& items, OfType& found) const {
    const auto& machine = lclSite.Machine();
    const platform::PaintOnly paint(machine.busy);
    Operation operation(lclSite.Lock());
    if (items.size() > many) operation.Show(lclCaption, "");
    model::DocumentFiles documents(machine, lclSite.DbConnection());
    int done = 0;
    for (const auto& item : items) {
        operation.Step(done++, static_cast<int>(items.size()));
        const auto stored = documents.Of(*item);
        using model::DocumentLook;
        found.whole = found.whole && stored.outcome != DocumentLook::NoStore &&
                      stored.outcome != DocumentLook::LookFailed &&
                      stored.outcome != DocumentLook::ReadFailed;
        if (!stored.HasFile()) continue;
        try {
            found.documents.push_back({stored.path, machine.files.Size(stored.path)});
        } catch (const std::exception& error) {
            machine.log.Write("Intake", error.what());
            found.whole = false;
        }
    }
}

} // namespace kavidex::controls
