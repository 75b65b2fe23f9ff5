#include "platform/win32/SettingsRegistry.h"

#include <vector>

#include "platform/win32/Failure.h"
#include "platform/win32/Variant.h"

namespace kavidex::platform::win32 {

namespace {

class Key {
public:
    ~Key() {
        if (lclKey) RegCloseKey(lclKey);
    }
    HKEY Get() const { return lclKey; }
    HKEY* Put() { return &lclKey; }

private:
    HKEY lclKey = nullptr;
};

std::string PathOf(std::string_view application, std::string_view section) {
    std::string path = "Software\\VB and VBA Program Settings\\";
    return path.append(application).append("\\").append(section);
}

// Texts may be stored with or without their terminating zero.
std::string TextOf(const std::vector<BYTE>& data) {
    std::wstring text(reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t));
    text.resize(std::min(text.size(), text.find(L'\0')));
    return FromWide(text);
}

} // namespace

std::optional<std::string> SettingsRegistry::Read(std::string_view application,
                                                  std::string_view section, std::string_view key) {
    const std::string path = PathOf(application, section);
    const std::wstring name = ToWide(key);
    Key open;
    LSTATUS status =
        RegOpenKeyExW(HKEY_CURRENT_USER, ToWide(path).c_str(), 0, KEY_QUERY_VALUE, open.Put());
    std::vector<BYTE> data(256);
    DWORD type = REG_NONE, size = 0;
    if (status == ERROR_SUCCESS) {
        do { // the value may grow between two looks
            size = static_cast<DWORD>(data.size());
            status = RegQueryValueExW(open.Get(), name.c_str(), nullptr, &type, data.data(), &size);
            if (status == ERROR_MORE_DATA) data.resize(size + 256);
        } while (status == ERROR_MORE_DATA);
    }
    if (status == ERROR_FILE_NOT_FOUND || status == ERROR_PATH_NOT_FOUND) return std::nullopt;
    if (status != ERROR_SUCCESS)
        Fail(static_cast<DWORD>(status), "read the option", path + "\\" + std::string(key));

    data.resize(size);
    if (type == REG_SZ || type == REG_EXPAND_SZ) return TextOf(data);
    if (type == REG_DWORD && size == sizeof(DWORD))
        return std::to_string(*reinterpret_cast<const std::int32_t*>(data.data()));
    return std::nullopt;
}

void SettingsRegistry::Write(std::string_view application, std::string_view section,
                             std::string_view key, std::string_view value) {
    const std::string path = PathOf(application, section);
    const std::wstring text = ToWide(value);
    Key open;
    LSTATUS status = RegCreateKeyExW(HKEY_CURRENT_USER, ToWide(path).c_str(), 0, nullptr, 0,
                                     KEY_SET_VALUE, nullptr, open.Put(), nullptr);
    if (status == ERROR_SUCCESS)
        status = RegSetValueExW(open.Get(), ToWide(key).c_str(), 0, REG_SZ,
                                reinterpret_cast<const BYTE*>(text.c_str()),
                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (status != ERROR_SUCCESS)
        Fail(static_cast<DWORD>(status), "write the option", path + "\\" + std::string(key));
}

} // namespace kavidex::platform::win32
