// The text log in a file: of the workstation's choosing, or one in the user's own folder.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/Log.h"

namespace kavidex::platform {

class Clock;
class Files;
class Registry;

// The option is read with every line, so that a site can switch the log on while a host runs.
class FileLog : public Log {
public:
    // `folder` takes the file where the workstation names none; empty: no log then. An option that
    // is empty switches the log off.
    FileLog(Registry& registry, Clock& clock, Files& files, std::string folder = {})
        : lclRegistry(registry), lclClock(clock), lclFiles(files), lclFolder(std::move(folder)) {}

    void Write(std::string_view where, std::string_view what) noexcept override;

    // A longer file becomes the one with ".old" behind its name, in place of the last such.
    static constexpr std::uint64_t largest = std::uint64_t{4} * 1024 * 1024;

private:
    std::string Path();
    void MakeRoom(const std::string& path);

    Registry& lclRegistry;
    Clock& lclClock;
    Files& lclFiles;
    std::string lclFolder;
    bool lclWriting = false;
};

// Adds to the end of the file, which is made when missing; several processes may do so at a time.
// False when the system refuses.
bool AppendToFile(const std::string& path, std::string_view bytes);

} // namespace kavidex::platform
