// A directory of its own for a test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace embedded::cimhost::test {

class TempDirectory : public testing::Test {
  protected:
    TempDirectory() {
        std::string name = testing::TempDir() + "cimhost-XXXXXX";
        if (!::mkdtemp(name.data()))
            throw std::runtime_error("cannot make a directory like " + name);
        _directory = name;
    }
    ~TempDirectory() override { std::filesystem::remove_all(_directory); }

    std::filesystem::path path(const std::string& name = {}) const {
        return name.empty() ? _directory : _directory / name;
    }
    std::string file(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(path(name)).rdbuf();
        return text.str();
    }
    void put(const std::string& name, const std::string& text) const {
        std::ofstream(path(name)) << text;
    }

  private:
    std::filesystem::path _directory;
};

} // namespace embedded::cimhost::test
