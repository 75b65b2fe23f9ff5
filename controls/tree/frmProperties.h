// The dialog "Eigenschappen": what one item is, or what several have in common.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controls/forms/Form.h"
#include "data/Connection.h"

namespace kavidex::model {
class clsItem;
struct DocumentFile;
} // namespace kavidex::model

namespace kavidex::controls {

class frmProperties {
public:
    // `workstation` must outlive it.
    frmProperties(const platform::Workstation& workstation, data::ConnectionPtr connection,
                  std::shared_ptr<Translator> translator);

    // False: the description and the files are shown only. Before fncFill.
    void SetMayChange(bool may) { lclMayChange = may; }
    // One item or more. What fails is shown with its number; the rest is filled.
    void fncFill(const std::vector<std::shared_ptr<model::clsItem>>& items);
    forms::Form& Form() { return *lclForm; } // after fncFill: it follows from the items

    // Of a single item: as it was, or as it was last applied. Renaming is the caller's business.
    const std::string& Description() const { return lclNewDescription; }
    bool MayWriteChanged() const { return lclMayWriteChanged; } // of a file

private:
    void Make(const forms::Layout& wanted);
    const forms::Form& Form() const { return *lclForm; }
    void FillType(const std::vector<std::shared_ptr<model::clsItem>>& items);
    void FillAttributes();
    void FillOne(const model::clsItem& item, const model::DocumentFile& file);
    void FillSeveral(std::string_view first);
    bool Apply();
    void ShowPath();
    std::string TypeOf(const model::clsItem& item) const;

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    std::shared_ptr<Translator> lclTranslator;
    std::optional<forms::Form> lclForm;
    bool lclMayChange = true;
    bool lclMayWriteChanged = false;
    std::string lclDescription, lclNewDescription;     // before and after editing
    int lclDocuments = 0, lclFolders = 0, lclMode = 1; // 1: one item, 2: several
    std::int32_t lclItemId = 0;
    std::string lclFullPath;           // of a single document
    std::vector<std::string> lclPaths; // of every selected document that has one
};

} // namespace kavidex::controls
