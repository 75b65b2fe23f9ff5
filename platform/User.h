// Who works at this workstation.
#pragma once

#include <string>

namespace kavidex::platform {

class User {
public:
    virtual ~User() = default;
    virtual std::string Name() = 0; // "notpresent" when none is known
};

} // namespace kavidex::platform
