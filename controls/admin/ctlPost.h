// Post distribution: documents that wait are shown and handed to users' folders, and taken back
// while they were not opened. Each act is written at once.
#pragma once

#include <map>
#include <memory>

#include "controls/admin/AdminControl.h"
#include "model/post.h"

namespace kavidex::model {
class clsTree;
}

namespace kavidex::controls {

class ctlViewer;

class ctlPost : public AdminControl {
public:
    explicit ctlPost(const platform::Workstation& workstation);
    ~ctlPost() override;

    ctlViewer& Viewer() { return *lclViewer; }

private:
    void Read() override;
    void Show() override;
    void Write(const model::Store&) override {}

    void ShowBox();
    void ShowButtonsOfPost();
    void ShowDocument(forms::FieldEvent& event);
    const model::RightsHolder* ChosenUser() const;
    bool IsOwn(const model::RightsHolder& user) const;
    void Give(std::vector<std::int32_t> items, std::int32_t user);
    void TakeBack(std::vector<std::int32_t> items);
    void AddFiles();
    // One act in one transaction; shows what holds afterwards.
    void Act(const std::function<model::PostResult(const model::Store&)>& act);

    std::unique_ptr<ctlViewer> lclViewer;
    std::shared_ptr<model::clsTree> lclTree; // for showing and for filing
    model::UserTree lclPlace;
    std::int32_t lclFolder = 0;
    std::vector<model::RightsHolder> lclHolders;
    std::map<model::NodeId, model::PostBox> lclBoxes;
    std::vector<model::PostItem> lclWaiting, lclGiven;
};

} // namespace kavidex::controls
