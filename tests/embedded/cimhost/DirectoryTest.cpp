// Files in a place where others may write, too.
#include "cimhost/Directory.h"

#include "TempDirectory.h"

#include <system_error>
#include <vector>

namespace embedded::cimhost {
namespace {

using Access = std::filesystem::perms;

class Files : public test::TempDirectory {
  protected:
    // What fails says which file it was.
    template <class Act>
    void fails(const Act& act, const std::string& name) const {
        try {
            act();
            ADD_FAILURE() << "done: " << name;
        } catch (const std::system_error& error) {
            EXPECT_NE(std::string(error.what()).find(path(name).string()), std::string::npos)
                << error.what();
        }
    }
};

TEST_F(Files, AreNewAndOfTheModeAskedFor) {
    const Directory directory(path());
    directory.create("a", "text", 0600);
    EXPECT_EQ(file("a"), "text");
    EXPECT_EQ(std::filesystem::status(path("a")).permissions(),
              Access::owner_read | Access::owner_write);
    fails([&] { directory.create("a", "other", 0600); }, "a");
    EXPECT_EQ(file("a"), "text");
}

TEST_F(Files, AreNotWrittenThroughLinks) {
    const Directory directory(path());
    put("target", "kept");
    std::filesystem::create_symlink("target", path("link"));
    std::filesystem::create_symlink("nonesuch", path("dangling"));
    fails([&] { directory.create("link", "other", 0600); }, "link");
    fails([&] { directory.create("dangling", "other", 0600); }, "dangling");
    fails([&] { directory.append("link", "other"); }, "link");
    EXPECT_EQ(directory.content("link"), "");
    EXPECT_EQ(file("target"), "kept");
    EXPECT_FALSE(std::filesystem::exists(path("nonesuch")));
}

TEST_F(Files, ThatTakeTheNameOfALinkLeaveItsTargetAlone) {
    const Directory directory(path());
    put("target", "kept");
    std::filesystem::create_symlink("target", path("link"));
    directory.create("new", "text", 0600);
    directory.rename("new", "link");
    EXPECT_EQ(file("link"), "text");
    EXPECT_EQ(file("target"), "kept");
    EXPECT_FALSE(std::filesystem::is_symlink(path("link")));
}

TEST_F(Files, AreRemovedOrNotThere) {
    const Directory directory(path());
    put("a", "text");
    directory.remove("a");
    EXPECT_FALSE(std::filesystem::exists(path("a")));
    EXPECT_NO_THROW(directory.remove("a"));
    std::filesystem::create_directory(path("folder"));
    fails([&] { directory.remove("folder"); }, "folder");
}

TEST_F(Files, GoWhereTheDirectoryIsNow) {
    std::filesystem::create_directory(path("one"));
    const Directory directory(path("one"));
    std::filesystem::rename(path("one"), path("two"));
    std::filesystem::create_directory(path("one"));
    directory.create("a", "text", 0600);
    directory.append("a", ", more");
    EXPECT_EQ(file("two/a"), "text, more");
    EXPECT_FALSE(std::filesystem::exists(path("one/a")));
    EXPECT_EQ(directory.content("a"), "text, more");
}

TEST_F(Files, NeedADirectory) {
    put("file", "");
    fails([&] { Directory directory(path("nonesuch")); }, "nonesuch");
    fails([&] { Directory directory(path("file")); }, "file");
}

} // namespace
} // namespace embedded::cimhost
