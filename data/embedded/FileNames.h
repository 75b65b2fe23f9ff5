// The few file operations that the embedded engine needs beside SQLite's own. Names are the core's:
// UTF-8 with backslashes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavidex::data::embedded {

// As SQLite and the functions below hand it to the system; never a URI.
std::string NativeName(std::string_view path);

// Null when there is no such file or it cannot be read.
std::optional<std::uint64_t> FileSize(std::string_view path);
// The first bytes of a file, fewer at its end; throws data::Error when it cannot be read.
std::string FirstBytes(std::string_view path, std::size_t count);
void RemoveFile(std::string_view path) noexcept; // no error when there is none

// Whether both names lead to one file that is there.
bool SameFile(std::string_view a, std::string_view b);

// A name beside `path` that no other process makes at the same time.
std::string TemporaryBeside(std::string_view path);

// False when `to` exists already and `replace` is not set; throws data::Error when it fails.
bool RenameFile(std::string_view from, std::string_view to, bool replace);

} // namespace kavidex::data::embedded
