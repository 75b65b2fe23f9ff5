// Which row of a table a call means, and the order of its arguments.
#pragma once

#include <vector>

#include "com/dispatch/Automation.h"

namespace kavidex::com {

// Runs the call on `self` as IDispatch::Invoke has it: named arguments, left-out arguments, a put
// by value or by reference, and arguments that belong to the default member of what a property
// gives (x.Fields("Name") where Fields takes none). Throws Refusal or what the member throws.
Variant Resolve(Automation& self, DISPID id, WORD flags, const DISPPARAMS& parameters);

// The id of a member, DISPID_UNKNOWN when there is none; and of one of its named parameters.
DISPID IdOfMember(const Table& table, const wchar_t* name);
DISPID IdOfParameter(const Table& table, DISPID member, const wchar_t* name);

} // namespace kavidex::com
