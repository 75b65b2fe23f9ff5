// The file system of Windows, by wide calls, at any length of path.
#pragma once

#include "platform/Files.h"

namespace kavidex::platform::win32 {

class WindowsFiles : public Files {
public:
    bool FileExists(std::string_view path) override;
    bool DirectoryExists(std::string_view path) override;
    void CreateDirectories(std::string_view path) override;
    void Copy(std::string_view source, std::string_view target, bool failIfExists) override;
    std::string CopyAside(std::string_view source, std::string_view folder, bool atRest) override;
    void Rename(std::string_view from, std::string_view to) override;
    void Remove(std::string_view path) override;
    std::uint64_t Size(std::string_view path) override;
    bool SameBytes(std::string_view path, std::string_view other) override;
    bool SameFile(std::string_view path, std::string_view other) override;
    std::uint32_t Attributes(std::string_view path) override;
    void SetAttributes(std::string_view path, std::uint32_t attributes) override;
    std::string ReadAll(std::string_view path) override;
    void WriteAll(std::string_view path, std::string_view bytes) override;
    std::unique_ptr<FileReader> Reader(std::string_view path) override;
    std::unique_ptr<FileWriter> Writer(std::string_view path) override;
    std::vector<std::string> List(std::string_view folder, std::string_view pattern,
                                  bool folders) override;
    bool Holds(std::string_view folder, std::string_view pattern) override;
    std::unique_ptr<FileLock> Lock(std::string_view path) override;
    std::string TemporaryFolder() override;
};

} // namespace kavidex::platform::win32
