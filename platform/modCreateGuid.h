// GUIDs in their text form.
#pragma once

#include <string>

#include "platform/Guids.h"

namespace kavidex::platform {

struct Workstation;

// 0 and a braced, upper-case text of 38 characters; -1 and an unchanged text when the system could
// not make one.
int CreateGuid(const Workstation& workstation, std::string& guid);

std::string GuidText(const GuidBytes& bytes);

} // namespace kavidex::platform
