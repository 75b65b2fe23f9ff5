// What is selected and open in the mail program for tests: the text file of KAVIDEX_MAIL_SELECTION,
// a line each of "mail|subject|attachment;attachment", "other|subject" (no mail), "dies|subject" (a
// mail that cannot be saved), "inspector" (the first of them is open in a window of its own) and
// "no explorer".
#pragma once

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "com/dispatch/Automation.h"
#include "platform/Error.h"
#include "platform/text.h"
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

class SelectedAttachment final : public com::Automation {
public:
    explicit SelectedAttachment(std::string file) : lclFile(std::move(file)) {}
    const com::Table& Members() const override {
        using Self = SelectedAttachment;
        using Row = com::Rows<Self>;
        static constexpr com::Member rows[] = {
            Row::Get<[](Self& self) { return "Bijlage " + self.lclFile; }>(L"DisplayName", 1),
            Row::Get<[](Self& self) { return self.lclFile; }>(L"FileName", 2),
            Row::Method<[](Self& self, std::string path) {
                RecordMailCall("Attachment.SaveAsFile " + platform::FileName(path));
                WriteBytes(path, "inhoud van " + self.lclFile);
            }>(L"SaveAsFile", 3, L"Path"),
        };
        static constexpr com::Table table{"Attachment", &IID_IDispatch, rows};
        return table;
    }

private:
    std::string lclFile;
};

// Of the objects that Make gives for its elements, counted from 1.
template <class Element, class Made>
class ListDouble final : public com::Automation {
public:
    explicit ListDouble(std::vector<Element> elements) : lclElements(std::move(elements)) {}
    const com::Table& Members() const override {
        using Self = ListDouble;
        using Row = com::Rows<Self>;
        static constexpr com::Member rows[] = {
            Row::template Get<[](Self& self) {
                return static_cast<std::int32_t>(self.lclElements.size());
            }>(L"Count", 1),
            Row::template Method<[](Self& self, std::int32_t at) {
                return com::Make<Made>(self.lclElements.at(static_cast<std::size_t>(at - 1)));
            }>(L"Item", 2, L"Index"),
        };
        static constexpr com::Table table{"List", &IID_IDispatch, rows};
        return table;
    }

private:
    std::vector<Element> lclElements;
};

class SelectedItem final : public com::Automation {
public:
    explicit SelectedItem(SelectedMail mail) : lclMail(std::move(mail)) {}
    const com::Table& Members() const override {
        using Self = SelectedItem;
        using Row = com::Rows<Self>;
        static constexpr com::Member rows[] = {
            Row::Get<[](Self& self) { return self.lclMail.kind == "other" ? 26 : 43; }>(L"Class",
                                                                                        1),
            Row::Get<[](Self& self) { return self.lclMail.subject; }>(L"Subject", 2),
            Row::Method<[](Self& self, std::string path, std::int32_t form) {
                RecordMailCall("MailItem.SaveAs " + platform::FileName(path) + " as " +
                               std::to_string(form));
                if (self.lclMail.kind == "dies")
                    throw platform::Error(platform::errors::fail, "The mail program has ended.");
                WriteBytes(path, "mail " + self.lclMail.subject);
            }>(L"SaveAs", 3, L"Path,Type"),
            Row::Get<[](Self& self) {
                using Files = ListDouble<std::string, SelectedAttachment>;
                return com::Make<Files>(self.lclMail.attachments);
            }>(L"Attachments", 4),
        };
        static constexpr com::Table table{"MailItem", &IID_IDispatch, rows};
        return table;
    }

private:
    SelectedMail lclMail;
};

// An explorer or an inspector.
class MailWindow final : public com::Automation {
public:
    MailWindow(std::int32_t kind, MailSelection selection)
        : lclKind(kind), lclSelection(std::move(selection)) {}
    static constexpr std::int32_t explorer = 34, inspector = 35;

    const com::Table& Members() const override {
        using Self = MailWindow;
        using Row = com::Rows<Self>;
        static constexpr com::Member rows[] = {
            Row::Get<[](Self& self) { return std::int32_t{self.lclKind}; }>(L"Class", 1),
            Row::Get<[](Self& self) {
                using Mails = ListDouble<SelectedMail, SelectedItem>;
                return com::Make<Mails>(self.lclSelection.items);
            }>(L"Selection", 2),
            Row::Get<[](Self& self) {
                return com::Make<SelectedItem>(self.lclSelection.items.at(0));
            }>(L"CurrentItem", 3),
        };
        static constexpr com::Table table{"MailWindow", &IID_IDispatch, rows};
        return table;
    }

private:
    std::int32_t lclKind;
    MailSelection lclSelection;
};

inline com::ComPtr<IDispatch> ActiveMailExplorer() {
    auto selection = MailSelection::Read();
    RecordMailCall("Application.ActiveExplorer");
    if (!selection.explorer) return {};
    return com::Make<MailWindow>(MailWindow::explorer, std::move(selection));
}

inline com::ComPtr<IDispatch> ActiveMailWindow() {
    auto selection = MailSelection::Read();
    const auto kind = selection.inspector ? MailWindow::inspector : MailWindow::explorer;
    return com::Make<MailWindow>(kind, std::move(selection));
}

} // namespace kavidex::tests
