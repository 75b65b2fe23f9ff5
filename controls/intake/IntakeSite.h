// What the intake of documents asks of the control around it: the open dossier, how what was filed
// is shown, and what the user may do. Nothing else of tree and viewer is known here.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/OperationLock.h"
#include "controls/common/Translator.h"
#include "controls/intake/Components.h"
#include "data/Connection.h"

namespace kavidex::mail {
class MailSource;
}
namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::model {
class clsItem;
class clsTree;
} // namespace kavidex::model
namespace kavidex::controls::forms {
class FormPresenter;
}

namespace kavidex::controls {

using ItemPtr = std::shared_ptr<model::clsItem>;
enum class UserAction;
class LetterGenerator;
class ScanPlace;
struct NewItemFacts;

// A dossier among those of every database.
struct Dossier {
    std::int32_t tree = 0;
    std::string database;                       // empty where the connection does not say
    std::weak_ptr<data::Connection> connection; // which then counts
    bool operator==(const Dossier& other) const {
        return tree == other.tree && database == other.database &&
               (!database.empty() || connection.lock() == other.connection.lock());
    }
};

class IntakeSite {
public:
    virtual ~IntakeSite() = default;

    virtual const platform::Workstation& Machine() const = 0;
    virtual OperationLock& Lock() = 0;
    virtual std::shared_ptr<Translator> Translate() const = 0;
    virtual data::ConnectionPtr DbConnection() const = 0;

    // Of the open dossier, null while none is open; whole for as long as it is held.
    virtual std::shared_ptr<model::clsTree> Tree() const = 0;
    // Its owner has opened the connection on another database: nothing may be written there.
    virtual bool IsElsewhere() const = 0;
    // The host's key, which the documents carry; throws where it cannot be known.
    virtual std::string DossierKey() = 0;
    virtual Dossier OpenDossier() const = 0;

    virtual ItemPtr SelectedFolder() const = 0; // or the one around it; null: nothing is selected
    virtual std::vector<ItemPtr> SelectedItems() const = 0; // in the order of the tree
    virtual ItemPtr ParentOf(const model::clsItem& item) const = 0;
    // A new item of the tree, already in the database.
    virtual void Show(const ItemPtr& item, std::int32_t folder, bool select) = 0;
    virtual void ShowAgain() = 0; // what stands beside the tree
    virtual bool Delete(const model::clsItem& item) = 0;
    // What the user changed of it where it is shown is written. False: it could not be, and the
    // user was told.
    virtual bool SaveShown(const model::clsItem& item) = 0;
    virtual void OpenDefault(const ItemPtr& item) = 0; // in its own program

    virtual bool HasRight(std::string_view right) const = 0;
    virtual bool MayUser(UserAction action) const = 0;
    virtual bool AcceptsType(std::string_view type) const = 0;

    virtual forms::FormPresenter* Forms() = 0;  // null without a window
    virtual mail::MailSource* MailSource() = 0; // null: none can be asked
    virtual ScanPlace* Scanner() = 0;           // null without a window
    virtual std::string ScanProfile() const = 0;
    // What the host has for the scanning control, by the names of its properties.
    virtual std::vector<std::pair<const wchar_t*, std::string>> TextsForScanner() const = 0;
    virtual std::unique_ptr<LetterGenerator> MakeLetterGenerator() = 0; // throws platform::Error

    virtual NewItemFacts NewItem() const = 0;
    virtual void InsertNew(std::size_t kind) = 0; // a position in NameForInsert

    // What the user reads, through the translator.
    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const;
    void Tell(std::string_view text, const std::vector<std::string>& values = {}) const;
    // Translated by the caller.
    void TellReady(std::string text) const;
    bool Ask(std::string question, std::string_view caption) const; // Yes or No
};

} // namespace kavidex::controls
