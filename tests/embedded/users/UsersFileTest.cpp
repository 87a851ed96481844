// The file of users: read strictly, changed as a whole.
#include "users/UsersFile.h"

#include "limits/Limits.h"
#include "users/Password.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace embedded::users {
namespace {

namespace fs = std::filesystem;

const std::string& hash() {
    static const std::string one = hashed("geheim");
    return one;
}

std::string error(const std::function<void()>& step) {
    try {
        step();
    } catch (const UsersFileError& error) {
        return error.what();
    }
    return "no error";
}

std::string errorIn(const std::string& text) {
    return error([&] { usersIn(text, "users"); });
}

TEST(UsersFile, HasALineForEachUserAndComments) {
    const auto users =
        usersIn("# all of them\n\nanna:read:" + hash() + "\n \t\nj\xC3\xB6rg b:write:*", "users");
    ASSERT_EQ(users.size(), 2U);
    EXPECT_EQ(users[0].name, "anna");
    EXPECT_EQ(users[0].role, Role::Read);
    EXPECT_EQ(users[0].hash, hash());
    EXPECT_EQ(users[1].name, "j\xC3\xB6rg b");
    EXPECT_EQ(users[1].role, Role::Write);
    EXPECT_EQ(users[1].hash, noPassword);
    EXPECT_TRUE(usersIn("", "users").empty());
}

TEST(UsersFile, IsRefusedWithThePlaceOfItsFirstFault) {
    const std::string end = ":read:" + hash() + "\n";
    const std::vector<std::pair<std::string, std::string>> wrong = {
        {"anna\n", "NAME:ROLE:HASH is expected"},
        {"anna:read\n", "NAME:ROLE:HASH is expected"},
        {"anna:Read:" + hash(), "the role is read or write"},
        {"anna::" + hash(), "the role is read or write"},
        {end, "a user has a name"},
        {std::string(limits::userName + 1, 'x') + end, "a name has 256 bytes at most"},
        {"\xFF" + end, "a name has to be UTF-8"},
        {"an\tna" + end, "a name has no control characters"},
        {std::string("a\0", 2) + end, "a name has no control characters"},
        {" anna" + end, "a name neither begins with # or a blank nor ends with a blank"},
        {"anna " + end, "a name neither begins with # or a blank nor ends with a blank"},
        {"anna:read:geheim\n", "not a hash of a method that crypt(5) knows and thinks safe"},
        {"anna:read:\n", "not a hash of a method that crypt(5) knows and thinks safe"},
        {"anna:read:" + hash() + "\r\n",
         "not a hash of a method that crypt(5) knows and thinks safe"},
        {"anna:read:" + hash() + ":\n",
         "not a hash of a method that crypt(5) knows and thinks safe"},
        {"anna:read:" + hash() + "x\n", "a hash that is cut off or too long"},
        {"first" + end, "user first comes twice"},
    };
    for (const auto& [line, fault] : wrong)
        EXPECT_EQ(errorIn("first" + end + "\n" + line), "users:3: " + fault) << line;
    EXPECT_EQ(errorIn(std::string(limits::userName, 'x') + end), "no error");
    EXPECT_EQ(errorIn("anna:read:geheim").find("geheim"), std::string::npos);
}

class File : public testing::Test {
  protected:
    File() {
        std::string name = testing::TempDir() + "users-XXXXXX";
        if (!::mkdtemp(name.data()))
            throw std::runtime_error("cannot make a directory like " + name);
        directory = name;
        file = directory / "users";
    }
    ~File() override { fs::remove_all(directory); }

    void put(const std::string& text, fs::perms mode = fs::perms(0600)) const {
        std::ofstream(file) << text;
        fs::permissions(file, mode);
    }
    std::string text() const {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    unsigned mode() const { return static_cast<unsigned>(fs::status(file).permissions()); }

    fs::path directory;
    fs::path file;
};

TEST_F(File, IsMadeForItsOwnerOnly) {
    const mode_t mask = ::umask(0);
    putUser(file, "anna", std::nullopt, hash());
    ::umask(mask);
    EXPECT_EQ(text(), "anna:read:" + hash() + "\n");
    EXPECT_EQ(mode(), 0600U);
    EXPECT_EQ(readUsers(file).size(), 1U);
}

TEST_F(File, KeepsEverythingButTheUserThatIsChanged) {
    put("# a comment\nanna:write:" + hash() + "\n\nbert:read:*", fs::perms(0640));
    putUser(file, "anna", std::nullopt, noPassword);
    EXPECT_EQ(text(), "# a comment\nanna:write:*\n\nbert:read:*\n");
    putUser(file, "anna", Role::Read, hash());
    putUser(file, "carl", Role::Write, noPassword);
    EXPECT_EQ(text(), "# a comment\nanna:read:" + hash() + "\n\nbert:read:*\ncarl:write:*\n");
    removeUser(file, "bert");
    EXPECT_EQ(text(), "# a comment\nanna:read:" + hash() + "\n\ncarl:write:*\n");
    EXPECT_EQ(mode(), 0640U);
    EXPECT_EQ(std::distance(fs::directory_iterator(directory), fs::directory_iterator()), 1);
}

TEST_F(File, KeepsItsOwner) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    put("anna:read:*\n");
    ASSERT_EQ(::chown(file.c_str(), 0, 12345), 0);
    putUser(file, "anna", Role::Write, noPassword);
    struct stat status {};
    ASSERT_EQ(::stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, 12345U);
    EXPECT_EQ(mode(), 0600U);
}

TEST_F(File, ThatOthersMayReadOrWriteIsRefused) {
    put("anna:read:*\n");
    for (const unsigned mode : {0604U, 0602U, 0620U, 0644U, 0666U}) {
        fs::permissions(file, fs::perms(mode));
        EXPECT_NE(error([&] { readUsers(file); }).find("others may read or write it"),
                  std::string::npos)
            << mode;
        EXPECT_NE(error([&] { readUsers(file); }).find("chmod 600"), std::string::npos);
        EXPECT_NE(error([&] { putUser(file, "bert", {}, noPassword); }).find("others may"),
                  std::string::npos);
    }
    for (const unsigned mode : {0600U, 0640U, 0400U}) {
        fs::permissions(file, fs::perms(mode));
        EXPECT_EQ(error([&] { readUsers(file); }), "no error") << mode;
    }
    EXPECT_EQ(text(), "anna:read:*\n");
}

TEST_F(File, OfAnotherUserIsRefused) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a file away";
    put("anna:read:*\n");
    ASSERT_EQ(::chown(file.c_str(), 12345, 12345), 0);
    EXPECT_NE(error([&] { readUsers(file); }).find("belongs to another user"), std::string::npos);
}

TEST_F(File, ThatIsALinkIsNotChanged) {
    put("anna:read:*\n");
    const fs::path link = directory / "link";
    fs::create_symlink(file, link);
    EXPECT_EQ(error([&] { putUser(link, "bert", {}, noPassword); }),
              link.string() + ": is a link; name the file itself");
    EXPECT_EQ(readUsers(link).size(), 1U);
    // Where the new one is made, somebody else may have put a link.
    fs::create_symlink(directory / "elsewhere", directory / "users.new");
    putUser(file, "bert", {}, noPassword);
    EXPECT_FALSE(fs::exists(directory / "elsewhere"));
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(text(), "anna:read:*\nbert:read:*\n");
}

TEST_F(File, WithAFaultIsNotChanged) {
    put("anna:read:*\nnonsense\n");
    EXPECT_EQ(error([&] { putUser(file, "bert", {}, noPassword); }),
              file.string() + ":2: NAME:ROLE:HASH is expected");
    EXPECT_EQ(text(), "anna:read:*\nnonsense\n");
    put("anna:read:*\n");
    for (const char* const name : {"", "#x", "a:read", "a\nb", "\xFF"})
        EXPECT_NE(error([&] { putUser(file, name, {}, noPassword); }), "no error") << name;
    EXPECT_NE(error([&] { putUser(file, "bert", {}, "geheim"); }), "no error");
    EXPECT_EQ(error([&] { removeUser(file, "bert"); }), file.string() + ": there is no user bert");
    EXPECT_EQ(text(), "anna:read:*\n");
}

TEST_F(File, ThatIsNoneIsRefused) {
    EXPECT_EQ(error([&] { readUsers(file); }),
              file.string() + ": cannot be opened: No such file or directory");
    EXPECT_EQ(error([&] { readUsers(directory); }), directory.string() + ": is not a file");
    EXPECT_NE(error([&] { putUser(directory / "none" / "users", "a", {}, noPassword); }),
              "no error");
    EXPECT_NE(error([&] { putUser(directory / "..", "a", {}, noPassword); }), "no error");
    put(std::string(5 * limits::MiB, '\n'));
    EXPECT_NE(error([&] { readUsers(file); }).find("is larger than"), std::string::npos);
}

TEST_F(File, LosesNoChangeOfManyAtOnce) {
    put("");
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([this, i] {
            for (int j = 0; j < 8; ++j)
                putUser(file, "u" + std::to_string(i) + "." + std::to_string(j), {}, noPassword);
        });
    // Whoever reads meanwhile sees a whole file.
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(error([&] { readUsers(file); }), "no error");
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(readUsers(file).size(), 64U);
}

} // namespace
} // namespace embedded::users
