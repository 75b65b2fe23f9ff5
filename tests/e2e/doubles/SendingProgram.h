// A mail program for tests that mails are sent with, in the test's own process: what its user does
// is set by the test, and every call is a line. Beside it the session and message controls.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/Workstation.h"
#include "tests/e2e/doubles/Played.h"

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

// Writes the call down with what it is given.
inline Answer Noted(const std::string& call, const Variant& answer = {}) {
    return [=](const Arguments& given) {
        std::string line = call;
        for (const Variant& one : given) line += " " + one.ToText();
        Script().Record(line);
        return answer;
    };
}

inline com::ComPtr<IDispatch> PlayUserProperties() {
    const auto index = Play({{L"Value", [](const Arguments& given) {
                                  if (given.empty())
                                      return Variant(Script().properties["UniqueIndex"]);
                                  Script().Record("UserProperty.Value");
                                  Script().properties["UniqueIndex"] = given[0].ToText();
                                  return Variant();
                              }}});
    return Play({{L"Add", Noted("UserProperties.Add", index)},
                 {L"Find", [index](const Arguments& given) {
                      const auto name = given[0].ToText();
                      Script().Record("UserProperties.Find " + name);
                      return Script().properties.contains(name) ? Variant(index) : Nothing();
                  }}});
}

inline com::ComPtr<IDispatch> PlaySentMail() {
    return Play({{L"UserProperties", PlayUserProperties()},
                 {L"Subject", [](const Arguments&) { return Variant(Script().subject); }},
                 {L"SaveAs", [](const Arguments& given) {
                      const auto path = given[0].ToText();
                      Script().Record("SaveAs " + platform::FileName(path) + " " +
                                      given[1].ToText());
                      platform::TheWorkstation().files.WriteAll(path, "saved mail");
                      return Variant();
                  }}});
}

inline com::ComPtr<IDispatch> PlaySentFolder() {
    const auto count = [](const Arguments&) {
        auto& script = Script();
        script.Record("Items.Count");
        const bool there = script.shown && script.sends && ++script.counts >= script.appearsAt;
        return Variant(std::int32_t{script.older + (there ? 1 : 0)});
    };
    const auto item = [](const Arguments& place) {
        Script().Record("Items.Item " + place[0].ToText());
        return Script().byNext ? Nothing() : Variant(PlaySentMail());
    };
    const auto items = Play(
        {{L"Count", count}, {L"Item", item}, {L"GetNext", Noted("Items.GetNext", PlaySentMail())}});
    return Play({{L"EntryID", "sent-1"}, {L"Items", items}});
}

inline com::ComPtr<IDispatch> PlayNewMail() {
    const auto attach = [](const Arguments& given) {
        const auto path = given[0].ToText();
        const bool there = platform::TheWorkstation().files.FileExists(path);
        Script().Record("Attachments.Add " + platform::FileName(path) + (there ? " " : " gone ") +
                        given[1].ToText() + " " + given[2].ToText() + " " + given[3].ToText());
        return Variant();
    };
    const auto display = [](const Arguments& modal) {
        Script().Record(modal[0].ToBool() ? "Display modal" : "Display");
        Script().shown = true;
        Script().whileShown();
        return Variant();
    };
    const auto sent = [](const Arguments&) {
        Script().Record("Sent");
        return Variant(Script().sends);
    };
    return Play({{L"Recipients", Play({{L"Add", Noted("Recipients.Add")}})},
                 {L"Subject", Noted("Subject")},
                 {L"BodyFormat", Noted("BodyFormat")},
                 {L"Body", Noted("Body")},
                 {L"Attachments", Play({{L"Add", attach}})},
                 {L"SaveSentMessageFolder", Noted("SaveSentMessageFolder", PlaySentFolder())},
                 {L"UserProperties", PlayUserProperties()},
                 {L"Display", display},
                 {L"Sent", sent}});
}

struct SendingProgramDouble : Played {
    SendingProgramDouble()
        : Played({{L"GetNamespace",
                   Noted("GetNamespace",
                         Play({{L"GetFolderFromID", Noted("GetFolderFromID", PlaySentFolder())}}))},
                  {L"CreateItem", Noted("CreateItem", PlayNewMail())}}) {}
};

// --- The session and message controls -----------------------------------------------------------

inline Answer Switched(const std::string& call) {
    return [=](const Arguments& on) {
        Script().Record(call + (on[0].ToBool() ? " on" : " off"));
        return Variant();
    };
}

// Written down; then the control fails where the script says so.
inline Answer Failing(const std::string& call, bool SendingScript::*fails, std::uint32_t number) {
    return [=](const Arguments&) {
        Script().Record(call);
        if (Script().*fails) throw platform::Error(static_cast<std::int32_t>(number), "refused");
        return Variant();
    };
}

struct MailSessionDouble : Played {
    MailSessionDouble()
        : Played({{L"LogonUI", Switched("LogonUI")},
                  {L"DownLoadMail", Switched("DownLoadMail")},
                  {L"SignOn", Failing("SignOn", &SendingScript::logonFails, 0x800A7D03)},
                  {L"SessionID", 7},
                  {L"SignOff", Noted("SignOff")}}) {}
};

struct MailMessagesDouble : Played {
    MailMessagesDouble() : Played(Rows()) {}
    static std::vector<PlayedMember> Rows() {
        std::vector<PlayedMember> rows = {
            {L"Compose", Noted("Compose")},
            {L"Send", Failing("Send with dialog", &SendingScript::aborted, 0x800A7D01)},
            {L"AttachmentPathName", [](const Arguments& path) {
                 Script().Record("AttachmentPathName " + platform::FileName(path[0].ToText()));
                 return Variant();
             }}};
        for (const wchar_t* const name :
             {L"SessionID", L"MsgIndex", L"RecipIndex", L"RecipType", L"RecipDisplayName",
              L"RecipAddress", L"MsgSubject", L"MsgNoteText", L"AttachmentIndex", L"AttachmentType",
              L"AttachmentPosition", L"AttachmentName"})
            rows.emplace_back(name, Noted(platform::win32::FromWide(name)));
        return rows;
    }
};

} // namespace kavidex::tests
