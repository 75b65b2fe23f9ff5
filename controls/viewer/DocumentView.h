// A way to show documents of some kind: scanned pages, notes, mails, what a browser shows. The
// viewer chooses it by the document's type (ViewerViews) and knows no more of it than this.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "controls/viewer/Part.h"
#include "data/Connection.h"
#include "model/documentFile.h"
#include "platform/Messages.h"

namespace kavidex::platform {
struct Workstation;
}
namespace kavidex::model {
class clsItem;
}

namespace kavidex::controls::forms {
class Form;
}

namespace kavidex::controls {

class ImageView;
class Translator;
class ViewerWindow;

// The document that is to be shown. Its file is there, except a note's in which nothing was
// written.
struct ShownDocument {
    std::shared_ptr<model::clsItem> item;
    model::DocumentFile file;
    std::string type;      // lower case, without blanks around it
    bool readOnly = false; // the file's attribute

    const std::string& Path() const { return file.path; }
};

struct StatusTexts {
    std::string page; // where the document has pages
    std::string hint, hintTip;
    std::string zoom;
};

// What a view asks of the viewer that it belongs to. While a question or a form is up nothing else
// is shown: what the host asks for meanwhile comes when the work that asked is done.
class ViewerFrame {
public:
    virtual const platform::Workstation& Machine() const = 0;
    virtual const data::ConnectionPtr& Connection() const = 0;
    virtual bool HasRight(std::string_view right) const = 0;
    virtual std::string Text(std::string_view text,
                             const std::vector<std::string>& values = {}) const = 0;
    virtual ViewerWindow* Window() const = 0; // null: there is none

    // What the view answers about itself is another now: parts, toolbars, status bar.
    virtual void ContentChanged() = 0;
    virtual void WantIdle() = 0;  // that Idle of the view is called
    virtual void ShowAgain() = 0; // what is shown, from the choice of its view on
    // Translated here.
    virtual platform::Answer Ask(std::string_view text, std::string_view caption,
                                 platform::Buttons buttons, platform::Icon icon,
                                 const std::vector<std::string>& values = {}) const = 0;
    // Shows it before the viewer's window; false: it was cancelled, or there is none.
    virtual bool ShowForm(forms::Form& form) const = 0;
    // The same for other work that lets messages through, such as a drag.
    virtual void Undisturbed(const std::function<void()>& work) const = 0;
    virtual const std::shared_ptr<Translator>& Translate() const = 0; // may be null
    // Under "Error in " and the routine's name; the log gets it too.
    virtual void TellError(std::string_view routine, const std::exception& error) const = 0;
    // Throws platform::Error, in words, where another user has deleted the item since it was shown.
    virtual void NeedItem(const model::clsItem& item) const = 0;
    // Raises EvOpenDossier.
    virtual void OpenDossier(const std::string& key, const std::string& type) = 0;

protected:
    ~ViewerFrame() = default;
};

// Something on the stage: a document, or the list of a folder's documents.
class StageView {
public:
    virtual ~StageView() = default;

    // Ends the showing; what was changed is saved, or the user is asked. False: it could not be,
    // and the view stays as it was.
    virtual bool Close() = 0;
    virtual PartSet Parts() const = 0; // that show at present
    virtual StatusTexts Status() const { return {}; }
    virtual void HintActivated() {} // a double click on the status bar's hint

    // One short piece of what waits to be done; true when more waits.
    virtual bool Idle() { return false; }

    virtual bool CanPrint() const { return false; }
    virtual void Print() {}

    // The commands of pages, null for a view that has none.
    virtual ImageView* Pages() { return nullptr; }

    // Rights, translator or connection are others.
    virtual void SurroundingsChanged() {}
};

class DocumentView : public StageView {
public:
    // False: it could not be shown, and the user was told.
    virtual bool Show(const ShownDocument& document) = 0;
};

} // namespace kavidex::controls
