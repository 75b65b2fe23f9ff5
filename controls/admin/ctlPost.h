// Post distribution: documents that wait are shown and handed to the folders of users and groups,
// and taken back while they were not opened. Each act is written at once.
#pragma once

#include <map>
#include <memory>

#include "controls/admin/AdminControl.h"
#include "model/post.h"

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
    bool MarkOpened(model::PostItem& post); // false: it is not there any more
    std::vector<model::PostItem> GivenToChosen() const;
    const model::RightsHolder* Find(std::int32_t id) const;
    const model::RightsHolder* Chosen() const;
    model::NodeId BoxOf(const model::RightsHolder* receiver) const; // 0: none yet
    bool IsMe(const model::RightsHolder& user) const;
    bool IsOwn(const model::RightsHolder& receiver) const;

    void ChooseReceiver();
    void WaitingKey(forms::FieldEvent& event);
    void GivenKey(forms::FieldEvent& event);
    void OverReceiver(forms::FieldEvent& event);
    void DropOnReceiver(forms::FieldEvent& event);
    void OverWaiting(forms::FieldEvent& event);
    void DropOnWaiting(forms::FieldEvent& event);
    void GiveChosen();
    void TakeChosenBack();
    void Give(std::vector<std::int32_t> items, std::int32_t receiver);
    void TakeBack(std::vector<std::int32_t> items);
    void AddFiles();
    void TellGone() const;
    // One act in one transaction; shows what holds afterwards.
    void Act(const std::function<model::PostResult(const model::Store&)>& act);

    std::unique_ptr<ctlViewer> lclViewer;
    model::UserTree lclPlace;
    std::int32_t lclFolder = 0;
    std::vector<model::RightsHolder> lclHolders;
    std::map<model::NodeId, model::PostBox> lclBoxes;
    std::vector<model::PostItem> lclWaiting, lclGiven;
};

} // namespace kavidex::controls
