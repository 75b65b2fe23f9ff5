// New mails of the mail program "outlook.Application", and the folder that it keeps sent ones in.
#include <windows.h>

#include "mail/MailAutomation.h"
#include "mail/win32/MakeMailRoads.h"
#include "platform/win32/Late.h"

namespace kavidex::mail::win32 {

namespace {

using platform::win32::Late;
using platform::win32::Variant;

// The program's own numbers.
constexpr std::int32_t mailItem = 0, byValue = 1, firstPlace = 1, text = 1, asMessage = 3;

class OutlookSentItem final : public SentItem {
public:
    explicit OutlookSentItem(Late item) : lclItem(std::move(item)) {}

    std::optional<std::string> UserProperty(std::string_view name) override {
        const Late property(lclItem.Child(L"UserProperties").Call(L"Find", {Variant(name)}));
        if (!property) return std::nullopt;
        return property.Get(L"Value").ToText();
    }
    std::string Subject() override { return lclItem.Get(L"Subject").ToText(); }
    void SaveAs(std::string_view path) override {
        lclItem.Call(L"SaveAs", {Variant(path), asMessage});
    }

private:
    Late lclItem;
};

class OutlookSentFolder final : public SentFolder {
public:
    explicit OutlookSentFolder(Late folder) : lclFolder(std::move(folder)) {}

    // The collection is taken anew: one that is kept may go on counting what it held.
    std::int32_t Count() override {
        lclItems = lclFolder.Child(L"Items");
        return lclItems.Get(L"Count").ToInt32();
    }
    // By its place, not from the first on: the folder may hold very many.
    std::unique_ptr<SentItem> Item(std::int32_t place) override {
        return ItemOf(lclItems.Call(L"Item", {place}));
    }
    std::unique_ptr<SentItem> Next() override { return ItemOf(lclItems.Call(L"getnext")); }

private:
    static std::unique_ptr<SentItem> ItemOf(const Variant& object) {
        Late item(object);
        return item ? std::make_unique<OutlookSentItem>(std::move(item)) : nullptr;
    }

    Late lclFolder, lclItems;
};

class OutlookNewMail final : public NewMail {
public:
    OutlookNewMail(Late session, Late item)
        : lclSession(std::move(session)), lclItem(std::move(item)) {}

    void AddRecipient(std::string_view address) override {
        lclItem.Child(L"Recipients").Call(L"Add", {Variant(address)});
    }
    void SetSubject(std::string_view subject) override {
        lclItem.Put(L"Subject", {Variant(subject)});
    }
    void SetBodyFormat(int format) override {
        lclItem.Put(L"bodyformat", {static_cast<std::int32_t>(format)});
    }
    void SetBody(std::string_view body) override { lclItem.Put(L"Body", {Variant(body)}); }
    void Attach(std::string_view path, std::string_view displayName) override {
        lclItem.Child(L"Attachments")
            .Call(L"Add", {Variant(path), byValue, firstPlace, Variant(displayName)});
    }
    std::unique_ptr<SentFolder> SaveSentMessageFolder() override {
        const Variant id = lclItem.Child(L"SaveSentMessageFolder").Get(L"EntryID");
        return std::make_unique<OutlookSentFolder>(lclSession.Child(L"GetFolderFromID", {id}));
    }
    void AddUserProperty(std::string_view name, std::string_view value) override {
        lclItem.Child(L"UserProperties")
            .Child(L"Add", {Variant(name), text})
            .Put(L"Value", {Variant(value)});
    }
    void Display() override {
        constexpr bool modal = true;
        lclItem.Call(L"Display", {modal});
    }
    bool Sent() override { return lclItem.Get(L"sent").ToBool(); }

private:
    Late lclSession, lclItem;
};

class OutlookAutomation final : public MailAutomation {
public:
    std::unique_ptr<NewMail> CreateMail() override {
        const Late program = Late::Create("outlook.Application");
        Late session = program.Child(L"GetNamespace", {"mapi"});
        return std::make_unique<OutlookNewMail>(std::move(session),
                                                program.Child(L"CreateItem", {mailItem}));
    }
};

} // namespace

std::shared_ptr<MailAutomation> MakeOutlookAutomation() {
    return std::make_shared<OutlookAutomation>();
}

} // namespace kavidex::mail::win32
