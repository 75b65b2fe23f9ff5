// The contract in words, one line a member: what a host may rely on, without the help.
#pragma once

#include <oaidl.h>

#include <string>

namespace kavidex::tests {

// Types by their names, members by their ids.
std::string ContractText(ITypeLib& library);

// With the help, class by class, for those who write a host.
std::string MembersText(ITypeLib& library);

} // namespace kavidex::tests
