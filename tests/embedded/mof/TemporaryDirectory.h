#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

/// A directory of its own for a test; it goes with the object.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "mof-XXXXXX").string();
        EXPECT_NE(mkdtemp(pattern.data()), nullptr);
        _path = pattern;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return _path; }

    std::filesystem::path write(const std::string& name, const std::string& text) const {
        const std::filesystem::path file = _path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }

  private:
    std::filesystem::path _path;
};
