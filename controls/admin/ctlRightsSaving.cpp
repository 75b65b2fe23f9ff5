// What the rights editor asks before it saves, and the saving.
#include <algorithm>
#include <map>
#include <optional>

#include "controls/admin/ctlRights.h"
#include "data/Error.h"
#include "data/clsSettings.h"
#include "model/post.h"
#include "model/treeRows.h"
#include "platform/text.h"

namespace kavidex::controls {

bool ctlRights::MayWrite() const {
    return MayChange() || May("CreateEditRights") || May("DeleteEditRights");
}

bool ctlRights::MaySave() {
    auto after = lclHolders;
    bool asked = false;
    for (const auto& group : lclHolders) {
        if (!group.isGroup) continue;
        const auto* before = Before(group.id);
        const auto follows = [&](const Holder& holder) {
            return holder.id != group.id && IsWithin(holder.id, group.id);
        };
        const bool changed =
            before ? before->rights != group.rights
                   : group.rights.any() && std::any_of(after.begin(), after.end(), follows);
        if (!changed) continue;
        if (!asked && !Ask("Hiermee vervangt u alle instellingen voor gebruikers van deze groep. "
                           "Weet u zeker dat u dit wilt?",
                           "Bevestigen toepassen wijzigingen"))
            return false;
        asked = true;
        for (auto& holder : after) // a changed group within this one follows later, and counts
            if (holder.id == group.id || follows(holder)) holder.rights = group.rights;
    }
    if (!ConfirmWhoIsLeft(after)) return false;
    lclToWrite = std::move(after);
    return true;
}

bool ctlRights::IsRenamed(const Holder& holder) const {
    const auto* before = Before(holder.id);
    return before && !platform::EqualNoCase(before->name, holder.name);
}

std::vector<std::string> ctlRights::NewNames() const {
    std::vector<std::string> names;
    for (const auto& holder : lclHolders)
        if (IsRenamed(holder)) names.push_back(holder.name);
    return names;
}

// Who got another name may not be able to log on with it.
bool ctlRights::ConfirmWhoIsLeft(const std::vector<Holder>& after) {
    const bool lockedAlready = lclStoredUse && !model::SomebodyAdministers(lclStored);
    lclMayLeaveNobody = lclNobodyAccepted;
    if (!lclUse || lclNobodyAccepted || lockedAlready) return true;
    auto known = after;
    std::erase_if(known, [&](const Holder& holder) { return IsRenamed(holder); });
    if (model::SomebodyAdministers(known)) return true;
    lclMayLeaveNobody =
        model::SomebodyAdministers(after)
            ? Ask("Alleen wie een andere naam krijgt mag dan nog rechten wijzigen. Wie zich met "
                  "die "
                  "naam niet kan aanmelden, kan dit niet meer terugdraaien. Wilt u echt doorgaan?",
                  "Bevestigen opslaan wijzigingen")
            : ConfirmNobodyLeft(Form(), Machine());
    return lclMayLeaveNobody;
}

void ctlRights::Write(const model::Store& store) {
    // Held before anything is read: what is read then is what others have left.
    model::HoldSettings(store);
    if (lclPlace.tree != 0) model::HoldNode(store, lclPlace.users);
    const auto place = model::MakeUserTree(Machine(), store, Text("Gebruikers en groepen"));
    const auto now = model::LoadHolders(Machine(), store);
    const bool administered = model::AnAdministratorIsLeft(Machine(), store.Connection());
    const auto stored = [&](std::int32_t id) -> const Holder* {
        const auto found =
            std::find_if(now.begin(), now.end(), [&](const Holder& h) { return h.id == id; });
        return found == now.end() ? nullptr : &*found;
    };
    const auto written = [&](std::int32_t id) -> const Holder* {
        const auto found = std::find_if(lclToWrite.begin(), lclToWrite.end(),
                                        [&](const Holder& h) { return h.id == id; });
        return found == lclToWrite.end() ? nullptr : &*found;
    };
    const auto unchanged = [&](const Holder& before) {
        const auto* there = stored(before.id);
        if (!there || *there != before) throw ChangedMeanwhile{before.name};
    };
    std::vector<const Holder*> gone, renamed;
    for (const auto& before : lclStored) {
        const auto* after = written(before.id);
        if (after && *after == before) continue;
        unchanged(before);
        if (!after)
            gone.push_back(&before);
        else if (after->name != before.name)
            renamed.push_back(&before);
    }
    // What someone else made under a name of ours, or put into a group that goes.
    for (const auto& there : now) {
        const auto* before = Before(there.id);
        const bool goes = there.group != 0 && Before(there.group) && !Find(there.group);
        const auto* ours = Named(there.name);
        const bool taken = ours && ours->id != there.id && (!before || before->name != there.name);
        if (taken || (goes && (!before || before->group != there.group)))
            throw ChangedMeanwhile{there.name};
    }
    // A name may be given to another one at once.
    for (const auto* holder : gone) model::RemoveRights(Machine(), store, holder->name);
    const auto aside = [](const Holder& holder) { return "~" + std::to_string(holder.id); };
    for (const auto* holder : renamed)
        model::MoveRights(Machine(), store, holder->name, aside(*holder));
    for (const auto* holder : renamed) {
        const auto& name = Find(holder->id)->name;
        if (model::KeptRights(Machine(), store, name)) throw ChangedMeanwhile{name};
        model::MoveRights(Machine(), store, aside(*holder), name);
    }
    for (const auto& [id, kept] : lclKept)
        if (const auto* made = Find(id);
            made &&
            model::KeptRights(Machine(), store, made->name).value_or(model::RightSet()) != kept)
            throw ChangedMeanwhile{made->name};
    std::map<std::int32_t, std::int32_t> given; // ids of the new groups
    for (const bool groups : {true, false})
        for (auto holder : lclToWrite) {
            const auto* before = Before(holder.id);
            if (holder.isGroup != groups || (before && *before == holder)) continue;
            if (given.contains(holder.group)) holder.group = given[holder.group];
            if (before)
                model::ChangeHolder(Machine(), store, place, *before, holder);
            else
                given[holder.id] = model::AddHolder(Machine(), store, place, holder);
        }
    // Of two who put groups into each other, the second would leave a ring that nothing leads to.
    const auto lost = [&, put = std::optional<std::vector<Holder>>()](const Holder& group) mutable {
        const auto* before = Before(group.id);
        if (!group.isGroup || !before || before->group == group.group) return false;
        if (!put) put = model::LoadHolders(Machine(), store);
        return std::none_of(put->begin(), put->end(),
                            [&](const Holder& there) { return there.id == group.id; });
    };
    if (const auto ring = std::find_if(lclHolders.begin(), lclHolders.end(), lost);
        ring != lclHolders.end())
        throw ChangedMeanwhile{ring->name};
    // Users before the groups that held them.
    for (auto holder = gone.rbegin(); holder != gone.rend(); ++holder) {
        model::ReturnPost(Machine(), store, place, (*holder)->id, Text("Post"));
        model::RemoveHolder(store, (*holder)->id);
    }
    // Each of two may have left it to the other.
    if (lclUse && !lclMayLeaveNobody && administered &&
        !model::AnAdministratorIsLeft(Machine(), store.Connection(), NewNames()))
        throw ChangedMeanwhile{Text("Rechten wijzigen")};
    const auto use = model::ReadSetting(Machine(), store.Connection(), "Rights", "Use");
    if ((use && platform::EqualAsciiNoCase(*use, "true")) != lclStoredUse)
        throw ChangedMeanwhile{Text("Rechten gebruiken")};
    if (lclUse == lclStoredUse) return;
    data::clsSettings settings(Machine());
    settings.SetDbConnection(store.Connection());
    settings.SetSetting("Rights", "Use", lclUse ? "True" : "False");
    if (!settings.Failure().empty())
        throw data::Error(data::errors::objectClosed, settings.Failure(), "Kavidex");
}

} // namespace kavidex::controls
