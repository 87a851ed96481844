#include "Throws.h"

#include <Pegasus/Common/CIMObjectPath.h>

#include <sstream>

using namespace Pegasus;
using apitest::text;
using apitest::throws;

namespace {

CIMObjectPath pathOf(const char* form) { return CIMObjectPath(String(form)); }

Array<CIMKeyBinding> unsortedKeys() {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("zeta", "1", CIMKeyBinding::NUMERIC));
    keys.append(CIMKeyBinding("Alpha", "a", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("beta", "X.b=2,a=1", CIMKeyBinding::REFERENCE));
    return keys;
}

std::string namesOf(const Array<CIMKeyBinding>& keys) {
    std::string names;
    for (Uint32 i = 0; i < keys.size(); ++i)
        names += text(keys[i].getName().getString()) + " ";
    return names;
}

Array<CIMKeyBinding> oneReference(const char* value) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("b", "1", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("a", "1", CIMKeyBinding::STRING));
    keys.append(CIMKeyBinding("r", value, CIMKeyBinding::REFERENCE));
    return keys;
}

TEST(CIMObjectPath, HasWhatItIsGiven) {
    const CIMObjectPath original("h", "root/x", "A", unsortedKeys());
    EXPECT_EQ(text(original.getHost()), "h");
    EXPECT_EQ(text(original.getNameSpace().getString()), "root/x");
    EXPECT_EQ(text(original.getClassName().getString()), "A");
    EXPECT_EQ(original.getKeyBindings().size(), 3U);
    CIMObjectPath copy(original);
    copy.setHost("g");
    copy.setNameSpace(CIMNamespaceName("m"));
    copy.setClassName(CIMName("B"));
    copy.setKeyBindings(Array<CIMKeyBinding>());
    EXPECT_EQ(text(copy.toString()), "//g/m:B");
    EXPECT_EQ(text(original.toString()), "//h/root/x:A.Alpha=\"a\",beta=\"X.a=1,b=2\",zeta=1");
    copy.set("", CIMNamespaceName(), CIMName("C"));
    EXPECT_EQ(text(copy.toString()), "C");
    copy.set("ns:D");
    EXPECT_EQ(text(copy.toString()), "ns:D");
    copy = String("E.k=1");
    EXPECT_EQ(text(copy.toString()), "E.k=1");
    copy = original;
    EXPECT_TRUE(copy == original);
    copy.clear();
    EXPECT_EQ(text(copy.toString()), "");
}

TEST(CIMObjectPath, SortsItsKeysByNameIgnoringCase) {
    const CIMObjectPath path("", "n", "A", unsortedKeys());
    EXPECT_EQ(namesOf(path.getKeyBindings()), "Alpha beta zeta ");
    EXPECT_EQ(text(path.getKeyBindings()[1].getValue()), "X.a=1,b=2");
    Array<CIMKeyBinding> same;
    for (const char* name : {"k", "K", "k", "A"})
        same.append(CIMKeyBinding(name, "1", CIMKeyBinding::NUMERIC));
    EXPECT_EQ(namesOf(CIMObjectPath("", "n", "A", same).getKeyBindings()), "A k K k ");
}

/// Providers see their own array sorted, and so does whoever shares it.
TEST(CIMObjectPath, SortsTheArrayItIsGiven) {
    const Array<CIMKeyBinding> given = unsortedKeys();
    const Array<CIMKeyBinding> copy(given);
    const CIMObjectPath made("", "n", "A", given);
    EXPECT_EQ(namesOf(given), "Alpha beta zeta ");
    EXPECT_EQ(namesOf(copy), "Alpha beta zeta ");
    EXPECT_EQ(text(copy[1].getValue()), "X.a=1,b=2");
    const Array<CIMKeyBinding> set = unsortedKeys();
    CIMObjectPath path;
    path.setKeyBindings(set);
    EXPECT_EQ(namesOf(set), "Alpha beta zeta ");
}

TEST(CIMObjectPath, RejectsReferenceKeysThatAreNoPaths) {
    const struct {
        const char* value;
        const char* message;
    } cases[] = {
        {"", "malformed object name: , reason:\"class name  not a legal CIM name\""},
        {"no path",
         "malformed object name: no path, reason:\"class name no path not a legal CIM name\""},
    };
    for (const auto& c : cases) {
        const Array<CIMKeyBinding> keys = oneReference(c.value);
        EXPECT_TRUE(throws<MalformedObjectNameException>(
            [&] { CIMObjectPath path("", "n", "A", keys); }, c.message));
        CIMObjectPath path;
        EXPECT_TRUE(
            throws<MalformedObjectNameException>([&] { path.setKeyBindings(keys); }, c.message));
        EXPECT_EQ(namesOf(keys), "b a r ");
    }
    EXPECT_EQ(text(CIMObjectPath("", "n", "A", oneReference("X")).toString()),
              "n:A.a=\"1\",b=\"1\",r=\"X\"");
}

TEST(CIMObjectPath, TakesHostNamesAndAddresses) {
    std::istringstream hosts(
        "h H.d my_host _a a_ a- a--b a-.b 1a 1.a a.1b 1.2.3.4a 1.2.3.4.a 1-2 1_2 0.0.0.0 "
        "255.255.255.255 01.2.3.04 [::1] [::] [1:2:3:4:5:6:7:8] [2001:db8::A] "
        "[::ffff:1.2.3.4] h: h:0 h:65535 h:00065535 1.2.3.4:5 [::1]: [::1]:5988");
    std::vector<std::string> accepted{""};
    for (std::string host; hosts >> host;)
        accepted.push_back(host);
    EXPECT_EQ(accepted.size(), 31U);
    for (const std::string& each : accepted) {
        const char* const host = each.c_str();
        EXPECT_EQ(text(CIMObjectPath(host, "n", "A").getHost()), host);
        CIMObjectPath path;
        path.setHost(host);
        EXPECT_EQ(text(path.getHost()), host);
    }
}

TEST(CIMObjectPath, RejectsOtherHosts) {
    for (const char* host :
         {"h:65536",     "h:123456",  "h:a",        "h:-1",       "h:5988x",
          "h:1:2",       "-a",        "-",          ".a",         "a.",
          "a..b",        "a.b.",      "a b",        " a",         "a ",
          "a/b",         "a@b",       "u:p@h",      "a,b",        "a*",
          "h\xc3\xa4",   "1",         "256",        "a.1",        "1.2.3",
          "1.2.3.256",   "1.2.3.4.5", "0001.2.3.4", "1..2",       "1.2.",
          "999.1.1.1",   "::1",       "[]",         "[]:1",       "[::1",
          "[::1]x",      "[::g]",     "[1::2::3]",  "[12345::]",  "[1:2:3:4:5:6:7]",
          "[::1]:99999", "[fe80::1]", "[::1%lo]",   "[fe80::1%]", "[fe80::1%nosuchinterface]"}) {
        const std::string message =
            std::string("malformed object name: ") + host + ", reason:\"invalid hostname\"";
        EXPECT_TRUE(throws<MalformedObjectNameException>(
            [&] { CIMObjectPath path(host, "n", "A"); }, message))
            << host;
        CIMObjectPath kept("//h/n:A");
        EXPECT_TRUE(throws<MalformedObjectNameException>([&] { kept.setHost(host); }, message));
        EXPECT_EQ(text(kept.toString()), "//h/n:A");
    }
}

TEST(CIMObjectPath, IsIdenticalWhenNothingDiffersButCaseAndOrder) {
    const struct {
        const char* x;
        const char* y;
        bool identical;
    } cases[] = {
        {"//h/n:A.k=1", "//H/N:a.K=1", true},
        {"A.a=1,b=2", "A.b=2,a=1", true},
        {"A.k=TRUE", "A.k=true", true},
        {"A.k=10", "A.k=0xA", true},
        {"A.k=-0", "A.k=0", true},
        {"A.r=\"X.a=1,b=2\"", "A.r=\"x.B=0x2,A=1\"", true},
        {"n:A.k=1", "A.k=1", false},
        {"//h/n:A.k=1", "n:A.k=1", false},
        {"//h/n:A.k=1", "//g/n:A.k=1", false},
        {"A.k=1", "A.k=\"1\"", false},
        {"A.k=\"a\"", "A.k=\"A\"", false},
        {"A.k=-1", "A.k=18446744073709551615", false},
        {"A.a=1,b=2", "A.a=1", false},
        {"A.k=1,k=2", "A.k=2,k=1", false},
        {"A.r=\"X.a=1\"", "A.r=\"n:X.a=1\"", false},
        {"A", "B", false},
    };
    for (const auto& c : cases) {
        const CIMObjectPath x = pathOf(c.x);
        const CIMObjectPath y = pathOf(c.y);
        SCOPED_TRACE(std::string(c.x) + " " + c.y);
        EXPECT_EQ(x.identical(y), c.identical);
        EXPECT_EQ(x == y, c.identical);
        EXPECT_EQ(x != y, !c.identical);
        EXPECT_EQ(y == x, c.identical);
        EXPECT_EQ(x.makeHashCode() == y.makeHashCode(), c.identical);
    }
    EXPECT_TRUE(CIMObjectPath() == CIMObjectPath());

    const auto withBoolean = [](const char* value) {
        return CIMObjectPath(
            String(), CIMNamespaceName(), CIMName("A"),
            Array<CIMKeyBinding>(1, CIMKeyBinding(CIMName("k"), value, CIMKeyBinding::BOOLEAN)));
    };
    EXPECT_TRUE(withBoolean("true") == withBoolean("True"));
    EXPECT_EQ(withBoolean("true").makeHashCode(), withBoolean("True").makeHashCode());
}

TEST(CIMObjectPath, SharesUntilOneIsChanged) {
    const CIMObjectPath original("//h/n:A.k=1");
    CIMObjectPath copy(original);
    copy.setHost(copy.getHost() + String("x"));
    copy.setClassName(CIMName("B"));
    EXPECT_EQ(text(original.toString()), "//h/n:A.k=1");
    Array<CIMKeyBinding> keys = original.getKeyBindings();
    keys[0].setValue("2");
    EXPECT_EQ(text(original.toString()), "//h/n:A.k=1");
    copy.setKeyBindings(keys);
    EXPECT_EQ(text(copy.toString()), "//hx/n:B.k=2");
}

} // namespace
