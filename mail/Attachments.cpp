#include "mail/Attachments.h"

#include "imaging/pdf/PdfDocument.h"
#include "imaging/tiff/Source.h"
#include "mail/MailNames.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "platform/text.h"

namespace kavidex::mail {

namespace {

enum class Way { AsItIs, Pages, Note, Picture };

struct Kind {
    std::string_view type;
    Way way;
    bool always; // else only where the user asked for PDF
};
constexpr Kind kinds[] = {
    {"tif", Way::Pages, true},    {"nnt", Way::Note, true},      {"tiff", Way::Pages, false},
    {"jpg", Way::Picture, false}, {"jpeg", Way::Picture, false},
};

Way WayOf(std::string_view type, bool asPdf) {
    for (const Kind& kind : kinds)
        if (platform::EqualNoCase(kind.type, type))
            return kind.always || asPdf ? kind.way : Way::AsItIs;
    return Way::AsItIs;
}

struct Stopped {};

// The name without the extension that is put behind it.
std::string Bare(const std::string& name, std::string_view extension) {
    const bool there =
        name.size() > extension.size() &&
        platform::EqualNoCase(std::string_view(name).substr(name.size() - extension.size()),
                              extension);
    return platform::Trim(there ? name.substr(0, name.size() - extension.size()) : name);
}

} // namespace

std::optional<MailAttachment> Attachments::Make(const MailDocument& document,
                                                const std::function<bool()>& step) const {
    const bool pdf = WayOf(document.type, lclRules.asPdf) != Way::AsItIs;
    const auto own = platform::Extension(document.path);
    const std::string extension = pdf ? ".pdf" : own.empty() ? own : "." + own;
    auto bare = Bare(document.name, own.empty() ? own : "." + own);
    bare = bare.empty() ? "Document" : DisplayName(bare);
    MailAttachment made;
    // The mail programs of those who get it name the file by this, not by what we show.
    made.path = FreePath(lclWorkstation.files, lclFolder, SafeName(bare), extension);
    made.name = bare + extension;
    try {
        if (pdf)
            MakePdf(document, made.path, step);
        else
            lclWorkstation.files.Copy(document.path, made.path, true);
    } catch (const Stopped&) {
        return std::nullopt;
    }
    if (!step()) return std::nullopt;
    return made;
}

void Attachments::MakePdf(const MailDocument& document, const std::string& target,
                          const std::function<bool()>& step) const {
    auto& files = lclWorkstation.files;
    imaging::SavePdf(files, target, document.name, [&](imaging::PdfDocument& pdf) {
        switch (WayOf(document.type, lclRules.asPdf)) {
        case Way::Pages: {
            imaging::tiff::Source source(files, document.path);
            const int count = source.PageCount();
            for (int page = 1; page <= count; ++page) {
                pdf.AddPage(source, page, lclRules.marks);
                if (!step()) throw Stopped{};
            }
            break;
        }
        case Way::Note: {
            const auto note = lclRules.readNote(files.ReadAll(document.path));
            pdf.AddText(note.heading, note.text);
            break;
        }
        default:
            if (!pdf.AddJpeg(files.ReadAll(document.path)))
                throw platform::Error(platform::errors::invalidData,
                                      "No picture that can be shown: " + document.path);
        }
    });
}

} // namespace kavidex::mail
