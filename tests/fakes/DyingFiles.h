// A file system in which the process kills itself: in the middle of its n-th operation that changes
// the disk, as one that was cut off, or right after it.
#pragma once

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "tests/fakes/FaultyFiles.h"

namespace kavidex::tests {

[[noreturn]] inline void Die() {
    ::kill(::getpid(), SIGKILL);
    std::abort();
}

class DyingFiles : public FaultyFiles {
public:
    DyingFiles(platform::Files& real, int dieAt) : FaultyFiles(real), lclDieAt(dieAt) {}
    // From now on; what was done before does not count.
    void DieAt(int n) {
        lclDieAt = n;
        lclDone = 0;
    }
    void Copy(std::string_view source, std::string_view target, bool failIfExists) override {
        if (Due()) {
            FaultyFiles::WriteAll(std::string(target) + ".part", "cut off");
            Die();
        }
        FaultyFiles::Copy(source, target, failIfExists);
        if (Due()) Die();
    }
    std::string CopyAside(std::string_view source, std::string_view folder, bool atRest) override {
        if (Due()) {
            FaultyFiles::WriteAll(std::string(folder) + "\\cut.tmp", "cut off");
            Die();
        }
        std::string copy = FaultyFiles::CopyAside(source, folder, atRest);
        if (Due()) Die();
        return copy;
    }
    void Rename(std::string_view from, std::string_view to) override {
        if (Due()) Die();
        FaultyFiles::Rename(from, to);
        if (Due()) Die();
    }
    void CreateDirectories(std::string_view path) override {
        FaultyFiles::CreateDirectories(path);
        if (Due()) Die();
    }
    void Remove(std::string_view path) override {
        if (Due()) Die();
        FaultyFiles::Remove(path);
        if (Due()) Die();
    }
    void WriteAll(std::string_view path, std::string_view bytes) override {
        if (Due()) Die();
        FaultyFiles::WriteAll(path, bytes);
        if (Due()) Die();
    }

private:
    bool Due() { return ++lclDone == lclDieAt; }
    int lclDieAt, lclDone = 0;
};

// A killed process needs no real disk, and hundreds of them no waiting for one.
struct MemoryDisk {
    MemoryDisk() {
        if (::access("/dev/shm", W_OK) == 0) ::setenv("TMPDIR", "/dev/shm", 1);
    }
};

} // namespace kavidex::tests
