#include "controls/intake/PageWork.h"

#include <algorithm>
#include <exception>

#include "imaging/PageOperations.h"
#include "mail/MailNames.h"
#include "model/clsItem.h"
#include "model/documentFile.h"
#include "model/filing.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

bool IsTiff(const model::clsItem& item) {
    return platform::EqualNoCase(item.ItemType(), "tif") ||
           platform::EqualNoCase(item.ItemType(), "tiff");
}

// The description cut so that what follows it stays whole.
std::string With(std::string description, const std::string& rest) {
    const auto continues = [&] {
        return (static_cast<unsigned char>(description.back()) & 0xC0) == 0x80;
    };
    while (!description.empty() && model::ColumnText(description + rest) != description + rest) {
        while (description.size() > 1 && continues()) description.pop_back();
        description.pop_back();
    }
    return description + rest;
}

void RemoveQuietly(const platform::Workstation& machine, const std::string& path) {
    try {
        if (machine.files.FileExists(path)) machine.files.Remove(path);
    } catch (const std::exception& error) {
        machine.log.Write("PageWork", error.what());
    }
}

} // namespace

// The words are for the log.
void PageWork::TellUnusable(const std::string& description, const std::string& cause,
                            std::string_view words) const {
    lclSite.Machine().log.Write("PageWork", description + ": " + std::string(words));
    lclSite.TellReady(lclSite.Text("Document '$%$' kan niet gelezen worden", {description}) +
                      (cause.empty() ? "" : "\r\n\r\n" + cause));
}

void PageWork::TellUnreadable(const Source& source, const std::string& place, std::int32_t number,
                              std::string_view words) const {
    const auto cause = number == platform::errors::invalidData
                           ? lclSite.Text("Het bestand is beschadigd of geen TIFF-bestand")
                           : CauseOfReading(lclSite, place, number).value_or(std::string(words));
    TellUnusable(source.item->Description(), cause, words);
}

// All that is done to a document lets the user and the host in, and its id may be another one's in
// the dossier that they go on to.
bool PageWork::IsOpen(const Dossier& dossier, const model::clsItem& item) const {
    if (lclSite.OpenDossier() == dossier) return true;
    lclSite.Tell("$%$: het dossier is gesloten", {item.Description()});
    return false;
}

void PageWork::TakeAway(const std::vector<IntakeFile>& made) const {
    for (const auto& file : made) RemoveQuietly(lclSite.Machine(), file.file);
}

// False, and told why, when its pages cannot be counted.
bool PageWork::Open(const ItemPtr& item, Source& source) const {
    if (!lclSite.SaveShown(*item)) return false;
    const auto document = model::FindDocumentFile(lclSite.Machine(), lclSite.DbConnection(), *item);
    source = {item, document.path};
    if (!document.HasFile()) {
        const bool missing = document.outcome == model::DocumentLook::FileMissing;
        TellUnreadable(source, source.path, missing ? platform::errors::notFound : document.number,
                       document.error);
        return false;
    }
    try {
        source.pages = imaging::CountPages(lclSite.Machine().files, document.path);
        return true;
    } catch (const std::exception& error) {
        TellUnreadable(source, source.path, NumberOf(error), error.what());
        return false;
    }
}

// A new file of ours among the user's temporary ones; its name tells the moment.
std::string PageWork::NewPath(std::string_view rest) const {
    const auto& machine = lclSite.Machine();
    const auto now = machine.clock.Now();
    return mail::FreePath(
        machine.files, machine.files.TemporaryFolder(),
        platform::DateNumber(now) + " " + platform::TimeNumber(now) + std::string(rest), ".tif");
}

// --- Splitting ----------------------------------------------------------------------------------

void PageWork::Split(bool deleteSource) {
    const auto dossier = lclSite.OpenDossier();
    const auto selected = lclSite.SelectedItems();
    if (selected.size() != 1 || selected[0]->AllowChildren() || !IsTiff(*selected[0]))
        return lclSite.Tell("Selecteer een TIFF-document om te splitsen");
    Source source;
    if (!Open(selected[0], source)) return;
    if (source.pages < 2)
        return lclSite.Tell("Document kan niet gesplits worden omdat het maar 1 pagina bevat");
    const auto folder = lclSite.ParentOf(*source.item);
    if (!folder) return;
    const auto pages = WritePages(source);
    std::vector<IntakeFile> made;
    for (std::size_t i = 0; i < pages.size(); ++i)
        made.push_back({pages[i], false, true,
                        With(source.item->Description(),
                             " (" + lclSite.Text("pagina") + " " + std::to_string(i + 1) + ")")});
    if (made.empty()) return;
    if (!IsOpen(dossier, *source.item)) return TakeAway(made);
    if (FileAll(folder, made, 1) && deleteSource && IsOpen(dossier, *source.item))
        lclSite.Delete(*source.item);
}

// A file for each page, or none at all.
std::vector<std::string> PageWork::WritePages(const Source& source) const {
    Operation operation(lclSite.Lock());
    if (!operation) {
        lclSite.Tell("Er loopt nog een andere bewerking");
        return {};
    }
    operation.Show(lclSite.Text("Document splitsen"), source.item->Description(),
                   lclSite.Text("Annuleren"));
    try {
        return imaging::SplitPages(lclSite.Machine().files, source.path, [&](int page) {
            if (!operation.Step(page - 1, source.pages))
                throw platform::Error(platform::errors::fail, "The user stopped it.");
            return NewPath(" " + std::to_string(source.item->ItemId()) + "-" +
                           std::to_string(page));
        });
    } catch (const std::exception& error) {
        const bool stopped = operation.Stopped();
        operation.End();
        const std::string words = error.what();
        const bool reading = words.find(source.path) != std::string::npos;
        if (!stopped)
            TellUnreadable(source,
                           reading ? source.path : lclSite.Machine().files.TemporaryFolder(),
                           NumberOf(error), words);
        return {};
    }
}

// --- Stapling -----------------------------------------------------------------------------------

// Those that can be stapled; `leftOut` names the others, `broken`: the user was told of one that
// cannot be read.
std::vector<PageWork::Source> PageWork::OpenSelected(std::string& leftOut, bool& broken) const {
    std::vector<Source> sources;
    for (const auto& item : lclSite.SelectedItems()) {
        if (item->AllowChildren() || !IsTiff(*item)) {
            leftOut += "\r\n" + item->Description();
            continue;
        }
        Source source;
        broken = broken || !Open(item, source);
        if (broken) return {};
        sources.push_back(std::move(source));
    }
    return sources;
}

void PageWork::Staple(bool deleteSources) {
    const auto dossier = lclSite.OpenDossier();
    std::string leftOut;
    bool broken = false;
    const auto sources = OpenSelected(leftOut, broken);
    if (broken) return;
    const auto others =
        leftOut.empty()
            ? std::string()
            : lclSite.Text("Alleen TIFF-documenten worden geniet. Niet geniet: $%$", {leftOut});
    if (sources.size() < 2)
        return lclSite.TellReady(
            lclSite.Text("Selecteer minstens twee TIFF-documenten om te nieten") +
            (others.empty() ? "" : "\r\n\r\n" + others));
    const auto& first = *sources.front().item;
    const auto folder = lclSite.ParentOf(first);
    const auto target = NewPath(" " + std::to_string(first.ItemId()));
    if (!folder || !WriteStapled(sources, target)) return;
    int pages = 0;
    for (const auto& source : sources) pages += source.pages;
    const auto description = deleteSources
                                 ? first.Description()
                                 : With(first.Description(), " (" + lclSite.Text("geniet") + ")");
    const std::vector<IntakeFile> made{{target, false, true, description}};
    if (!IsOpen(dossier, first)) return TakeAway(made);
    if (!FileAll(folder, made, pages)) return;
    if (deleteSources)
        for (const auto& source : sources) // told; the others would hardly fare better
            if (!IsOpen(dossier, *source.item) || !lclSite.Delete(*source.item)) break;
    if (!others.empty()) lclSite.TellReady(others);
}

bool PageWork::WriteStapled(const std::vector<Source>& sources, const std::string& target) const {
    Operation operation(lclSite.Lock());
    if (!operation) {
        lclSite.Tell("Er loopt nog een andere bewerking");
        return false;
    }
    operation.Show(lclSite.Text("Documenten nieten"), sources.front().item->Description());
    operation.Step(0, 0);
    std::vector<std::string> paths;
    for (const auto& source : sources) paths.push_back(source.path);
    try {
        imaging::StapleFiles(lclSite.Machine().files, paths, target);
        return true;
    } catch (const std::exception& error) {
        operation.End();
        const std::string words = error.what();
        const auto named = std::find_if(sources.begin(), sources.end(), [&](const Source& source) {
            return words.find(source.path) != std::string::npos;
        });
        if (named == sources.end())
            TellUnreadable(sources.front(), target, NumberOf(error), words);
        else
            TellUnreadable(*named, named->path, NumberOf(error), words);
        return false;
    }
}

// --- Filing what was made -----------------------------------------------------------------------

// True when every file stands in the store, whole. What was not filed is told, and taken away: it
// can be made again from the sources, which are still there.
bool PageWork::FileAll(const ItemPtr& folder, const std::vector<IntakeFile>& made, int pagesEach) {
    const auto report = lclFiler.File(folder, EntriesOf(made));
    bool whole = report.Done() && report.filed.size() == made.size();
    for (std::size_t i = 0; whole && i < made.size(); ++i)
        if (!IsStored(report.filed[i], made[i].file, pagesEach)) {
            whole = false;
            TellUnusable(report.filed[i]->Description(),
                         lclSite.Text("De originelen blijven daarom bewaard."),
                         "What is stored is not what was made.");
        }
    TakeAway(made);
    TellNotAdded(lclSite, report);
    return whole;
}

// Filing removes what it made a copy of once both hold the same bytes.
bool PageWork::IsStored(const ItemPtr& item, const std::string& made, int pages) const {
    auto& files = lclSite.Machine().files;
    try {
        const auto stored =
            model::FindDocumentFile(lclSite.Machine(), lclSite.DbConnection(), *item);
        return stored.HasFile() && imaging::CountPages(files, stored.path) == pages &&
               (!files.FileExists(made) || files.SameBytes(made, stored.path));
    } catch (const std::exception& error) {
        lclSite.Machine().log.Write("PageWork", error.what());
        return false;
    }
}

} // namespace kavidex::controls
