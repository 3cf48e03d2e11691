#pragma once

#include "platform/FileManager.h"

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace hollowfernpike::test {

/// Files in memory, and the failures that a real disk cannot be made to have on demand.
class FakeFileManager : public platform::FileManager {
public:
    std::vector<std::filesystem::path> directories{"/home/someone/.local/share"};
    std::set<std::filesystem::path> createdDirectories;
    std::map<std::filesystem::path, std::string> files;
    int writes = 0; ///< those that succeeded

    /// While set, the operation fails with it and changes nothing.
    std::optional<platform::FileError> createDirectoryError;
    std::optional<platform::FileError> readError;
    std::optional<platform::FileError> writeError;

    static platform::FileError error(std::errc code, const std::string& japanese) {
        return {"/fake", std::make_error_code(code), japanese,
                std::make_error_code(code).message()};
    }

    std::vector<std::filesystem::path> applicationSupportDirectories() override {
        return directories;
    }

    void createDirectory(const std::filesystem::path& directory) override {
        failWith(createDirectoryError);
        createdDirectories.insert(directory);
    }

    bool fileExists(const std::filesystem::path& file) override { return files.contains(file); }

    std::string readFile(const std::filesystem::path& file) override {
        failWith(readError);
        const auto found = files.find(file);
        if (found == files.end()) {
            throw error(std::errc::no_such_file_or_directory, "ファイルがありません");
        }
        return found->second;
    }

    void writeFileAtomically(const std::filesystem::path& file, std::string_view data) override {
        failWith(writeError);
        files[file] = data;
        ++writes;
    }

private:
    static void failWith(const std::optional<platform::FileError>& failure) {
        if (failure) {
            throw platform::FileError{*failure};
        }
    }
};

} // namespace hollowfernpike::test
