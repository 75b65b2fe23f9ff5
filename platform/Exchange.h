// What goes from one program to another by drag or clipboard, and the port to the clipboard.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kavidex::platform {

// A file that stands nowhere yet: a mail or its attachment, as a mail program hands it out.
struct VirtualFile {
    std::string name;                  // as its source calls it, without folders
    std::function<std::string()> read; // its bytes; throws platform::Error when the source fails
};

namespace errors {
constexpr auto clipboardHeld = static_cast<std::int32_t>(0x800401D0); // by another program
}

// What `own` holds in a drag; on the clipboard it holds the mark of what was cut or copied.
constexpr std::string_view ownDrag = "drag";

// What is not there is empty. `read` of a virtual file is good for as long as the drop lasts, or
// until the clipboard changes.
struct ExchangeData {
    bool hasText = false, hasFiles = false;
    std::string text;               // clipboard format 1
    std::vector<std::string> files; // full paths, format 15
    std::vector<VirtualFile> virtualFiles{};
    std::string own{}; // what only this library writes and understands
    // In place of `files` where making or reading them costs much: called at most once, when they
    // are needed. Must not throw.
    std::function<std::vector<std::string>()> makeFiles{};

    void FetchFiles() {
        if (const auto make = std::exchange(makeFiles, nullptr)) files = make();
    }
};

class Clipboard {
public:
    virtual ~Clipboard() = default;

    // Asked without opening the clipboard.
    virtual bool HasFiles() = 0;
    virtual bool HasText() = 0;
    virtual bool HasOwn() = 0;
    // Both wait a moment for another program to let go of the clipboard, then throw
    // platform::Error; what was on it stays.
    virtual ExchangeData Read() = 0;
    virtual void Write(const ExchangeData& data) = 0;
};

// The clipboard of a machine without a desktop, and of tests: in memory.
class MemoryClipboard : public Clipboard {
public:
    bool HasFiles() override { return content.hasFiles; }
    bool HasText() override { return content.hasText; }
    bool HasOwn() override { return !content.own.empty(); }
    ExchangeData Read() override { return content; }
    void Write(const ExchangeData& data) override { content = data; }

    ExchangeData content;
};

} // namespace kavidex::platform
