// Documents as files that go with a mail: scanned pages and notes as PDF, all else as it is.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "mail/OutgoingMail.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::mail {

struct MailDocument {
    std::string type; // of the item
    std::string path; // of its file
    std::string name; // as the dossier shows it
};

struct NoteTexts {
    std::string heading, text;
};

struct AttachmentRules {
    bool asPdf = false; // every kind of image that can be, not only scanned pages
    bool marks = false; // the marks on scanned pages go with them
    std::function<NoteTexts(std::string_view bytes)> readNote;
};

class Attachments {
public:
    // In that folder, which holds the files as long as they are needed.
    Attachments(const platform::Workstation& workstation, std::string folder, AttachmentRules rules)
        : lclWorkstation(workstation), lclFolder(std::move(folder)), lclRules(std::move(rules)) {}

    // `step` is asked after each page; where it says no, nothing is given and nothing is left.
    // Throws platform::Error when the file cannot be read, or its PDF not be made.
    std::optional<MailAttachment> Make(const MailDocument& document,
                                       const std::function<bool()>& step) const;

private:
    void MakePdf(const MailDocument& document, const std::string& target,
                 const std::function<bool()>& step) const;

    const platform::Workstation& lclWorkstation;
    std::string lclFolder;
    AttachmentRules lclRules;
};

} // namespace kavidex::mail
