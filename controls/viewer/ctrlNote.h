// A note: a heading that says who made it and when, and a free text, kept in a small file of its
// own. Heading and text are the fields of a form, which any window of forms shows.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "controls/common/Event.h"
#include "controls/common/PropertyTable.h"
#include "controls/common/Translator.h"
#include "controls/forms/Form.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::controls {

struct NoteProperties {
    bool Enabled = true;
    bool ReadOnly = false; // the text can be read and copied only
};

std::span<const Property<NoteProperties>> NotePropertyTable();

class ctrlNote {
public:
    explicit ctrlNote(const platform::Workstation& workstation);
    ctrlNote(const ctrlNote&) = delete;
    ctrlNote& operator=(const ctrlNote&) = delete;

    const std::string& Key() const { return lclKey; } // the full path of the note's file
    void SetKey(std::string_view path);
    std::string Heading() const { return lclHeading.Text(); }
    void SetHeading(std::string_view heading);
    // The text as last loaded, created or saved; setting it shows it.
    const std::string& Memo() const { return lclMemo; }
    void SetMemo(std::string_view memo);
    // The text as it stands in the text box, with line ends as a file has them.
    std::string Text() const;
    void SetText(std::string_view text);
    bool IsChanged() const; // the text box differs from Memo

    bool Enabled() const { return lclState.Enabled; }
    void SetEnabled(bool enabled) { Change(&NoteProperties::Enabled, enabled); }
    bool ReadOnly() const { return lclState.ReadOnly; }
    void SetReadOnly(bool readOnly) { Change(&NoteProperties::ReadOnly, readOnly); }
    const std::shared_ptr<Translator>& Translate() const { return lclTranslator; }
    void SetTranslate(std::shared_ptr<Translator> translator);
    void LoadProperties(PropertyBag& bag);
    void SaveProperties(PropertyBag& bag) const;

    // Starts an empty note for that file, which is not written yet: 1.
    std::int16_t fncCreateNew(std::string_view path);
    // 1 when the file was there and was read. 0 leaves all but Key as it was; a file that is there
    // and cannot be read is not overwritten by a later save.
    std::int16_t fncLoadMemo(std::string_view path);
    // 1 when the text had changed and was written, or the user declined; 0 when there was nothing
    // to save; -1 when it could not be written. A file that held more than a note's two records, or
    // that someone else changed meanwhile, is kept beside it with ".old" behind its name.
    std::int16_t fncSaveMemo(bool ask);
    // Of the last operation, empty when it succeeded: the control itself shows no errors.
    const std::string& LastError() const { return lclError; }
    std::int32_t LastErrorNumber() const { return lclErrorNumber; }

    // Asked before a change is written, which it keeps from the file by throwing.
    void SetBeforeWrite(std::function<void()> ask) { lclBeforeWrite = std::move(ask); }

    Event<> EvMemoChanged; // the user typed
    Event<std::string_view> PropertyChanged;

    forms::Form& Form() { return lclForm; }

private:
    template <class Type>
    void Change(Type NoteProperties::*member, const Type& value);
    void TakeEffect();
    void ShowMemo();
    void Failed(std::string_view routine, const std::exception& error);
    void Write();
    void Expect(std::string_view path);

    const platform::Workstation& lclWorkstation;
    std::shared_ptr<Translator> lclTranslator;
    NoteProperties lclState;
    forms::Form lclForm;
    forms::Field &lclHeading, &lclText;
    std::string lclKey, lclMemo, lclError;
    std::int32_t lclErrorNumber = 0;
    std::string lclInFile; // its bytes as they were read or written; empty: there was no file
    std::function<void()> lclBeforeWrite;
    bool lclUnread = false; // the file is there, what it holds is not known
    bool lclWhole = true;   // heading and text are all that it holds
};

} // namespace kavidex::controls
