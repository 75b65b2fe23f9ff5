// A file system that fails where a test says so.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/Error.h"
#include "platform/Files.h"

namespace kavidex::tests {

// Counts the operations that a disk can refuse (questions such as FileExists are free), passes them
// on, and makes the n-th of them fail without doing anything.
class FaultyFiles : public platform::Files {
public:
    explicit FaultyFiles(platform::Files& real) : lclReal(real) {}

    int operations = 0;             // since the last FailAt
    std::vector<std::string> calls; // "Copy a b", in order
    std::string refused;            // calls that begin so fail, if any
    std::string away;               // a share that is not there: all paths that begin so

    // n from 1; 0 fails none. `andAllAfter`: the disk stays gone.
    void FailAt(int n, std::int32_t error = platform::errors::diskFull, bool andAllAfter = false) {
        lclFailAt = n;
        lclError = error;
        lclAllAfter = andAllAfter;
        operations = 0;
        calls.clear();
    }

    bool FileExists(std::string_view path) override {
        return !IsAway(path) && lclReal.FileExists(path);
    }
    bool DirectoryExists(std::string_view path) override {
        return !IsAway(path) && lclReal.DirectoryExists(path);
    }
    void CreateDirectories(std::string_view path) override {
        Count("CreateDirectories", path);
        lclReal.CreateDirectories(path);
    }
    void Copy(std::string_view source, std::string_view target, bool failIfExists) override {
        Count("Copy", source, target);
        lclReal.Copy(source, target, failIfExists);
    }
    std::string CopyAside(std::string_view source, std::string_view folder, bool atRest) override {
        Count("CopyAside", source, folder);
        return lclReal.CopyAside(source, folder, atRest);
    }
    void Rename(std::string_view from, std::string_view to) override {
        Count("Rename", from, to);
        lclReal.Rename(from, to);
    }
    void Remove(std::string_view path) override {
        Count("Remove", path);
        lclReal.Remove(path);
    }
    std::uint64_t Size(std::string_view path) override {
        Count("Size", path);
        return lclReal.Size(path);
    }
    bool SameBytes(std::string_view path, std::string_view other) override {
        Count("SameBytes", path, other);
        return lclReal.SameBytes(path, other);
    }
    bool SameFile(std::string_view path, std::string_view other) override {
        Count("SameFile", path, other);
        return lclReal.SameFile(path, other);
    }
    std::uint32_t Attributes(std::string_view path) override {
        Count("Attributes", path);
        return lclReal.Attributes(path);
    }
    void SetAttributes(std::string_view path, std::uint32_t bits) override {
        Count("SetAttributes", path);
        lclReal.SetAttributes(path, bits);
    }
    std::string ReadAll(std::string_view path) override {
        Count("ReadAll", path);
        return lclReal.ReadAll(path);
    }
    void WriteAll(std::string_view path, std::string_view bytes) override {
        Count("WriteAll", path);
        lclReal.WriteAll(path, bytes);
    }
    std::unique_ptr<platform::FileReader> Reader(std::string_view path) override {
        Count("Reader", path);
        return lclReal.Reader(path);
    }
    // Its single writes count too.
    std::unique_ptr<platform::FileWriter> Writer(std::string_view path) override {
        Count("Writer", path);
        return std::make_unique<FaultyWriter>(*this, std::string(path), lclReal.Writer(path));
    }
    std::vector<std::string> List(std::string_view folder, std::string_view pattern,
                                  bool folders) override {
        Count("List", folder);
        return lclReal.List(folder, pattern, folders);
    }
    bool Holds(std::string_view folder, std::string_view pattern) override {
        Count("Holds", folder);
        return lclReal.Holds(folder, pattern);
    }
    std::unique_ptr<platform::FileLock> Lock(std::string_view path) override {
        Count("Lock", path);
        return lclReal.Lock(path);
    }
    std::string TemporaryFolder() override { return lclReal.TemporaryFolder(); }

private:
    struct FaultyWriter : platform::FileWriter {
        FaultyWriter(FaultyFiles& files, std::string path, std::unique_ptr<FileWriter> writer)
            : owner(files), target(std::move(path)), real(std::move(writer)) {}
        void Write(std::string_view bytes) override {
            owner.Count("Write", target);
            real->Write(bytes);
        }
        void PutInPlace(bool failIfExists, bool flush) override {
            owner.Count("PutInPlace", target);
            real->PutInPlace(failIfExists, flush);
        }
        FaultyFiles& owner;
        std::string target;
        std::unique_ptr<FileWriter> real;
    };

    bool IsAway(std::string_view path) const { return !away.empty() && path.starts_with(away); }
    void Count(std::string_view name, std::string_view path, std::string_view target = {}) {
        std::string call(name);
        call.append(" ").append(path);
        if (!target.empty()) call.append(" ").append(target);
        calls.push_back(call);
        ++operations;
        if (IsAway(path) || IsAway(target))
            throw platform::Error(static_cast<std::int32_t>(0x80070035), "Away: " + call);
        if (!refused.empty() && call.starts_with(refused))
            throw platform::Error(platform::errors::accessDenied, "Refused: " + call);
        if (operations == lclFailAt || (lclAllAfter && lclFailAt > 0 && operations > lclFailAt))
            throw platform::Error(lclError, "Injected failure of " + call);
    }

    platform::Files& lclReal;
    int lclFailAt = 0;
    std::int32_t lclError = 0;
    bool lclAllAfter = false;
};

} // namespace kavidex::tests
