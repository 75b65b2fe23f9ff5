// A file in the making under a temporary name of its folder, gone unless it is put in place or
// kept.
#pragma once

#include <string>

#include "platform/posix/OpenFile.h"

namespace kavidex::platform::posix {

// The calls return 0 or an errno.
class NewFile {
public:
    NewFile(const std::string& nativeFolder, unsigned mode);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    int Error() const { return lclError; } // of the making
    int Descriptor() const { return lclFile.Get(); }
    // Flushes where wanted, closes, renames within the folder, and flushes the folder.
    int PutInPlace(const std::string& nativeTarget, bool failIfExists, bool flush = true);
    // Flushes and closes; the file stays under its temporary name, which is handed back.
    int Keep(std::string& nativePath);

private:
    int Finish(bool flush = true);

    std::string lclTemporary;
    OpenFile lclFile;
    int lclError = 0;
};

// Renames without ever replacing, atomically.
int RenameNew(const std::string& nativeFrom, const std::string& nativeTo);
int FlushFolder(const std::string& nativeFolder);

} // namespace kavidex::platform::posix
