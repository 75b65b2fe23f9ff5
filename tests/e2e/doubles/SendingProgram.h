// A mail program for tests that mails are sent with, in the test's own process: what its user does
// is set by the test, and every call is a line. Beside it the session and message controls.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "com/dispatch/Automation.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

namespace kavidex::tests {

// All the program's objects share it; a test begins with a new one.
struct SendingScript {
    std::vector<std::string> calls;
    std::string diesAt; // at the call of that beginning, and at each one after

    bool sends = true;
    std::string subject = "Emailing:"; // as the user sends it
    std::function<void()> whileShown = [] {};
    std::int32_t older = 3; // mails in the folder
    int appearsAt = 1;      // of the counts after the display
    bool byNext = false;    // given as the next one, not by its place
    bool shown = false, dead = false;
    int counts = 0;
    std::map<std::string, std::string> properties; // of the mail
    bool logonFails = false, aborted = false;      // of the session

    void Record(const std::string& call) {
        if (calls.empty() || calls.back() != call) calls.push_back(call);
        dead = dead || (!diesAt.empty() && call.starts_with(diesAt));
        if (dead) throw platform::Error(HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE), "RPC server");
    }
    std::string Calls() const {
        std::string all;
        for (const auto& call : calls) all += call + "\n";
        return all;
    }
};

inline SendingScript& Script() {
    static SendingScript script;
    return script;
}

// One stand-in: its rows are all there is of it.
#define KAVIDEX_DOUBLE(Class)                                                                      \
    class Class final : public com::Automation {                                                   \
        using Row = com::Rows<Class>;                                                              \
        using Text = std::string;                                                                  \
        using Object = com::ComPtr<IDispatch>;                                                     \
        using Number = std::int32_t;                                                               \
                                                                                                   \
    public:                                                                                        \
        const com::Table& Members() const override;                                                \
    }

KAVIDEX_DOUBLE(SentPropertyDouble);
inline const com::Table& SentPropertyDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Get<[](SentPropertyDouble&) { return Script().properties["UniqueIndex"]; }>(L"Value",
                                                                                         0),
        Row::Put<[](SentPropertyDouble&, Text value) {
            Script().Record("UserProperty.Value");
            Script().properties["UniqueIndex"] = value;
        }>(L"Value", 0),
    };
    static constexpr com::Table table{"UserProperty", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(UserPropertiesDouble);
inline const com::Table& UserPropertiesDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Method<[](UserPropertiesDouble&, Text name, Number type) {
            Script().Record("UserProperties.Add " + name + " " + std::to_string(type));
            return com::Make<SentPropertyDouble>();
        }>(L"Add", 1, L"Name,Type"),
        Row::Method<[](UserPropertiesDouble&, Text name) {
            Script().Record("UserProperties.Find " + name);
            return Script().properties.contains(name) ? com::Make<SentPropertyDouble>() : Object();
        }>(L"Find", 2, L"Name"),
    };
    static constexpr com::Table table{"UserProperties", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(SentMailDouble);
inline const com::Table& SentMailDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Get<[](SentMailDouble&) { return com::Make<UserPropertiesDouble>(); }>(
            L"UserProperties", 1),
        Row::Get<[](SentMailDouble&) { return Script().subject; }>(L"Subject", 2),
        Row::Method<[](SentMailDouble&, Text path, Number type) {
            Script().Record("SaveAs " + platform::FileName(path) + " " + std::to_string(type));
            platform::TheWorkstation().files.WriteAll(path, "saved mail");
        }>(L"SaveAs", 3, L"Path,Type"),
    };
    static constexpr com::Table table{"MailItem", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(SentItemsDouble);
inline const com::Table& SentItemsDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Get<[](SentItemsDouble&) {
            auto& script = Script();
            script.Record("Items.Count");
            const bool there = script.shown && script.sends && ++script.counts >= script.appearsAt;
            return Number{script.older + (there ? 1 : 0)};
        }>(L"Count", 1),
        Row::Method<[](SentItemsDouble&, Number place) {
            Script().Record("Items.Item " + std::to_string(place));
            return Script().byNext ? Object() : com::Make<SentMailDouble>();
        }>(L"Item", 0, L"Index"),
        Row::Method<[](SentItemsDouble&) {
            Script().Record("Items.GetNext");
            return com::Make<SentMailDouble>();
        }>(L"GetNext", 2),
    };
    static constexpr com::Table table{"Items", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(SentFolderDouble);
inline const com::Table& SentFolderDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Get<[](SentFolderDouble&) { return Text("sent-1"); }>(L"EntryID", 1),
        Row::Get<[](SentFolderDouble&) { return com::Make<SentItemsDouble>(); }>(L"Items", 2),
    };
    static constexpr com::Table table{"MAPIFolder", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(RecipientsDouble);
inline const com::Table& RecipientsDouble::Members() const {
    static constexpr com::Member rows[] = {Row::Method<[](RecipientsDouble&, Text name) {
        Script().Record("Recipients.Add " + name);
    }>(L"Add", 1, L"Name")};
    static constexpr com::Table table{"Recipients", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(NewAttachmentsDouble);
inline const com::Table& NewAttachmentsDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Method<[](NewAttachmentsDouble&, Text path, Number type, Number place, Text name) {
            const bool there = platform::TheWorkstation().files.FileExists(path);
            Script().Record("Attachments.Add " + platform::FileName(path) +
                            (there ? " " : " gone ") + std::to_string(type) + " " +
                            std::to_string(place) + " " + name);
        }>(L"Add", 1, L"Source,Type,Position,DisplayName")};
    static constexpr com::Table table{"Attachments", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(NewMailDouble);
inline const com::Table& NewMailDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Get<[](NewMailDouble&) { return com::Make<RecipientsDouble>(); }>(L"Recipients", 1),
        Row::Put<[](NewMailDouble&, Text text) { Script().Record("Subject " + text); }>(L"Subject",
                                                                                        2),
        Row::Put<[](NewMailDouble&, Number format) {
            Script().Record("BodyFormat " + std::to_string(format));
        }>(L"BodyFormat", 3),
        Row::Put<[](NewMailDouble&, Text text) { Script().Record("Body " + text); }>(L"Body", 4),
        Row::Get<[](NewMailDouble&) { return com::Make<NewAttachmentsDouble>(); }>(L"Attachments",
                                                                                   5),
        Row::Get<[](NewMailDouble&) {
            Script().Record("SaveSentMessageFolder");
            return com::Make<SentFolderDouble>();
        }>(L"SaveSentMessageFolder", 6),
        Row::Get<[](NewMailDouble&) { return com::Make<UserPropertiesDouble>(); }>(
            L"UserProperties", 7),
        Row::Method<[](NewMailDouble&, bool modal) {
            Script().Record(modal ? "Display modal" : "Display");
            Script().shown = true;
            Script().whileShown();
        }>(L"Display", 8, L"Modal"),
        Row::Get<[](NewMailDouble&) {
            Script().Record("Sent");
            return Script().sends;
        }>(L"Sent", 9),
    };
    static constexpr com::Table table{"MailItem", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(SendingSpaceDouble);
inline const com::Table& SendingSpaceDouble::Members() const {
    static constexpr com::Member rows[] = {Row::Method<[](SendingSpaceDouble&, Text id) {
        Script().Record("GetFolderFromID " + id);
        return com::Make<SentFolderDouble>();
    }>(L"GetFolderFromID", 1, L"EntryID")};
    static constexpr com::Table table{"NameSpace", &IID_IDispatch, rows};
    return table;
}

KAVIDEX_DOUBLE(SendingProgramDouble);
inline const com::Table& SendingProgramDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Method<[](SendingProgramDouble&, Text type) {
            Script().Record("GetNamespace " + type);
            return com::Make<SendingSpaceDouble>();
        }>(L"GetNamespace", 1, L"Type"),
        Row::Method<[](SendingProgramDouble&, Number type) {
            Script().Record("CreateItem " + std::to_string(type));
            return com::Make<NewMailDouble>();
        }>(L"CreateItem", 2, L"ItemType"),
    };
    static constexpr com::Table table{"Application", &IID_IDispatch, rows};
    return table;
}

// --- The session and message controls -----------------------------------------------------------

KAVIDEX_DOUBLE(MailSessionDouble);
inline const com::Table& MailSessionDouble::Members() const {
    static constexpr com::Member rows[] = {
        Row::Put<[](MailSessionDouble&, bool on) {
            Script().Record(on ? "LogonUI on" : "LogonUI off");
        }>(L"LogonUI", 1),
        Row::Put<[](MailSessionDouble&, bool on) {
            Script().Record(on ? "DownLoadMail on" : "DownLoadMail off");
        }>(L"DownLoadMail", 2),
        Row::Method<[](MailSessionDouble&) {
            Script().Record("SignOn");
            if (Script().logonFails)
                throw platform::Error(static_cast<std::int32_t>(0x800A7D03), "Login failure");
        }>(L"SignOn", 3),
        Row::Get<[](MailSessionDouble&) { return Number{7}; }>(L"SessionID", 4),
        Row::Method<[](MailSessionDouble&) { Script().Record("SignOff"); }>(L"SignOff", 5),
    };
    static constexpr com::Table table{"MAPISession", &IID_IDispatch, rows};
    return table;
}

inline std::string Shown(const std::string& text) { return text; }
inline std::string Shown(std::int32_t number) { return std::to_string(number); }

KAVIDEX_DOUBLE(MailMessagesDouble);
inline const com::Table& MailMessagesDouble::Members() const {
    using Self = MailMessagesDouble;
    static constexpr com::Member rows[] = {
#define KAVIDEX_PUT(Type, Name, id)                                                                \
    Row::Put<[](Self&, Type value) { Script().Record(#Name " " + Shown(value)); }>(L"" #Name, id)
        KAVIDEX_PUT(Number, SessionID, 1),
        KAVIDEX_PUT(Number, MsgIndex, 2),
        KAVIDEX_PUT(Number, RecipIndex, 3),
        KAVIDEX_PUT(Number, RecipType, 4),
        KAVIDEX_PUT(Text, RecipDisplayName, 5),
        KAVIDEX_PUT(Text, RecipAddress, 6),
        KAVIDEX_PUT(Text, MsgSubject, 7),
        KAVIDEX_PUT(Text, MsgNoteText, 8),
        KAVIDEX_PUT(Number, AttachmentIndex, 9),
        KAVIDEX_PUT(Number, AttachmentType, 10),
        KAVIDEX_PUT(Number, AttachmentPosition, 11),
        KAVIDEX_PUT(Text, AttachmentName, 12),
#undef KAVIDEX_PUT
        Row::Put<[](Self&, Text path) {
            Script().Record("AttachmentPathName " + platform::FileName(path));
        }>(L"AttachmentPathName", 13),
        Row::Method<[](Self&) { Script().Record("Compose"); }>(L"Compose", 14),
        Row::Method<[](Self&, bool dialog) {
            Script().Record(dialog ? "Send with dialog" : "Send");
            if (Script().aborted)
                throw platform::Error(static_cast<std::int32_t>(0x800A7D01), "User cancelled");
        }>(L"Send", 15, L"vDialog"),
    };
    static constexpr com::Table table{"MAPIMessages", &IID_IDispatch, rows};
    return table;
}

#undef KAVIDEX_DOUBLE

} // namespace kavidex::tests
