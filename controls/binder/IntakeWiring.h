// What the intake asks of the binder control, answered by its parts.
#pragma once

#include "controls/intake/Backlog.h"
#include "controls/intake/Intake.h"
#include "controls/intake/NewItems.h"
#include "controls/intake/PageWork.h"
#include "controls/intake/ScanPanel.h"
#include "controls/intake/ScanQueue.h"

namespace kavidex::data {
class ConnectionAssignment;
}

namespace kavidex::controls {

class ctrlCorrespondence;
class MailSender;

class IntakeWiring final : public IntakeSite {
public:
    // Both must outlive it.
    IntakeWiring(ctrlCorrespondence& binder, const platform::Workstation& workstation,
                 OperationLock& lock, IntakeComponents components)
        : lclBinder(binder), lclWorkstation(workstation), lclLock(lock),
          lclComponents(std::move(components)) {}

    const platform::Workstation& Machine() const override { return lclWorkstation; }
    OperationLock& Lock() override { return lclLock; }
    std::shared_ptr<Translator> Translate() const override;
    data::ConnectionPtr DbConnection() const override;
    std::shared_ptr<model::clsTree> Tree() const override;
    bool IsElsewhere() const override;
    std::string DossierKey() override;
    Dossier OpenDossier() const override;
    ItemPtr SelectedFolder() const override;
    std::vector<ItemPtr> SelectedItems() const override;
    ItemPtr ParentOf(const model::clsItem& item) const override;
    void Show(const ItemPtr& item, std::int32_t folder, bool select) override;
    void ShowAgain() override;
    bool Delete(const model::clsItem& item) override;
    bool SaveShown(const model::clsItem& item) override;
    void OpenDefault(const ItemPtr& item) override;
    bool HasRight(std::string_view right) const override;
    bool MayUser(UserAction action) const override;
    bool AcceptsType(std::string_view type) const override;
    forms::FormPresenter* Forms() override;
    mail::MailSource* MailSource() override { return lclComponents.mail.get(); }
    ScanPlace* Scanner() override;
    std::string ScanProfile() const override;
    std::vector<std::pair<const wchar_t*, std::string>> TextsForScanner() const override;
    std::unique_ptr<LetterGenerator> MakeLetterGenerator() override;
    NewItemFacts NewItem() const override;
    void InsertNew(std::size_t kind) override;

private:
    ctrlCorrespondence& lclBinder;
    const platform::Workstation& lclWorkstation;
    OperationLock& lclLock;
    IntakeComponents lclComponents;
};

// The objects of the intake, for as long as the control lives.
struct IntakeParts {
    IntakeWiring site;
    Intake intake{site};
    PageWork pages{site};
    ScanQueue queue{site, intake};
    Backlog backlog{site};
    ScanPanel scan{site, intake};
    NewItems newItems{site, intake};
    std::shared_ptr<MailSender> mail = {}; // null where mail cannot be sent
};

} // namespace kavidex::controls
