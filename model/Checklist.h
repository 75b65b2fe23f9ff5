// The checklists of one dossier: what is expected in which folder, what is there, and what users
// said of it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "model/clsField.h"
#include "model/clsItem.h"
#include "model/dossierTypes.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::model {

class clsTree;

// What users said of one expected item in one folder, a row of tblCheckListRefFields.
struct ChecklistValue {
    std::int32_t id = 0; // 0: nobody said anything yet
    std::string description;
    bool needed = true;   // for this dossier
    bool present = false; // seen by a user, though no document shows it
    std::string value;    // of a field that is typed
    std::string checkedOn, checkedBy;
    bool SameMeaning(const ChecklistValue& other) const {
        return needed == other.needed && present == other.present && value == other.value;
    }
};

enum class ChecklistState { Present, Missing, Partly, Optional, NotNeeded };

struct ChecklistLine {
    clsFieldPtr field;
    std::string tabType;    // of the list that it belongs to
    NodeId folder = 0;      // 0: the dossier has no folder of that type
    std::string folderName; // then the type
    int found = 0;          // documents there that it describes
    ChecklistValue said;

    int Wanted() const { return field->NumberToRecieve() < 1 ? 1 : field->NumberToRecieve(); }
    ChecklistState State() const;
};

// The kinds of fields that are typed, as their FieldType says; every other holds documents.
enum class TypedField { None, Text, Date, Number };
TypedField TypedKind(std::string_view fieldType);
// Whether a document of that type (its extension) and description is one of those expected. The
// field's type names extensions ("tif;pdf"), or no type; its descriptions are parts of texts or
// patterns with * and ?, parted by semicolons, and its own text where there are none.
bool Describes(const clsField& field, std::string_view type, std::string_view description);
// The tab type of the dossier itself.
inline constexpr std::string_view wholeDossier = "Dossiertype";
// Whether a folder of that name was made from this row of its type, whatever its tokens gave.
bool IsOfTab(const DossierTab& tab, std::string_view folderName);

// The items of one list in their order; throws data::Error when it cannot be read.
std::vector<clsFieldPtr> LoadChecklist(const platform::Workstation& workstation,
                                       const data::ConnectionPtr& connection, std::string_view key);

class Checklist {
public:
    explicit Checklist(const platform::Workstation& workstation) : lclWorkstation(workstation) {}

    // `type` is a dossier type, or the key of one list ("type^tab type"). Throws data::Error, and
    // is empty then.
    void Load(const data::ConnectionPtr& connection, std::string_view type, clsTree* tree);
    // Looks at the tree again, in memory only; null: no dossier, nothing is expected.
    void Match(clsTree* tree);

    const std::vector<ChecklistLine>& Lines() const { return lclLines; }
    // The nearest folder at or above this one that has a list; 0: none.
    NodeId FolderWithList(clsTree& tree, NodeId folder) const;

    // Writes what a user says of a line, and reads back what holds. False, and nothing written,
    // when another user had said something else of it meanwhile, which the line then has. Throws
    // platform::Error when the folder is gone or the database refuses.
    bool Say(std::size_t line, ChecklistValue said);

private:
    struct List {
        std::string tabType;
        std::vector<clsFieldPtr> fields;
    };
    const List* ListOf(const clsItem& folder, bool top) const;
    std::vector<ChecklistValue> ReadValues(const Store& store, NodeId folder, bool now) const;
    const ChecklistValue* SaidOf(NodeId folder, const clsField& field) const;
    void AddLines(const List& list, const clsItem* folder);

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    std::vector<DossierTab> lclTabs;
    std::vector<List> lclLists;
    std::map<NodeId, std::vector<ChecklistValue>> lclValues;
    std::vector<ChecklistLine> lclLines;
};

} // namespace kavidex::model
