// A compound file, the container of a saved mail: a tree of storages that hold streams.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavidex::mail {

// One storage of it. Names compare without case.
class Storage {
public:
    virtual ~Storage() = default;
    // Null when there is none. A stream longer than `most` bytes is cut there.
    virtual std::optional<std::string> Stream(std::string_view name, std::size_t most) = 0;
    virtual std::unique_ptr<Storage> Folder(std::string_view name) = 0;
    // Of the storages directly in it, sorted; a damaged file may give fewer than it had.
    virtual std::vector<std::string> Folders() = 0;
};

// Reads from the bytes themselves. Throws platform::Error when they are no compound file; what of
// it is damaged is absent.
std::unique_ptr<Storage> ReadCompoundFile(std::string bytes);

// By the system's storage functions where it has them, else by the above. The file may be open in
// another program. Throws platform::Error.
std::unique_ptr<Storage> OpenCompoundFile(std::string_view path);

} // namespace kavidex::mail
