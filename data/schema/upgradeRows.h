// How the steps of the upgrade chain read and change rows: what cannot be read or kept halts the
// chain, since it says nothing about what is there.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/schema/upgradeSteps.h"

namespace kavidex::data::upgrade {

// The work as one transaction: a part of the step's own where that is one already, without any on
// an engine that has none. Throws UpgradeHalted, with the work undone, when the transaction cannot
// be begun or kept or the work throws.
void InTransaction(const UpgradeContext& context, const std::function<void()>& work);

bool HasField(const Recordset& rows, std::string_view name);

// The rows of "Select ... from TABLE ..."; null when there is no such table or it lacks one of the
// fields. Throws UpgradeHalted when they are there and cannot be read.
RecordsetPtr RowsOf(const UpgradeContext& context, const std::string& statement,
                    const std::vector<std::string>& fields);

// Runs `change` on every row and writes it where that returns true, some hundred rows a
// transaction; the message loop runs in between. False when RowsOf has none, or a row was refused,
// which is logged.
bool ForEachRow(const UpgradeContext& context, const std::string& statement,
                const std::vector<std::string>& fields,
                const std::function<bool(Recordset&)>& change);
// The same for what nobody finds a row without: a row that was refused (locked, perhaps) throws
// UpgradeHalted, once all have been tried.
bool KeepEachRow(const UpgradeContext& context, const std::string& statement,
                 const std::vector<std::string>& fields,
                 const std::function<bool(Recordset&)>& change);

} // namespace kavidex::data::upgrade
