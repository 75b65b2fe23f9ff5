// Post: documents that wait in a folder and are handed to users and groups, each of which has a
// folder of the type "userpost" beside the users. A document is in one folder at a time.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/userRights.h"

namespace kavidex::model {

struct PostItem {
    NodeId id = 0;
    std::string type, description;
    std::int32_t document = 0;
    // What is known of one that was handed over, from the settings under "Post." and its id.
    NodeId from = 0; // the folder that it came from
    std::string by, on, remark;
    bool opened = false; // its user, or one of its group, has seen it
};

// The folder in which post waits; made within a transaction where there is none and it has a name.
NodeId PostFolder(const platform::Workstation& workstation, const Store& store,
                  const UserTree& place, std::string_view name);
std::vector<PostItem> PostIn(const Store& store, NodeId folder);
struct PostBox {
    NodeId folder = 0;
    int count = 0;
};
std::map<NodeId, PostBox> PostBoxes(const Store& store,
                                    const UserTree& place); // by the holder's id

bool FitsAsRemark(std::string_view remark);

// Gone: another one had it first. NoReceiver: somebody deleted him. Then nothing was written.
enum class PostResult { Done, Gone, NoReceiver };

// Within a transaction. `from` is where the documents are known to be.
PostResult GivePost(const platform::Workstation& workstation, const Store& store,
                    const UserTree& place, NodeId from, std::span<const NodeId> items,
                    const RightsHolder& receiver, std::string_view remark);
// Back to where each came from, or to `otherwise`; Gone also for one that its user has opened.
PostResult TakePostBack(const Store& store, NodeId folder, std::span<const NodeId> items,
                        NodeId otherwise);
PostResult MarkPostOpened(const platform::Workstation& workstation, const Store& store,
                          NodeId folder, NodeId item);
// Before a user or a group is deleted: its post waits again where it came from, else in the post
// folder, which gets that name if it is to be made.
void ReturnPost(const platform::Workstation& workstation, const Store& store, const UserTree& place,
                NodeId receiver, std::string_view name);

} // namespace kavidex::model
