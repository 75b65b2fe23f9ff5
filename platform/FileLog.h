// The text log in a file of its workstation's choosing.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Log.h"

namespace kavidex::platform {

class Clock;
class Files;
class Registry;

// The option is read with every line, so that a site can switch the log on while a host runs.
class FileLog : public Log {
public:
    FileLog(Registry& registry, Clock& clock, Files& files)
        : lclRegistry(registry), lclClock(clock), lclFiles(files) {}

    void Write(std::string_view where, std::string_view what) noexcept override;

    // A longer file becomes the one with ".old" behind its name, in place of the last such.
    static constexpr std::uint64_t largest = std::uint64_t{4} * 1024 * 1024;

private:
    void MakeRoom(const std::string& path);

    Registry& lclRegistry;
    Clock& lclClock;
    Files& lclFiles;
    bool lclWriting = false;
};

// Adds to the end of the file, which is made when missing; several processes may do so at a time.
// False when the system refuses.
bool AppendToFile(const std::string& path, std::string_view bytes);

} // namespace kavidex::platform
