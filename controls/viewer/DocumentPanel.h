// What stands beside the folder tree: the documents of a folder as a list, or the basic facts of
// one document. It works without a window; a window that is attached shows the content as it is.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/common/Appearance.h"
#include "controls/common/Event.h"
#include "controls/common/Translator.h"
#include "controls/lists/DocumentRows.h"
#include "controls/lists/VirtualList.h"
#include "data/Connection.h"
#include "model/documentFile.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::model {
class clsItem;
class clsUserAuth;
} // namespace kavidex::model

namespace kavidex::controls {

struct DocumentFacts {
    DocumentRow row;
    std::string path;     // empty when the store is not set up
    std::string size;     // "12,3 kB"; empty when there is no file
    bool missing = false; // what could not be looked for is not missing
};

enum class PanelContent { Nothing, Folder, Document };

class PanelWindow {
public:
    virtual ~PanelWindow() = default;
    virtual void ContentChanged() = 0;
    virtual void AppearanceChanged() = 0;
};

class DocumentPanel {
public:
    using ItemPtr = std::shared_ptr<model::clsItem>;

    explicit DocumentPanel(const platform::Workstation& workstation);
    ~DocumentPanel();
    DocumentPanel(const DocumentPanel&) = delete;
    DocumentPanel& operator=(const DocumentPanel&) = delete;

    void SetDbConnection(data::ConnectionPtr connection) { lclConnection = std::move(connection); }
    void SetTranslate(std::shared_ptr<Translator> translator);
    void SetUserAuth(std::shared_ptr<model::clsUserAuth> rights) {
        lclUserAuth = std::move(rights);
    }
    void SetAppearance(std::int32_t back, std::int32_t fore, bool enabled,
                       std::optional<FontFace> font);
    std::int32_t BackColor() const { return lclBackColor; } // 0: the system's
    std::int32_t ForeColor() const { return lclForeColor; }
    bool Enabled() const { return lclEnabled; }
    const std::optional<FontFace>& Font() const { return lclFont; }
    // Of the list's first column, in pixels at 96 dots an inch; 0: what the others leave.
    void SetColWidth(std::int32_t width);

    void ShowNothing();
    void ShowList(const ItemPtr& folder);
    // A document whose file is not there is told to the user; its facts show all the same.
    void ShowItem(const ItemPtr& document);
    void Refresh(); // reads again what is shown

    PanelContent Content() const { return lclContent; }
    std::string Caption() const;
    std::string NothingSelected() const; // the text while nothing is shown
    // As the folder has them, and as they are shown.
    const std::vector<DocumentRow>& Documents() const { return lclDocuments; }
    VirtualList& List() { return lclList; }
    const DocumentFacts& Document() const { return lclFacts; }
    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const;

    bool CanOpen() const { return lclContent == PanelContent::Document && !lclFacts.size.empty(); }
    void OpenDefault(); // the shown document, in its default program
    // As above for any document; false when its file is not there or no program opens it.
    bool OpenDefault(const ItemPtr& document);

    model::DocumentFile FileOf(const ItemPtr& document) const;

    Event<std::int32_t> DocumentChosen; // a document of the list, by the id of its tree item

    // The window must detach (null) before it dies.
    void AttachWindow(PanelWindow* window);

private:
    void ClearDocuments();
    model::DocumentFile ReadFacts();
    void ContentChanged();
    // Why a document's file cannot be used: that it is not there, or the error of `routine`.
    void TellUnusable(const model::DocumentFile& file, std::string_view routine) const;
    void TellError(std::int32_t number, std::string_view words, std::string_view routine) const;

    const platform::Workstation& lclWorkstation;
    data::ConnectionPtr lclConnection;
    std::shared_ptr<Translator> lclTranslator;
    std::shared_ptr<model::clsUserAuth> lclUserAuth;
    std::optional<FontFace> lclFont;
    std::int32_t lclBackColor = 0, lclForeColor = 0;
    bool lclEnabled = true;

    PanelContent lclContent = PanelContent::Nothing;
    ItemPtr lclItem; // what is shown
    std::vector<DocumentRow> lclDocuments;
    DocumentFacts lclFacts;
    VirtualList lclList;
    std::shared_ptr<void> lclActivated;
    PanelWindow* lclWindow = nullptr;
};

// "512 bytes", "12,3 kB", "4,0 MB": decimal comma, steps of 1024.
std::string SizeText(std::uint64_t bytes);

} // namespace kavidex::controls
