// The mail program is called by the names of its members, whichever version it is.
#include <windows.h>

#include "mail/MailProgram.h"
#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/Late.h"

namespace kavidex::mail {

namespace {

using platform::win32::Late;
using platform::win32::Variant;

constexpr std::int32_t deletedItems = 3;

// A moment that was never set stands far away.
std::optional<platform::DateTime> MomentOf(const Variant& value) {
    SYSTEMTIME time{};
    if (value.IsEmpty() || value.IsNull() ||
        !VariantTimeToSystemTime(value.As(VT_DATE).Get().date, &time) || time.wYear >= 4500)
        return std::nullopt;
    return platform::DateTime{time.wYear,   time.wMonth,  time.wDay,         time.wHour,
                              time.wMinute, time.wSecond, time.wMilliseconds};
}

class Item final : public OpenedMail {
public:
    // `made`: in the program's own store, by us.
    Item(const platform::Workstation& workstation, Late item, bool made)
        : lclWorkstation(workstation), lclItem(std::move(item)), lclMade(made) {}
    ~Item() override {
        if (!lclMade) return;
        try {
            lclItem.Call(L"Delete");
        } catch (const platform::Error& error) {
            lclWorkstation.log.Write("outlook.Application",
                                     std::string("An item stays behind: ") + error.what());
        }
    }
    void Read() {
        const auto text = [&](const wchar_t* name) { return lclItem.Get(name).ToText(); };
        lclContent.subject = text(L"Subject");
        lclContent.receivedByName = text(L"ReceivedByName");
        if (lclContent.receivedByName.empty())
            lclContent.to = text(L"To");
        else
            lclContent.senderName = text(L"sendername");
        lclContent.sentOn = MomentOf(lclItem.Get(L"senton"));
        const auto count = lclItem.Child(L"Attachments").Get(L"Count").ToInt32();
        lclContent.attachmentCount = static_cast<std::size_t>(std::max(count, 0));
        lclContent.html = text(L"htmlbody");
        lclContent.text = text(L"Body");
    }
    const SavedMail& Content() const override { return lclContent; }

private:
    const platform::Workstation& lclWorkstation;
    Late lclItem;
    bool lclMade;
    SavedMail lclContent;
};

} // namespace

std::unique_ptr<OpenedMail> OpenByMailProgram(const platform::Workstation& workstation,
                                              const std::string& path) {
    const Late outlook = Late::Create("outlook.Application");
    const Late session = outlook.Child(L"GetNamespace", {"MAPI"});
    Late item;
    try {
        item = Late(session.Call(L"OpenSharedItem", {Variant(path)}));
    } catch (const platform::Error& error) { // older versions have no such call
        workstation.log.Write("outlook.Application", error.what());
    }
    const bool made = !item;
    if (made) {
        const Late folder = session.Child(L"GetDefaultFolder", {deletedItems});
        item = Late(outlook.Call(L"CreateItemFromTemplate", {Variant(path), folder.Object()}));
    }
    if (!item) throw platform::Error(platform::errors::fail, "The mail program opens no " + path);
    auto opened = std::make_unique<Item>(workstation, std::move(item), made);
    opened->Read();
    return opened;
}

} // namespace kavidex::mail
