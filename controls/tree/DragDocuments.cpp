#include "controls/tree/DragDocuments.h"

#include <set>

#include "controls/common/CopyOut.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

constexpr std::size_t mostCopies = 50;

struct Offer {
    Offer(const platform::Workstation& machine, data::ConnectionPtr connection)
        : workstation(machine), documents(machine, std::move(connection)) {}

    const platform::Workstation& workstation;
    OutgoingDocuments documents;
    std::vector<std::string> failed;

    void Failed(const model::clsItem& item, const std::exception& error) {
        workstation.log.Write("OfferDocuments", item.Description() + ": " + error.what());
        failed.push_back(item.Description());
    }
    std::string Bytes(const model::clsItem& item) {
        try {
            return documents.Bytes(item);
        } catch (const std::exception& error) {
            Failed(item, error);
            throw;
        }
    }
    std::vector<std::string> Copies(const std::vector<std::shared_ptr<model::clsItem>>& items) {
        std::vector<std::string> files;
        std::string folder;
        for (const auto& item : items) {
            try {
                if (folder.empty()) folder = MakeCopyFolder(workstation);
                auto file = documents.CopyInto(folder, *item);
                if (!file.empty()) files.push_back(std::move(file));
            } catch (const std::exception& error) {
                Failed(*item, error);
            }
        }
        return files;
    }
};

} // namespace

std::shared_ptr<const std::vector<std::string>>
OfferDocuments(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
               const std::vector<std::shared_ptr<model::clsItem>>& documents, DropData& data) {
    const auto offer = std::make_shared<Offer>(workstation, connection);
    data.own = platform::ownDrag;
    std::set<std::string> names;
    for (const auto& item : documents) {
        const auto name = OutgoingName(*item);
        auto unique = name;
        const auto stem = OutgoingStem(item->Description());
        for (int n = 1; !names.insert(platform::LowerCase(unique)).second; ++n)
            unique = stem + " (" + std::to_string(n) + ")" + name.substr(stem.size());
        data.virtualFiles.push_back({unique, [offer, item] { return offer->Bytes(*item); }});
    }
    if (!documents.empty() && documents.size() <= mostCopies) {
        data.hasFiles = true;
        data.makeFiles = [offer, documents] { return offer->Copies(documents); };
    }
    return {offer, &offer->failed};
}

} // namespace kavidex::controls
