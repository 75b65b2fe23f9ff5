// Moves a whole installation's database to another engine: every row with its key, block by block.
// The source is only read. Killed anywhere, the next call goes on where the last block was
// committed. At the end both sides are read again and must agree row by row.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Connection.h"
#include "data/Texts.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::data::transfer {

struct CopiedTable {
    std::string name;
    std::int64_t rows = 0;
    std::uint64_t sum = 0; // of the rows in the order of their keys, the same on both sides
};

struct CopyOptions {
    int block = 1000; // rows of one transaction
    Translation translation = {};
    // Called after each block; the last one of a table has all done.
    std::function<void(std::string_view table, std::int64_t done, std::int64_t total)> progress;
};

struct CopyResult {
    std::vector<CopiedTable> tables;
    std::vector<std::string> foreign; // tables of the source that are not the system's: not copied
    bool resumed = false;
};

// `to` is empty, holds a new database without any dossier, or what an earlier call left there. What
// cannot be done is thrown as data::Error before anything is written where it can be told then: a
// source of an older version, a target with rows of its own, columns that the target lacks.
CopyResult CopyInstallation(const platform::Workstation& workstation, const ConnectionPtr& from,
                            const ConnectionPtr& to, const CopyOptions& options = {});

} // namespace kavidex::data::transfer
