// A folder for one test, removed with everything in it.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kavidex::tests {

class TemporaryFolder {
public:
    TemporaryFolder() {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(test->test_suite_name()) + "-" + test->name();
        for (char& c : name)
            if (c == '/') c = '-';
        lclFolder = std::filesystem::temp_directory_path() / ("kavidex-" + name);
        std::filesystem::remove_all(lclFolder);
        std::filesystem::create_directories(lclFolder);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(lclFolder, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    // As the core writes paths.
    std::string Path(std::string_view name) const {
        std::string path = (lclFolder / name).string();
        for (char& c : path)
            if (c == '/') c = '\\';
        return path;
    }
    std::filesystem::path Native(std::string_view name) const { return lclFolder / name; }
    const std::filesystem::path& Folder() const { return lclFolder; }

private:
    std::filesystem::path lclFolder;
};

} // namespace kavidex::tests
