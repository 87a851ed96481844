// Files and the files they include.
#include "TemporaryDirectory.h"

#include "mof/Mof.h"

using namespace embedded::mof;

namespace {

std::string include(const std::string& name) { return "#pragma include (\"" + name + "\")\n"; }

std::string classNamed(const std::string& name) { return "class " + name + " {};\n"; }

class MofIncludes : public testing::Test {
  protected:
    std::string message(const std::filesystem::path& file,
                        const std::vector<std::filesystem::path>& directories = {}) const {
        try {
            readFile(file, directories);
        } catch (const MofError& error) {
            return relative(error.what());
        }
        return {};
    }

    // Without the name of the temporary directory.
    std::string relative(std::string text) const {
        const std::string prefix = _directory.path().string() + "/";
        for (auto at = text.find(prefix); at != std::string::npos; at = text.find(prefix))
            text.erase(at, prefix.size());
        return text;
    }

    std::vector<std::string> classes(const Specification& declarations) const {
        std::vector<std::string> out;
        for (const Declaration& declaration : declarations) {
            const auto& type = std::get<ClassDeclaration>(declaration.what);
            out.push_back(relative(type.where.text()) + " " + type.name);
        }
        return out;
    }

    TemporaryDirectory _directory;
};

using Words = std::vector<std::string>;

} // namespace

TEST_F(MofIncludes, StandWhereThePragmaStands) {
    const auto main =
        _directory.write("main.mof", classNamed("A_A") + include("sub/b.mof") + classNamed("A_C"));
    _directory.write("sub/b.mof", "\n " + classNamed("A_B"));
    EXPECT_EQ(classes(readFile(main)),
              (Words{"main.mof:1:7 A_A", "sub/b.mof:2:8 A_B", "main.mof:3:7 A_C"}));
}

TEST_F(MofIncludes, AreLookedForBesideTheIncludingFileFirst) {
    const auto main = _directory.write("main.mof", include("sub/b.mof"));
    _directory.write("sub/b.mof", include("c.mof"));
    _directory.write("sub/c.mof", classNamed("A_Beside"));
    _directory.write("c.mof", classNamed("A_Main"));
    _directory.write("path/c.mof", classNamed("A_Path"));
    EXPECT_EQ(classes(readFile(main, {_directory.path() / "path"})),
              Words{"sub/c.mof:1:7 A_Beside"});
}

TEST_F(MofIncludes, AreLookedForInTheDirectoriesInOrder) {
    const auto main = _directory.write("main.mof", include("b.mof") + include("c.mof"));
    _directory.write("one/b.mof", classNamed("A_One"));
    _directory.write("two/b.mof", classNamed("A_Two"));
    _directory.write("two/c.mof", classNamed("A_C"));
    EXPECT_EQ(classes(readFile(main, {_directory.path() / "one", _directory.path() / "two"})),
              (Words{"one/b.mof:1:7 A_One", "two/c.mof:1:7 A_C"}));
}

TEST_F(MofIncludes, OfATextAreLookedForInTheDirectoriesOnly) {
    _directory.write("b.mof", classNamed("A_B"));
    EXPECT_EQ(classes(readText(include("b.mof"), "text", {_directory.path()})),
              Words{"b.mof:1:7 A_B"});
    try {
        readText(include("b.mof"), "text");
        FAIL() << "there was nowhere to look";
    } catch (const MofError& error) {
        EXPECT_STREQ(
            error.what(),
            "text:1:18: cannot include \"b.mof\": there is no include directory to look in");
    }
}

TEST_F(MofIncludes, MayComeByAbsolutePathAndTwice) {
    const auto other = _directory.write("b.mof", classNamed("A_B"));
    const auto main = _directory.write("main.mof", include(other.string()) + include("./b.mof"));
    EXPECT_EQ(classes(readFile(main)), (Words{"b.mof:1:7 A_B", "b.mof:1:7 A_B"}));
}

TEST_F(MofIncludes, ShareTheNamespaceAsOneText) {
    const auto main = _directory.write("main.mof", "#pragma namespace (\"root/a\")\n" +
                                                       include("b.mof") + classNamed("A_C"));
    _directory.write("b.mof", classNamed("A_A") + "#pragma namespace (\"root/b\")\n");
    const auto read = readFile(main);
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(read[0].nameSpace, "root/a");
    EXPECT_EQ(read[1].nameSpace, "root/b");
}

TEST_F(MofIncludes, HoldWholeDeclarations) {
    const auto main = _directory.write("main.mof", include("b.mof") + "};");
    _directory.write("b.mof", "class A_B {\n");
    EXPECT_EQ(message(main),
              "b.mof:2:1: unexpected end of file, expected '}', '[', a name or a type");
}

TEST_F(MofIncludes, ThatAreNotFoundSayWhereTheyWereLookedFor) {
    const auto main = _directory.write("main.mof", "\n\t#pragma include (\"b.mof\")");
    std::filesystem::create_directories(_directory.path() / "one/b.mof");
    EXPECT_EQ(message(main, {_directory.path() / "one"}),
              "main.mof:2:19: cannot include \"b.mof\": no such file, looked for b.mof, one/b.mof");
    EXPECT_EQ(message(_directory.write("main.mof", include("a\\nb"))),
              "main.mof:1:18: cannot include \"a\\x0Ab\": no such file, looked for a\\x0Ab");
}

TEST_F(MofIncludes, MustNotComeBackToAFileThatIsStillRead) {
    const auto self = _directory.write("self.mof", classNamed("A_A") + include("./self.mof"));
    EXPECT_EQ(message(self),
              "self.mof:2:18: cannot include \"./self.mof\": that file is still being read, it "
              "includes itself");

    const auto a = _directory.write("a.mof", include("b.mof"));
    _directory.write("b.mof", include("link.mof"));
    std::filesystem::create_symlink("a.mof", _directory.path() / "link.mof");
    EXPECT_EQ(message(a),
              "b.mof:1:18: cannot include \"link.mof\": that file is still being read, it "
              "includes itself");
}

TEST_F(MofIncludes, HaveALimitedDepth) {
    for (int i = 0; i < 40; ++i)
        _directory.write(std::to_string(i) + ".mof", include(std::to_string(i + 1) + ".mof"));
    _directory.write("40.mof", "");
    EXPECT_EQ(message(_directory.path() / "0.mof"),
              "32.mof:1:18: cannot include \"33.mof\": includes nest deeper than 32");
    EXPECT_EQ(message(_directory.path() / "8.mof"), "");
}

// Each file includes the next one twice, so that their number doubles with every level.
TEST_F(MofIncludes, HaveALimitedNumber) {
    for (int i = 0; i < 20; ++i) {
        const std::string next = include(std::to_string(i + 1) + ".mof");
        _directory.write(std::to_string(i) + ".mof", next + next);
    }
    _directory.write("20.mof", "");
    const std::string refused = message(_directory.path() / "0.mof");
    EXPECT_NE(refused.find("more than 10000 files"), std::string::npos) << refused;
}

TEST_F(MofIncludes, AFileThatCannotBeReadIsNamed) {
    EXPECT_EQ(message(_directory.path() / "none.mof"),
              "none.mof:1:1: cannot be read: no such file");
    std::filesystem::resize_file(_directory.write("large.mof", ""), 256 * 1024 * 1024 + 1);
    EXPECT_EQ(message(_directory.path() / "large.mof"),
              "large.mof:1:1: cannot be read: larger than 256 MiB");
    std::filesystem::create_directory(_directory.path() / "folder.mof");
    EXPECT_EQ(message(_directory.path() / "folder.mof"),
              "folder.mof:1:1: cannot be read: not a regular file");
}
