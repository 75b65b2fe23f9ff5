// What is selected and open in the mail program for tests: the text file of KAVIDEX_MAIL_SELECTION,
// a line each of "mail|subject|attachment;attachment", "other|subject" (no mail), "dies|subject" (a
// mail that cannot be saved), "inspector" (the first of them is open in a window of its own) and
// "no explorer".
#pragma once

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "platform/Error.h"
#include "platform/text.h"
#include "tests/e2e/doubles/Played.h"
#include "tests/e2e/doubles/Recorded.h"

namespace kavidex::tests {

struct SelectedMail {
    std::string kind, subject;
    std::vector<std::string> attachments;
};

struct MailSelection {
    std::vector<SelectedMail> items;
    bool inspector = false, explorer = true;

    static MailSelection Read() {
        MailSelection all;
        const char* const path = std::getenv("KAVIDEX_MAIL_SELECTION");
        std::ifstream lines(path ? path : "");
        for (std::string line; std::getline(lines, line);) {
            while (!line.empty() && line.back() == '\r') line.pop_back();
            const auto parts = platform::Split(line, '|');
            if (line == "inspector")
                all.inspector = true;
            else if (line == "no explorer")
                all.explorer = false;
            else if (parts.size() > 1)
                all.items.push_back({parts[0], parts[1],
                                     parts.size() > 2 ? platform::Split(parts[2], ';')
                                                      : std::vector<std::string>()});
        }
        return all;
    }
};

inline void RecordMailCall(const std::string& line) {
    RecordCall("KAVIDEX_MAIL_RECORD", "kavidex-mail.txt", line);
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
    platform::TheWorkstation().files.WriteAll(path, bytes);
}

// Counted from 1.
inline com::ComPtr<IDispatch> PlayList(std::vector<Variant> elements) {
    return Play({{L"Count", static_cast<std::int32_t>(elements.size())},
                 {L"Item", [elements](const Arguments& at) {
                      return elements.at(static_cast<std::size_t>(at[0].ToInt32() - 1));
                  }}});
}

inline com::ComPtr<IDispatch> PlaySelected(const SelectedMail& mail) {
    std::vector<Variant> attachments;
    for (const std::string& file : mail.attachments)
        attachments.emplace_back(Play({{L"DisplayName", "Bijlage " + file},
                                       {L"FileName", file},
                                       {L"SaveAsFile", [file](const Arguments& path) {
                                            RecordMailCall("Attachment.SaveAsFile " +
                                                           platform::FileName(path[0].ToText()));
                                            WriteBytes(path[0].ToText(), "inhoud van " + file);
                                            return Variant();
                                        }}}));
    const auto save = [mail](const Arguments& given) {
        const auto path = given[0].ToText();
        RecordMailCall("MailItem.SaveAs " + platform::FileName(path) + " as " + given[1].ToText());
        if (mail.kind == "dies")
            throw platform::Error(platform::errors::fail, "The mail program has ended.");
        WriteBytes(path, "mail " + mail.subject);
        return Variant();
    };
    return Play({{L"Class", mail.kind == "other" ? 26 : 43},
                 {L"Subject", mail.subject},
                 {L"SaveAs", save},
                 {L"Attachments", PlayList(attachments)}});
}

// An explorer or an inspector.
inline com::ComPtr<IDispatch> PlayMailWindow(std::int32_t kind, const MailSelection& selection) {
    std::vector<Variant> items;
    for (const auto& mail : selection.items) items.emplace_back(PlaySelected(mail));
    return Play({{L"Class", kind},
                 {L"Selection", PlayList(items)},
                 {L"CurrentItem", items.empty() ? Nothing() : items[0]}});
}

inline Variant ActiveMailExplorer(const Arguments&) {
    const auto selection = MailSelection::Read();
    RecordMailCall("Application.ActiveExplorer");
    return selection.explorer ? Variant(PlayMailWindow(34, selection)) : Nothing();
}

inline Variant ActiveMailWindow(const Arguments&) {
    const auto selection = MailSelection::Read();
    return PlayMailWindow(selection.inspector ? 35 : 34, selection);
}

} // namespace kavidex::tests
