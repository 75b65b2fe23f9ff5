#include "controls/common/MergeOut.h"

#include <algorithm>

#include "controls/lists/DocumentRows.h"
#include "imaging/pdf/PdfDocument.h"
#include "imaging/pdfium/Pdfium.h"
#include "mail/MailNames.h"
#include "model/clsItem.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::controls {

namespace {

using imaging::PdfDocument;
using imaging::PdfOpened;

enum class Kind { Other, Tiff, Jpeg, Pdf };

constexpr std::pair<std::string_view, Kind> kinds[] = {{"tif", Kind::Tiff},
                                                       {"tiff", Kind::Tiff},
                                                       {"jpg", Kind::Jpeg},
                                                       {"jpeg", Kind::Jpeg},
                                                       {"pdf", Kind::Pdf}};

Kind KindOf(std::string_view path) {
    const auto extension = platform::LowerCase(platform::Extension(path));
    for (const auto& [name, kind] : kinds)
        if (name == extension) return kind;
    return Kind::Other;
}

class Merging {
public:
    Merging(const platform::Workstation& workstation, const data::Translation& translation,
            const MergeOrder& order)
        : lclWorkstation(workstation), lclTranslation(translation), lclOrder(order) {}

    void Take(const model::clsItem& item, const std::string& copy);
    void ReadRecords(const data::ConnectionPtr& connection);
    // The PDF file, and what lies beside it.
    std::vector<std::string> Make(std::string_view folder);

private:
    struct Part {
        std::string path;
        Kind kind;
        std::string place;
        DocumentRow row;
    };

    std::string DamageOf(const Part& part) const; // empty: it can be read
    void Add(PdfDocument& document, const Part& part) const;
    void Describe(PdfDocument& document) const;
    std::string Text(std::string_view text, const std::vector<std::string>& values = {}) const {
        return data::Translated(lclTranslation, text, values);
    }
    bool Has(Kind kind) const {
        return std::any_of(lclParts.begin(), lclParts.end(),
                           [&](const Part& part) { return part.kind == kind; });
    }
    bool Mergeable() const { return Has(Kind::Tiff) || Has(Kind::Jpeg) || Has(Kind::Pdf); }
    void PutBeside(Part& part, std::string_view why) const;
    void Write(std::string_view target);
    bool Join(std::string& whole);
    std::string Segment(std::size_t& at, bool first) const;
    void RemoveMerged(const std::string& path) const;

    const platform::Workstation& lclWorkstation;
    const data::Translation& lclTranslation;
    const MergeOrder& lclOrder;
    std::vector<Part> lclParts;
};

void Merging::Take(const model::clsItem& item, const std::string& copy) {
    Part part{copy,
              lclOrder.merge ? KindOf(copy) : Kind::Other,
              lclOrder.place ? lclOrder.place(item) : std::string(),
              {}};
    part.row.documentId = item.ItemId();
    part.row.description = item.Description();
    if (part.kind == Kind::Tiff || part.kind == Kind::Jpeg)
        if (const auto damage = DamageOf(part); !damage.empty()) PutBeside(part, damage);
    lclParts.push_back(std::move(part));
}

void Merging::ReadRecords(const data::ConnectionPtr& connection) {
    if (!lclOrder.descriptionPage) return;
    std::vector<DocumentRow> rows;
    for (auto& part : lclParts) rows.push_back(part.row);
    ReadInsertion(lclWorkstation, connection, rows); // the log tells what could not be read
    for (std::size_t i = 0; i < rows.size(); ++i) lclParts[i].row = std::move(rows[i]);
}

// Found beforehand, so that a damaged image does not take the others with it.
std::string Merging::DamageOf(const Part& part) const {
    try {
        PdfDocument nowhere([](std::string_view) {});
        Add(nowhere, part);
        return {};
    } catch (const platform::Error& error) {
        return error.what();
    }
}

void Merging::PutBeside(Part& part, std::string_view why) const {
    lclWorkstation.log.Write("MergeOut", part.path + ": " + std::string(why));
    part.kind = Kind::Other;
}

void Merging::Add(PdfDocument& document, const Part& part) const {
    if (part.kind == Kind::Tiff)
        document.AddTiff(lclWorkstation.files, part.path, lclOrder.marks);
    else if (!document.AddJpeg(lclWorkstation.files.ReadAll(part.path)))
        throw platform::Error(platform::errors::invalidData, "It is no JPEG file");
}

void Merging::Describe(PdfDocument& document) const {
    std::string lines;
    for (const auto& line : lclOrder.heading) lines += line + "\n";
    int number = 0;
    for (const auto& part : lclParts) {
        lines += "\n" + std::to_string(++number) + ". " + part.row.description + "\n";
        const auto tell = [&](const std::string& name, const std::string& value) {
            if (!value.empty()) lines += "    " + name + ": " + value + "\n";
        };
        tell(Text("Map"), part.place);
        tell(Text("Toegevoegd op"), part.row.insertedOn);
        tell(Text("Toegevoegd door"), part.row.insertedBy);
        if (part.kind == Kind::Other) tell(Text("Bestand"), platform::FileName(part.path));
    }
    document.AddText(lclOrder.title, lines);
}

// --- One file -----------------------------------------------------------------------------------

// The images from `at` on up to the next PDF file, or that file itself; `at` moves behind them.
std::string Merging::Segment(std::size_t& at, bool first) const {
    if (!first && lclParts[at].kind == Kind::Pdf)
        return lclWorkstation.files.ReadAll(lclParts[at++].path);
    std::string bytes;
    PdfDocument document([&](std::string_view piece) { bytes += piece; });
    if (first) Describe(document);
    for (; !first && at < lclParts.size() && lclParts[at].kind != Kind::Pdf; ++at)
        if (lclParts[at].kind != Kind::Other) Add(document, lclParts[at]);
    if (document.PageCount() == 0) return {};
    document.Finish(lclOrder.title);
    return bytes;
}

// False when one of the PDF files turned out not to be usable, and went beside.
bool Merging::Join(std::string& whole) {
    std::vector<std::string> segments;
    std::vector<Part*> from; // null: images
    const auto keep = [&](std::string bytes, Part* part) {
        if (bytes.empty()) return;
        segments.push_back(std::move(bytes));
        from.push_back(part);
    };
    std::size_t at = 0;
    if (lclOrder.descriptionPage) keep(Segment(at, true), nullptr);
    while (at < lclParts.size()) {
        auto* const part = lclParts[at].kind == Kind::Pdf ? &lclParts[at] : nullptr;
        keep(Segment(at, false), part);
    }
    std::size_t failed = 0;
    whole.clear();
    const auto outcome = imaging::Pdfium(imaging::PdfiumPath())
                             .Merge(
                                 segments, [&](std::string_view piece) { whole += piece; }, failed);
    if (outcome == PdfOpened::Yes) return true;
    if (outcome == PdfOpened::NotHere) {
        for (auto& part : lclParts)
            if (part.kind == Kind::Pdf) PutBeside(part, "PDFium is not here");
    } else if (failed < from.size() && from[failed]) {
        PutBeside(*from[failed],
                  outcome == PdfOpened::NeedsPassword ? "It needs a password" : "It is damaged");
    } else {
        throw platform::Error(platform::errors::invalidData, "The PDF file cannot be put together");
    }
    return false;
}

void Merging::Write(std::string_view target) {
    while (Has(Kind::Pdf)) {
        std::string whole;
        if (Join(whole)) return lclWorkstation.files.WriteAll(target, whole);
    }
    if (!lclOrder.descriptionPage && !Mergeable()) return;
    imaging::SavePdf(lclWorkstation.files, target, lclOrder.title, [&](PdfDocument& document) {
        if (lclOrder.descriptionPage) Describe(document);
        for (const auto& part : lclParts)
            if (part.kind != Kind::Other) Add(document, part);
    });
}

// It is in the PDF file; a copy that stays is only untidy.
void Merging::RemoveMerged(const std::string& path) const {
    try {
        lclWorkstation.files.Remove(path);
    } catch (const platform::Error& error) {
        lclWorkstation.log.Write("MergeOut", error.what());
    }
}

std::vector<std::string> Merging::Make(std::string_view folder) {
    auto& files = lclWorkstation.files;
    std::vector<std::string> out;
    const auto target = mail::FreePath(files, folder, OutgoingStem(lclOrder.title), ".pdf");
    Write(target);
    if (files.FileExists(target)) out.push_back(target);
    for (const auto& part : lclParts)
        if (part.kind == Kind::Other)
            out.push_back(part.path);
        else
            RemoveMerged(part.path);
    return out;
}

} // namespace

CopiedOut MergeOut(const platform::Workstation& workstation, const data::ConnectionPtr& connection,
                   OperationLock& lock, const data::Translation& translation,
                   const MergeOrder& order, std::string_view folder) {
    Merging merging(workstation, translation, order);
    auto copied = CopyOut(
        workstation, connection, lock, translation, order.documents, folder,
        [&](const model::clsItem& item, const std::string& path) { merging.Take(item, path); });
    if (copied.files.empty() || copied.left > 0) return copied;
    try {
        Operation operation(lock);
        operation.Show(data::Translated(translation, "Documenten exporteren"), order.title);
        merging.ReadRecords(connection);
        copied.files = merging.Make(folder);
    } catch (const platform::Error& error) {
        workstation.log.Write("MergeOut", error.what());
        copied.failed.push_back(order.title);
    }
    return copied;
}

} // namespace kavidex::controls
