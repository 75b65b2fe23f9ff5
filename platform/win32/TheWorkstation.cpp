// The ports of a Windows desktop.
#include <windows.h>

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>
#include <winspool.h>

#include <vector>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/FileLog.h"
#include "platform/Guids.h"
#include "platform/Messages.h"
#include "platform/Shell.h"
#include "platform/UnattendedMessages.h"
#include "platform/User.h"
#include "platform/Workstation.h"
#include "platform/text.h"
#include "platform/win32/BrowserSupport.h"
#include "platform/win32/Failure.h"
#include "platform/win32/NewFile.h"
#include "platform/win32/Owner.h"
#include "platform/win32/SettingsRegistry.h"
#include "platform/win32/Variant.h"
#include "platform/win32/WindowsBusyDialog.h"
#include "platform/win32/WindowsClipboard.h"
#include "platform/win32/WindowsFiles.h"
#include "platform/win32/WindowsPrinters.h"

namespace kavidex::platform {

namespace win32 {

namespace {

class LocalClock : public Clock {
public:
    DateTime Now() override {
        SYSTEMTIME now{};
        GetLocalTime(&now);
        return {now.wYear,   now.wMonth,  now.wDay,         now.wHour,
                now.wMinute, now.wSecond, now.wMilliseconds};
    }
};

class AccountUser : public User {
public:
    std::string Name() override {
        wchar_t name[257];
        DWORD size = 257; // counts the terminating zero
        const bool known = GetUserNameW(name, &size) && size > 1;
        return known ? FromWide({name, size - 1}) : "notpresent";
    }
};

class SystemGuids : public Guids {
public:
    std::optional<GuidBytes> New() override {
        GUID guid{};
        if (FAILED(CoCreateGuid(&guid))) return std::nullopt;
        GuidBytes bytes{};
        std::size_t next = 0;
        const auto put = [&](unsigned long value, int count) {
            while (count-- > 0) bytes[next++] = static_cast<std::uint8_t>(value >> (8 * count));
        };
        put(guid.Data1, 4);
        put(guid.Data2, 2);
        put(guid.Data3, 2);
        for (const unsigned char byte : guid.Data4) put(byte, 1);
        return bytes;
    }
};

// No window of the thread takes input while a box is up: the box itself disables its owner alone.
class OthersDisabled {
public:
    explicit OthersDisabled(HWND owner) : lclOwner(owner) {
        if (owner) EnumThreadWindows(GetCurrentThreadId(), Disable, reinterpret_cast<LPARAM>(this));
    }
    ~OthersDisabled() {
        for (const HWND window : lclDisabled) EnableWindow(window, TRUE);
    }
    OthersDisabled(const OthersDisabled&) = delete;
    OthersDisabled& operator=(const OthersDisabled&) = delete;

private:
    static BOOL CALLBACK Disable(HWND window, LPARAM self) {
        auto& others = *reinterpret_cast<OthersDisabled*>(self);
        if (window == others.lclOwner || !IsWindowVisible(window) || !IsWindowEnabled(window))
            return TRUE;
        EnableWindow(window, FALSE);
        others.lclDisabled.push_back(window);
        return TRUE;
    }

    HWND lclOwner;
    std::vector<HWND> lclDisabled;
};

class MessageBoxes : public Messages {
public:
    Answer Show(const Message& message) override {
        constexpr UINT buttons[] = {MB_OK, MB_OKCANCEL, MB_YESNO, MB_YESNOCANCEL};
        constexpr UINT icons[] = {0, MB_ICONINFORMATION, MB_ICONQUESTION, MB_ICONEXCLAMATION,
                                  MB_ICONERROR};
        const HWND owner = Owner();
        const UINT type = buttons[static_cast<int>(message.buttons)] |
                          icons[static_cast<int>(message.icon)] | (owner ? 0 : MB_TASKMODAL);
        const OthersDisabled others(owner);
        switch (MessageBoxW(owner, ToWide(message.text).c_str(), ToWide(message.caption).c_str(),
                            type)) {
        case IDYES: return Answer::Yes;
        case IDNO: return Answer::No;
        case IDOK: return Answer::Ok;
        default: return Answer::Cancel;
        }
    }
};

class Desktop : public Shell {
public:
    void OpenDefault(std::string_view path) override { Execute(nullptr, "open", path); }
    void PrintDefault(std::string_view path) override { Execute(L"print", "print", path); }

    bool HasPrinters() override {
        constexpr DWORD which = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
        DWORD size = 0, count = 0;
        EnumPrintersW(which, nullptr, 4, nullptr, 0, &size, &count);
        if (size == 0) return count > 0;
        std::vector<BYTE> list(size);
        return EnumPrintersW(which, nullptr, 4, list.data(), size, &size, &count) && count > 0;
    }
    platform::Printers& Printers() override { return lclPrinters; }

    // The two halves of a 64-bit system's registry may name different ones: first as this program
    // sees it, then the other.
    std::string MailClient() override {
        for (const REGSAM view : {0, KEY_WOW64_64KEY, KEY_WOW64_32KEY})
            if (auto name = MailClientIn(view); !TrimView(name).empty()) return name;
        return {};
    }

    std::string TypeDescription(std::string_view extension) override {
        const std::wstring name = L"x." + ToWide(extension);
        SHFILEINFOW info{};
        const auto found = SHGetFileInfoW(name.c_str(), FILE_ATTRIBUTE_NORMAL, &info, sizeof info,
                                          SHGFI_TYPENAME | SHGFI_USEFILEATTRIBUTES);
        if (found && info.szTypeName[0]) return FromWide(info.szTypeName);
        return UpperCase(extension);
    }

    bool HasBrowserEngine() override { return win32::HasBrowserEngine(); }
    bool BrowserShows(std::string_view mimeType) override { return win32::BrowserShows(mimeType); }

private:
    static std::string MailClientIn(REGSAM view) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Clients\\Mail", 0, KEY_READ | view,
                          &key) != ERROR_SUCCESS)
            return {};
        wchar_t name[256];
        DWORD size = sizeof name;
        const auto read =
            RegGetValueW(key, nullptr, nullptr, RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND,
                         nullptr, name, &size);
        RegCloseKey(key);
        return read == ERROR_SUCCESS ? FromWide(name) : std::string();
    }

    static void Execute(const wchar_t* verb, std::string_view action, std::string_view path) {
        const std::wstring wide = ToWide(path);
        SHELLEXECUTEINFOW what{};
        what.cbSize = sizeof what;
        // Without the shell's own boxes: the caller tells the user.
        what.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
        what.hwnd = Owner();
        what.lpVerb = verb;
        what.lpFile = wide.c_str();
        what.nShow = SW_SHOWNORMAL;
        if (!ShellExecuteExW(&what)) Fail(GetLastError(), action, path);
    }

    WindowsPrinters lclPrinters;
};

std::string LocalDataFolder() {
    wchar_t folder[MAX_PATH];
    if (FAILED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, folder))) return {};
    return JoinPath(FromWide(folder), "Kavidex");
}

struct Machine {
    SettingsRegistry registry;
    WindowsFiles files;
    LocalClock clock;
    AccountUser user;
    SystemGuids guids;
    MessageBoxes boxes;
    WindowsBusyDialog busy;
    Desktop shell;
    FileLog log{registry, clock, files, LocalDataFolder()};
    WindowsClipboard clipboard;
    UnattendedMessages messages{boxes, registry, log};
    Workstation workstation{registry, files, clock, user, guids,
                            messages, busy,  shell, log,  clipboard};
};

} // namespace

} // namespace win32

std::string NativePath(std::string_view path) { return std::string(path); }

bool AppendToFile(const std::string& path, std::string_view bytes) {
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const win32::FileHandle file(CreateFileW(win32::WidePath(path).c_str(), FILE_APPEND_DATA,
                                             sharing, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                             nullptr));
    return file && win32::WriteFully(file.Get(), bytes) == 0;
}

const Workstation& TheWorkstation() {
    static win32::Machine machine;
    return machine.workstation;
}

} // namespace kavidex::platform
