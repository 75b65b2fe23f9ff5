// A mail program for tests: what it opens is the table below, found by the name of the file; every
// call is a line in a text file. Where KAVIDEX_MAIL_RECORD names none, that is
// kavidex-mail.txt in the temporary folder. What is selected in it: MailSelection.h.
#pragma once

#include <windows.h>

#include <string>

#include "com/dispatch/Automation.h"
#include "platform/Files.h"
#include "tests/e2e/doubles/MailSelection.h"

namespace kavidex::tests {

struct ScriptedMail {
    const char* file; // its name ends with this
    bool shared;      // OpenSharedItem opens it, else only CreateItemFromTemplate
    const char *subject, *receivedByName, *senderName, *to, *sentOn, *html, *body;
    int attachments;
};

constexpr ScriptedMail scriptedMails[] = {
    {"1.msg", true, "Schadeformulier ontvangen", "J. Jansen", "Schadedienst", "J. Jansen",
     "2026-11-14 09:30:05", "<html><body><p>Het <b>formulier</b> is ontvangen.</p></body></html>",
     "Het formulier is ontvangen.", 2},
    {"2.msg", false, "Uw polis 4711", "", "J. Jansen", "K. de Vries; P. Smit",
     "2026-11-15 14:05:09", "", "Geachte heer De Vries,\r\n\r\nHierbij < uw polis >.", 0},
};

// Objects of the mail program: late-bound, so their rows are all there is of them.
class MailObject : public com::Automation {
public:
    explicit MailObject(std::string name) : lclName(std::move(name)) {}
    void Record(const std::string& call) const { RecordMailCall(lclName + "." + call); }

private:
    std::string lclName;
};

class AttachmentsDouble final : public MailObject {
public:
    explicit AttachmentsDouble(int count) : MailObject("Attachments"), lclCount(count) {}
    const com::Table& Members() const override {
        using Row = com::Rows<AttachmentsDouble>;
        static constexpr com::Member rows[] = {
            Row::Get<[](AttachmentsDouble& all) { return std::int32_t{all.lclCount}; }>(L"Count",
                                                                                        1)};
        static constexpr com::Table table{"Attachments", &IID_IDispatch, rows};
        return table;
    }

private:
    int lclCount;
};

class MailItemDouble final : public MailObject {
public:
    explicit MailItemDouble(const ScriptedMail& mail)
        : MailObject(std::string("Item(") + mail.file + ")"), lclMail(mail) {}
    const com::Table& Members() const override {
        using Self = MailItemDouble;
        using Row = com::Rows<Self>;
        using Text = std::string;
        static constexpr com::Member rows[] = {
            Row::Get<[](Self& item) { return Text(item.lclMail.subject); }>(L"Subject", 1),
            Row::Get<[](Self& item) { return Text(item.lclMail.receivedByName); }>(
                L"ReceivedByName", 2),
            Row::Get<[](Self& item) { return Text(item.lclMail.senderName); }>(L"SenderName", 3),
            Row::Get<[](Self& item) { return Text(item.lclMail.to); }>(L"To", 4),
            Row::Get<[](Self& item) { return com::Variant(item.lclMail.sentOn).As(VT_DATE); }>(
                L"SentOn", 5),
            Row::Get<[](Self& item) { return Text(item.lclMail.html); }>(L"HTMLBody", 6),
            Row::Get<[](Self& item) { return Text(item.lclMail.body); }>(L"Body", 7),
            Row::Get<[](Self& item) {
                return com::Make<AttachmentsDouble>(item.lclMail.attachments);
            }>(L"Attachments", 8),
            Row::Method<[](Self& item) { item.Record("Delete"); }>(L"Delete", 9),
            Row::Get<[](Self& item) { return com::Variant(item.lclMail.sentOn).As(VT_DATE); }>(
                L"ReceivedTime", 10),
            Row::Method<[](Self& item, std::int32_t saving) {
                item.Record("Close " + std::to_string(saving));
            }>(L"Close", 11, L"SaveMode"),
        };
        static constexpr com::Table table{"MailItem", &IID_IDispatch, rows};
        return table;
    }

private:
    const ScriptedMail& lclMail;
};

// Null for a file that the table does not have.
inline com::ComPtr<IDispatch> OpenScripted(const std::string& path, bool shared) {
    for (const auto& mail : scriptedMails)
        if (path.ends_with(mail.file) && (mail.shared || !shared))
            return com::Make<MailItemDouble>(mail);
    return {};
}

class FolderDouble final : public MailObject {
public:
    FolderDouble() : MailObject("Folder") {}
    const com::Table& Members() const override {
        static constexpr com::Table table{"Folder", &IID_IDispatch, {}};
        return table;
    }
};

class NamespaceDouble final : public MailObject {
public:
    NamespaceDouble() : MailObject("Namespace") {}
    const com::Table& Members() const override {
        using Self = NamespaceDouble;
        using Row = com::Rows<Self>;
        static constexpr com::Member rows[] = {
            Row::Method<[](Self& self, std::string path) {
                self.Record("OpenSharedItem " + platform::FileName(path));
                return OpenScripted(path, true);
            }>(L"OpenSharedItem", 1, L"Path"),
            Row::Method<[](Self& self, std::int32_t folder) {
                self.Record("GetDefaultFolder " + std::to_string(folder));
                return com::Make<FolderDouble>();
            }>(L"GetDefaultFolder", 2, L"FolderType"),
        };
        static constexpr com::Table table{"Namespace", &IID_IDispatch, rows};
        return table;
    }
};

class OutlookDouble final : public MailObject {
public:
    OutlookDouble() : MailObject("Application") {}
    const com::Table& Members() const override {
        using Self = OutlookDouble;
        using Row = com::Rows<Self>;
        static constexpr com::Member rows[] = {
            Row::Method<[](Self& self, std::string type) {
                self.Record("GetNamespace " + type);
                return com::Make<NamespaceDouble>();
            }>(L"GetNamespace", 1, L"Type"),
            Row::Method<[](Self& self, std::string path, com::ComPtr<IDispatch> folder) {
                self.Record("CreateItemFromTemplate " + platform::FileName(path) +
                            (folder ? " in a folder" : ""));
                return OpenScripted(path, false);
            }>(L"CreateItemFromTemplate", 2, L"TemplatePath,InFolder"),
            Row::Get<[](Self&) { return ActiveMailExplorer(); }>(L"ActiveExplorer", 3),
            Row::Get<[](Self&) { return ActiveMailWindow(); }>(L"ActiveWindow", 4),
        };
        static constexpr com::Table table{"Application", &IID_IDispatch, rows};
        return table;
    }
};

} // namespace kavidex::tests
