// A file in the making under a temporary name beside its target, gone unless it is put in place.
#pragma once

#include <string>

#include "platform/posix/OpenFile.h"

namespace kavidex::platform::posix {

// The calls return 0 or an errno.
class NewFile {
public:
    NewFile(std::string nativeTarget, unsigned mode);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    int Error() const { return lclError; } // of the making
    int Descriptor() const { return lclFile.Get(); }
    // Flushes, closes, renames, and flushes the folder.
    int PutInPlace(bool failIfExists);

private:
    std::string lclTarget, lclTemporary;
    OpenFile lclFile;
    int lclError = 0;
};

// Renames without ever replacing, atomically.
int RenameNew(const std::string& nativeFrom, const std::string& nativeTo);
int FlushFolder(const std::string& nativeFolder);

} // namespace kavidex::platform::posix
