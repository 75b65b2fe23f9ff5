// An open file descriptor, and how a failing call becomes an Error.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform::posix {

class OpenFile {
public:
    OpenFile() = default;
    explicit OpenFile(int descriptor) : lclDescriptor(descriptor) {}
    ~OpenFile() { Close(); }
    OpenFile(OpenFile&& other) noexcept : lclDescriptor(other.lclDescriptor) {
        other.lclDescriptor = -1;
    }
    OpenFile& operator=(OpenFile&&) = delete;

    explicit operator bool() const { return lclDescriptor >= 0; }
    int Get() const { return lclDescriptor; }
    bool Close(); // false, and errno, when the system reports a late failure

private:
    int lclDescriptor = -1;
};

// Throws for `cause` (an errno): "Cannot copy "a" to "b": No space left on device".
[[noreturn]] void Fail(int cause, std::string_view action, std::string_view path,
                       std::string_view target = {});

// All of it or an errno; 0 when written.
int WriteFully(int descriptor, std::string_view bytes);
// Fills the room, less of it only at the file's end; 0 or an errno.
int ReadFully(int descriptor, char* room, std::size_t size, std::size_t& got);

} // namespace kavidex::platform::posix
