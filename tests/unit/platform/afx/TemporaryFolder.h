/// A folder of its own for a test that works on the disk.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// Exists, empty, as long as this object; removed with all its content.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "afx_test_XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string PathOf(const std::string& name) const { return (path_ / name).string(); }

    /// Writes a file past the layer and returns its path.
    std::string Create(const std::string& name, const std::string& content) const {
        std::ofstream(PathOf(name), std::ios::binary) << content;
        return PathOf(name);
    }

    /// Reads a file past the layer.
    std::string Content(const std::string& name) const {
        std::ifstream stream(PathOf(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path path_;
};
