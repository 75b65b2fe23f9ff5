#include "data/address.h"

#include <exception>

#include "data/Value.h"
#include "platform/text.h"

namespace kavidex::data {

std::string AddressOf(const Connection& connection) {
    std::string address;
    try {
        address = connection.DefaultDatabase();
    } catch (const std::exception&) { // not open
    }
    if (address.empty()) return address;
    for (const char* const name : {"Server Name", "Data Source Name", "Data Source"}) {
        try {
            const auto told = platform::Trim(ToText(connection.Property(name)));
            if (!told.empty()) address += " @ " + told;
        } catch (const std::exception&) { // not every engine has each
        }
    }
    return address;
}

} // namespace kavidex::data
