#include "mail/win32/SystemMailFunction.h"

#include <windows.h>

#include <objbase.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/Error.h"
#include "platform/Log.h"
#include "platform/Workstation.h"
#include "platform/win32/Late.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"

namespace kavidex::mail::win32 {

namespace {

using platform::win32::ToWide;

// The function's structures, in wide characters and in those of the code page.
template <class Char>
struct Recipient {
    ULONG reserved, kind;
    Char *name, *address;
    ULONG idSize;
    void* id;
};
template <class Char>
struct File {
    ULONG reserved, flags, position;
    Char *path, *name;
    void* type;
};
template <class Char>
struct Message {
    ULONG reserved;
    Char *subject, *text, *type, *received, *conversation;
    ULONG flags;
    Recipient<Char>* originator;
    ULONG recipientCount;
    Recipient<Char>* recipients;
    ULONG fileCount;
    File<Char>* files;
};
template <class Char>
using SendMail = ULONG(WINAPI*)(ULONG_PTR session, ULONG_PTR window, Message<Char>* message,
                                ULONG flags, ULONG reserved);

constexpr ULONG to = 1, logonUi = 0x1, dialog = 0x8, noPlace = 0xFFFFFFFF;

std::string Narrow(const std::wstring& wide, bool& whole) {
    BOOL replaced = FALSE;
    const auto length = static_cast<int>(wide.size());
    const int size =
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), length, text.data(), size, nullptr, &replaced);
    whole = !replaced;
    return text;
}

// A path that the code page lacks characters of has a short form that it has.
std::string NarrowPath(const std::wstring& path) {
    bool whole = false;
    auto narrow = Narrow(path, whole);
    if (whole) return narrow;
    std::wstring shortForm(path.size() + MAX_PATH, L'\0');
    const DWORD length =
        GetShortPathNameW(path.c_str(), shortForm.data(), static_cast<DWORD>(shortForm.size()));
    if (length > 0 && length < shortForm.size()) {
        shortForm.resize(length);
        narrow = Narrow(shortForm, whole);
        if (whole) return narrow;
    }
    throw platform::Error(platform::errors::invalidData,
                          "The mail program cannot be given a file of this name: " +
                              platform::win32::FromWide(path));
}

struct Forms {
    static void Text(const std::string& from, std::wstring& into) { into = ToWide(from); }
    static void Text(const std::string& from, std::string& into) {
        bool whole = false; // the user sees the text before it goes
        into = Narrow(ToWide(from), whole);
    }
    static void Path(const std::string& from, std::wstring& into) { into = ToWide(from); }
    static void Path(const std::string& from, std::string& into) {
        into = NarrowPath(ToWide(from));
    }
};

// The mail in the form of the function; everything it points at lives here.
template <class Char>
class Letter {
public:
    explicit Letter(const OutgoingMail& mail) {
        Forms::Text(mail.subject, lclSubject);
        Forms::Text(mail.body, lclBody);
        Forms::Text(mail.address, lclName);
        Forms::Text("SMTP:" + mail.address, lclAddress);
        lclTexts.resize(mail.attachments.size());
        for (std::size_t i = 0; i < mail.attachments.size(); ++i) {
            auto& [path, name] = lclTexts[i];
            Forms::Path(mail.attachments[i].path, path);
            Forms::Text(mail.attachments[i].name, name);
            lclFiles.push_back({0, 0, noPlace, path.data(), name.data(), nullptr});
        }
        lclRecipient = {0, to, lclName.data(), lclAddress.data(), 0, nullptr};
        lclMessage.subject = lclSubject.data();
        lclMessage.text = lclBody.data();
        lclMessage.recipientCount = mail.address.empty() ? 0 : 1;
        lclMessage.recipients = mail.address.empty() ? nullptr : &lclRecipient;
        lclMessage.fileCount = static_cast<ULONG>(lclFiles.size());
        lclMessage.files = lclFiles.empty() ? nullptr : lclFiles.data();
    }
    Letter(const Letter&) = delete;
    Letter& operator=(const Letter&) = delete;

    Message<Char>* Get() { return &lclMessage; }

private:
    using Text = std::basic_string<Char>;
    Text lclSubject, lclBody, lclName, lclAddress;
    std::vector<std::pair<Text, Text>> lclTexts; // path and name of each file
    std::vector<File<Char>> lclFiles;
    Recipient<Char> lclRecipient{};
    Message<Char> lclMessage{};
};

// The system's library for as long as the call lasts.
class MailLibrary {
public:
    MailLibrary() {
        wchar_t folder[MAX_PATH];
        const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
        if (length > 0 && length < MAX_PATH)
            lclModule = LoadLibraryW((std::wstring(folder) + L"\\mapi32.dll").c_str());
    }
    ~MailLibrary() {
        if (lclModule) FreeLibrary(lclModule);
    }
    MailLibrary(const MailLibrary&) = delete;
    MailLibrary& operator=(const MailLibrary&) = delete;

    template <class Char>
    SendMail<Char> Function(const char* name) const {
        if (!lclModule) return nullptr;
        return reinterpret_cast<SendMail<Char>>(
            reinterpret_cast<void*>(GetProcAddress(lclModule, name)));
    }

private:
    HMODULE lclModule = nullptr;
};

template <class Char>
ULONG Call(SendMail<Char> function, const OutgoingMail& mail, HWND owner) {
    Letter<Char> letter(mail);
    return function(0, reinterpret_cast<ULONG_PTR>(owner), letter.Get(), logonUi | dialog, 0);
}

// Older systems have the function of the code page only, and older programs behind it too.
ULONG CallEither(const OutgoingMail& mail, HWND owner) {
    const MailLibrary library;
    if (const auto wide = library.Function<wchar_t>("MAPISendMailW")) {
        const ULONG answer = Call(wide, mail, owner);
        if (answer != simple::unicodeNotSupported) return answer;
    }
    if (const auto narrow = library.Function<char>("MAPISendMail"))
        return Call(narrow, mail, owner);
    return simple::notSupported;
}

// The host's window is closed to the user while the mail is shown.
class OwnerClosed {
public:
    OwnerClosed() : lclWindow(platform::win32::Owner()) {
        if (lclWindow) lclWasOpen = !EnableWindow(lclWindow, FALSE);
    }
    ~OwnerClosed() {
        if (!lclWindow || !lclWasOpen || !IsWindow(lclWindow)) return;
        EnableWindow(lclWindow, TRUE);
        SetForegroundWindow(lclWindow);
    }
    OwnerClosed(const OwnerClosed&) = delete;
    OwnerClosed& operator=(const OwnerClosed&) = delete;
    HWND Window() const { return lclWindow; }

private:
    HWND lclWindow;
    bool lclWasOpen = false;
};

// All messages: a window of the other thread that belongs to ours shares our queue of input, and
// would wait for what we left in it.
void HandleMessagesUntil(HANDLE done) {
    bool quit = false;
    int quitCode = 0;
    while (MsgWaitForMultipleObjectsEx(1, &done, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE) ==
           WAIT_OBJECT_0 + 1) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                quit = true;
                quitCode = static_cast<int>(message.wParam);
            } else if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST) {
                DispatchMessageW(&message);
            }
        }
    }
    if (quit) PostQuitMessage(quitCode); // for the host's own loop
}

} // namespace

SimpleOutcome SendByMailFunction(const platform::Workstation& workstation,
                                 const OutgoingMail& mail) {
    const OwnerClosed owner;
    const HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (!done) throw platform::Error(platform::errors::fail, "No event for the mail's thread");
    ULONG answer = simple::success;
    std::exception_ptr failure;
    std::thread thread([&] {
        const HRESULT apartment = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        try {
            answer = CallEither(mail, owner.Window());
        } catch (...) {
            failure = std::current_exception();
        }
        if (SUCCEEDED(apartment)) CoUninitialize();
        SetEvent(done);
    });
    HandleMessagesUntil(done);
    thread.join();
    CloseHandle(done);
    if (failure) std::rethrow_exception(failure);
    if (answer != simple::success)
        workstation.log.Write("Mail",
                              "The simple mail function answered " + std::to_string(answer));
    return SimpleOutcomeOf(answer);
}

} // namespace kavidex::mail::win32
