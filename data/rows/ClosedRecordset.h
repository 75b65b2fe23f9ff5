// The recordset that is not open: what a failing read hands back.
#pragma once

#include "data/Recordset.h"

namespace kavidex::data {

RecordsetPtr MakeClosedRecordset();

} // namespace kavidex::data
