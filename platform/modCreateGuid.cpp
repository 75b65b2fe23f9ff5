#include "platform/modCreateGuid.h"

#include "platform/Workstation.h"

namespace kavidex::platform {

std::string GuidText(const GuidBytes& bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "{";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text += '}';
}

int CreateGuid(const Workstation& workstation, std::string& guid) {
    const auto bytes = workstation.guids.New();
    if (!bytes) return -1;
    guid = GuidText(*bytes);
    return 0;
}

} // namespace kavidex::platform
