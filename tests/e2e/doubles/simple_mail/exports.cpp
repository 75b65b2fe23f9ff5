// The library of a mail program for tests, as the system's simple mail function loads it: leaves a
// line for each mail in the file that KAVIDEX_MAIL_RECORD names, and answers KAVIDEX_MAIL_ANSWER.
#include <windows.h>

#include <string>

namespace {

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

std::string Utf8(const wchar_t* text) {
    char bytes[8192];
    return text && WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof bytes, nullptr, nullptr)
               ? bytes
               : "";
}
std::string Utf8(const char* text) {
    wchar_t wide[8192];
    return text && MultiByteToWideChar(CP_ACP, 0, text, -1, wide, 8192) ? Utf8(wide) : "";
}
bool Exists(const wchar_t* path) { return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES; }
bool Exists(const char* path) { return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES; }

template <class Char>
ULONG Take(const char* how, ULONG_PTR window, const Message<Char>& mail, ULONG flags) {
    std::string line = std::string(how) + " flags " + std::to_string(flags) + ": " +
                       Utf8(mail.subject) + "|" + Utf8(mail.text);
    for (ULONG i = 0; i < mail.recipientCount; ++i)
        line += "|" + Utf8(mail.recipients[i].name) + " " + Utf8(mail.recipients[i].address);
    for (ULONG i = 0; i < mail.fileCount; ++i)
        line += "|" + Utf8(mail.files[i].name) + (Exists(mail.files[i].path) ? "" : " gone");
    // The host's thread answers while the mail is up, and its window is closed to the user.
    const auto host = reinterpret_cast<HWND>(window);
    DWORD_PTR answer = 0;
    if (host && SendMessageTimeoutW(host, WM_NULL, 0, 0, SMTO_NORMAL, 30000, &answer))
        line += IsWindowEnabled(host) ? "|alive and open" : "|alive";
    line += "\n";
    wchar_t path[MAX_PATH] = L"", number[16] = L"0";
    GetEnvironmentVariableW(L"KAVIDEX_MAIL_RECORD", path, MAX_PATH);
    GetEnvironmentVariableW(L"KAVIDEX_MAIL_ANSWER", number, 16);
    const HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
    return wcstoul(number, nullptr, 10);
}

} // namespace

extern "C" ULONG WINAPI MAPISendMailW(ULONG_PTR, ULONG_PTR window, Message<wchar_t>* mail,
                                      ULONG flags, ULONG) {
    return Take("wide", window, *mail, flags);
}

extern "C" ULONG WINAPI MAPISendMail(ULONG_PTR, ULONG_PTR window, Message<char>* mail, ULONG flags,
                                     ULONG) {
    return Take("narrow", window, *mail, flags);
}
