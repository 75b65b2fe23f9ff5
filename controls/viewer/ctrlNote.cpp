#include "controls/viewer/ctrlNote.h"

#include <cstdio>

#include "controls/common/Causes.h"
#include "controls/viewer/NoteFile.h"
#include "mail/MailNames.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using forms::FieldRow;
using forms::Kind;
namespace anchor = forms::anchor;

// The text before its heading: so no letter of a heading becomes a key.
constexpr FieldRow fields[] = {
    {"txtMemo", Kind::Memo, {0, 14, 120, 46}, "Notitie", anchor::all},
    {"lblHeading", Kind::Label, {4, 3, 112, 9}, "", anchor::wide},
};
constexpr forms::Layout layout = {"ctrlNote", "", 120, 60, true, fields};

// No note that was typed is as large; whatever else bears the name is not read into memory.
constexpr std::uint64_t largest = std::uint64_t{16} * 1024 * 1024;

std::string InFile(std::string_view text) {
    return platform::Replace(platform::Replace(text, "\r\n", "\n"), "\n", "\r\n");
}
std::string InBox(std::string_view text) { return platform::Replace(text, "\r\n", "\n"); }

std::string OldPath(platform::Files& files, std::string_view path) {
    return mail::FreePath(files, platform::FolderOf(path), platform::FileName(path), ".old");
}

std::string TimeOfDay(const platform::DateTime& when) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", when.hour % 100, when.minute % 100,
                  when.second % 100);
    return text;
}

} // namespace

std::span<const Property<NoteProperties>> NotePropertyTable() {
    using P = NoteProperties;
    static constexpr Property<P> table[] = {{"Enabled", &P::Enabled},
                                            {"ReadOnly", &P::ReadOnly, false}};
    return table;
}

ctrlNote::ctrlNote(const platform::Workstation& workstation)
    : lclWorkstation(workstation), lclForm(layout, workstation), lclHeading(lclForm["lblHeading"]),
      lclText(lclForm["txtMemo"]) {
    lclForm.On("txtMemo", forms::What::Changed,
               [this](forms::FieldEvent&) { EvMemoChanged.Raise(); });
    lclForm.mayCancel = [] { return false; }; // Escape is the host's
}

template <class Type>
void ctrlNote::Change(Type NoteProperties::*member, const Type& value) {
    if (!Assign(lclState, member, value)) return;
    TakeEffect();
    if (const auto* row = FindProperty(NotePropertyTable(), member))
        PropertyChanged.Raise(row->ReportedAs());
}

template void ctrlNote::Change(bool NoteProperties::*, const bool&);

void ctrlNote::TakeEffect() {
    lclText.SetEnabled(lclState.Enabled);
    lclText.SetReadOnly(lclState.ReadOnly);
}

void ctrlNote::LoadProperties(PropertyBag& bag) {
    controls::LoadProperties(NotePropertyTable(), lclState, bag);
    TakeEffect();
}

void ctrlNote::SaveProperties(PropertyBag& bag) const {
    controls::SaveProperties(NotePropertyTable(), lclState, bag);
}

void ctrlNote::SetTranslate(std::shared_ptr<Translator> translator) {
    lclTranslator = std::move(translator);
    lclForm.SetTranslate(lclTranslator);
}

void ctrlNote::SetHeading(std::string_view heading) { lclHeading.SetText(heading); }

void ctrlNote::SetMemo(std::string_view memo) {
    lclMemo = memo;
    ShowMemo();
}

void ctrlNote::ShowMemo() { lclText.SetText(InBox(lclMemo)); }

std::string ctrlNote::Text() const { return InFile(lclText.Text()); }

void ctrlNote::SetText(std::string_view text) { lclText.SetText(InBox(text)); }

// Line ends that a text box does not tell apart are no change.
bool ctrlNote::IsChanged() const { return lclText.Text() != InBox(lclMemo); }

void ctrlNote::SetKey(std::string_view path) {
    if (path != lclKey) Expect(path);
}

void ctrlNote::Expect(std::string_view path) {
    lclKey = path;
    lclInFile.clear();
    lclUnread = false;
    lclWhole = true;
}

std::int16_t ctrlNote::fncCreateNew(std::string_view path) {
    lclError.clear();
    lclErrorNumber = platform::errors::fail;
    Expect(path);
    SetMemo("");
    const auto now = lclWorkstation.clock.Now();
    SetHeading(lclForm.Text("Gemaakt door:") + " '" + lclWorkstation.user.Name() + "' " +
               lclForm.Text("Op:") + " '" + platform::DayFirst(now) + "' " + lclForm.Text("om") +
               " '" + TimeOfDay(now) + "'");
    return 1;
}

std::int16_t ctrlNote::fncLoadMemo(std::string_view path) {
    lclError.clear();
    lclErrorNumber = platform::errors::fail;
    Expect(path);
    try {
        auto& files = lclWorkstation.files;
        if (!files.FileExists(lclKey)) return 0;
        lclUnread = true;
        if (files.Size(lclKey) > largest)
            throw platform::Error(
                platform::errors::invalidData,
                lclForm.Text("$%$: te groot voor een notitie", {platform::FileName(lclKey)}));
        lclInFile = files.ReadAll(lclKey);
        const auto note = ReadNote(lclInFile);
        lclUnread = false;
        lclWhole = note.whole;
        if (note.heading) SetHeading(*note.heading);
        if (note.memo) lclMemo = *note.memo;
        ShowMemo();
        return 1;
    } catch (const std::exception& error) {
        Failed("fncLoadMemo", error);
        return 0;
    }
}

std::int16_t ctrlNote::fncSaveMemo(bool ask) {
    lclError.clear();
    lclErrorNumber = platform::errors::fail;
    if (!IsChanged()) return 0;
    if (ask) {
        platform::Message question;
        question.text = lclForm.Text("Wilt u de wijzigingen opslaan?");
        question.caption = lclForm.Text("Bevestigen opslaan wijzigingen");
        question.buttons = platform::Buttons::YesNo;
        question.icon = platform::Icon::Question;
        // A box that goes with its window is no answer: what was typed is kept.
        if (lclWorkstation.messages.Show(question) == platform::Answer::No) return 1;
    }
    try {
        if (lclBeforeWrite) lclBeforeWrite();
        Write();
        return 1;
    } catch (const std::exception& error) {
        Failed("fncSaveMemo", error);
        return -1;
    }
}

void ctrlNote::Write() {
    if (lclKey.empty())
        throw platform::Error(platform::errors::invalidArgument,
                              lclForm.Text("De notitie heeft geen bestand"));
    if (lclUnread)
        throw platform::Error(platform::errors::invalidData,
                              lclForm.Text("$%$: niet gelezen en daarom niet overschreven",
                                           {platform::FileName(lclKey)}));
    auto& files = lclWorkstation.files;
    if (files.FileExists(lclKey) && (!lclWhole || files.ReadAll(lclKey) != lclInFile))
        files.Copy(lclKey, OldPath(files, lclKey), true);
    const std::string text = Text(), bytes = WriteNote(Heading(), text);
    files.WriteAll(lclKey, bytes);
    lclInFile = bytes;
    lclWhole = true;
    lclMemo = text;
}

void ctrlNote::Failed(std::string_view routine, const std::exception& error) {
    const auto* ours = dynamic_cast<const platform::Error*>(&error);
    lclErrorNumber = ours ? ours->Number() : platform::errors::fail;
    lclError = CauseText(TranslationBy(lclTranslator), platform::FileName(lclKey), error);
    lclWorkstation.log.Write(routine, error.what());
}

} // namespace kavidex::controls
