#include "mail/win32/OutlookSource.h"

#include <windows.h>

#include "platform/Error.h"
#include "platform/win32/Late.h"

namespace kavidex::mail::win32 {

using platform::win32::Late;
using platform::win32::Variant;

namespace {

platform::DateTime MomentOf(const Variant& value) {
    VARIANT date{};
    SYSTEMTIME parts{};
    const bool good =
        SUCCEEDED(VariantChangeType(&date, const_cast<VARIANT*>(&value.Get()), 0, VT_DATE)) &&
        VariantTimeToSystemTime(date.date, &parts);
    VariantClear(&date);
    if (!good) throw platform::Error(platform::errors::invalidData, "It is no date.");
    return {parts.wYear, parts.wMonth, parts.wDay, parts.wHour, parts.wMinute, parts.wSecond, 0};
}

std::vector<DraggedAttachment> AttachmentsOf(const Late& mail) {
    std::vector<DraggedAttachment> result;
    const Late attachments = mail.Child(L"Attachments");
    const auto count = attachments.Get(L"Count").ToInt32();
    for (std::int32_t i = 1; i <= count; ++i) {
        const Late one = attachments.Child(L"Item", {i});
        result.push_back(
            {one.Get(L"DisplayName").ToText(), one.Get(L"filename").ToText(),
             [one](std::string_view path) { one.Call(L"SaveAsFile", {Variant(path)}); }});
    }
    return result;
}

// An object without type information tells by its number what it is.
std::string KindOf(const Late& object) {
    struct Row {
        std::int32_t number;
        const char* name;
    };
    constexpr Row rows[] = {{34, "Explorer"}, {35, "Inspector"}, {43, "MailItem"}};
    if (auto name = object.TypeName(); !name.empty()) return name;
    const auto number = object.Has(L"Class") ? object.Get(L"Class").ToInt32() : 0;
    for (const auto& row : rows)
        if (row.number == number) return row.name;
    return {};
}

class Outlook : public MailSource {
public:
    Dragged WhatIsDragged() override {
        constexpr std::int32_t asMessage = 3; // olMSG
        const Late program = Late::Create("outlook.Application");
        Dragged dragged;
        std::vector<Late> mails;
        // A mail may be open while no explorer is.
        const Late explorer(program.Get(L"ActiveExplorer"));
        const Late selection = explorer ? explorer.Child(L"Selection") : Late();
        const auto count = selection ? selection.Get(L"Count").ToInt32() : 0;
        for (std::int32_t i = 1; i <= count; ++i) {
            const Late item = selection.Child(L"Item", {i});
            mails.push_back(item);
            dragged.selection.push_back(
                {KindOf(item), item.Get(L"Subject").ToText(), [item](std::string_view path) {
                     item.Call(L"SaveAs", {Variant(path), asMessage});
                 }});
        }
        const Late window(program.Get(L"ActiveWindow"));
        const auto kind = window ? KindOf(window) : std::string();
        if (kind == "Inspector")
            dragged.attachments = AttachmentsOf(window.Child(L"CurrentItem"));
        else if (kind == "Explorer" && mails.size() == 1)
            dragged.attachments = AttachmentsOf(mails.front());
        return dragged;
    }

    MailFacts FactsOf(std::string_view savedMail) override {
        const Late space =
            Late::Create("outlook.Application").Child(L"GetNamespace", {Variant("MAPI")});
        const Late mail = space.Child(L"OpenSharedItem", {Variant(savedMail)});
        MailFacts facts;
        const auto read = [](auto& fact, auto reading) {
            try {
                fact = reading();
            } catch (const std::exception&) {
                fact.reset(); // the caller notes it
            }
        };
        read(facts.receivedByName, [&] { return mail.Get(L"ReceivedByName").ToText(); });
        read(facts.senderName, [&] { return mail.Get(L"sendername").ToText(); });
        read(facts.sentOn, [&] { return MomentOf(mail.Get(L"senton")); });
        read(facts.receivedTime, [&] { return MomentOf(mail.Get(L"receivedtime")); });
        read(facts.attachments,
             [&] { return static_cast<int>(mail.Child(L"Attachments").Get(L"Count").ToInt32()); });
        // It would keep the file.
        std::optional<bool> closed;
        constexpr std::int32_t discard = 1;
        read(closed, [&] { return mail.Call(L"Close", {discard}).ToBool(); });
        return facts;
    }
};

} // namespace

std::unique_ptr<MailSource> MakeMailSource() { return std::make_unique<Outlook>(); }

} // namespace kavidex::mail::win32
