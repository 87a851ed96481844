#include "register/Record.h"

#include "register/Files.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

namespace registering {
namespace {

namespace fs = std::filesystem;

class TheRecord : public testing::Test {
  protected:
    TheRecord() {
        std::string name = fs::temp_directory_path() / "record_test.XXXXXX";
        directory = mkdtemp(name.data());
        file = directory / "record";
    }
    ~TheRecord() override { fs::remove_all(directory); }

    std::string complaint() const {
        try {
            readRecord(file);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    }

    fs::path directory;
    fs::path file;
};

TEST_F(TheRecord, IsReadAsItWasWritten) {
    EXPECT_FALSE(readRecord(file));
    const Record record{{"root/cimv2"},
                        {"interop"},
                        {{"interop", {"CIM_B", "CIM_A"}}, {"root/cimv2", {"ORVEX_X"}}},
                        {{"/etc/x.conf", "A = \"b\"\n"}},
                        {"/etc/x"}};
    writeFile(file, textOf(record), 0600);
    const std::optional<Record> read = readRecord(file);
    ASSERT_TRUE(read);
    EXPECT_EQ(textOf(*read), textOf(record));
    EXPECT_EQ(read->classes.at("Interop"), (std::vector<std::string>{"CIM_B", "CIM_A"}));
    EXPECT_TRUE(read->made("INTEROP"));
    EXPECT_FALSE(read->empty());
}

TEST_F(TheRecord, IsEmptyWithNothingToTakeBackWhateverDirectoriesItNames) {
    Record record;
    record.directories = {"/etc/x"};
    record.classes["interop"] = {};
    EXPECT_TRUE(record.empty());
    record.classes["interop"] = {"CIM_A"};
    EXPECT_FALSE(record.empty());
}

TEST_F(TheRecord, IsForItsOwnerAlone) {
    writeFile(file, textOf({}), 0600);
    struct stat found = {};
    ASSERT_EQ(stat(file.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777U, 0600U);
    for (const mode_t mode : {0620U, 0602U}) {
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
        EXPECT_NE(complaint().find("others may write it"), std::string::npos);
    }
}

TEST_F(TheRecord, IsNotFoundBehindALinkNorInADirectory) {
    writeFile(directory / "other", textOf({}), 0600);
    fs::create_symlink(directory / "other", file);
    EXPECT_NE(complaint(), "");
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_NE(complaint().find("no regular file"), std::string::npos);
}

TEST_F(TheRecord, IsNoPipeThatOneWaitsFor) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_NE(complaint().find("no regular file"), std::string::npos);
}

TEST_F(TheRecord, OfAnotherShapeIsSaid) {
    const auto with = [](const char* served, const char* made, const char* classes,
                         const char* files) {
        return std::string(R"({"format": 1, "served": [)") + served + R"(], "namespaces": [)" +
               made + R"(], "classes": {)" + classes + R"(}, "files": {)" + files +
               R"(}, "directories": []})";
    };
    writeFile(file, with("", "", "", ""), 0600);
    EXPECT_EQ(complaint(), "");
    for (const std::string& text :
         {std::string(), std::string("[]"), std::string("{"), std::string(R"({"format": 1})"),
          with(R"("../../etc")", "", "", ""), with("", R"("a b")", "", ""),
          with("", "", R"("a//b": [])", ""), with("", "", R"("a": ["-rf"])", ""),
          with("", "", "", R"("relative": "")")}) {
        writeFile(file, text, 0600);
        EXPECT_NE(complaint().find("is no record of this program"), std::string::npos) << text;
    }
}

TEST_F(TheRecord, ThatCannotBeWrittenLeavesWhatWasThere) {
    EXPECT_THROW(writeFile(directory / "no" / "record", "", 0600), std::runtime_error);
    fs::create_directory(file);
    EXPECT_THROW(writeFile(file, "", 0600), std::runtime_error);
    EXPECT_EQ(std::distance(fs::directory_iterator(directory), fs::directory_iterator()), 1);
}

} // namespace
} // namespace registering
