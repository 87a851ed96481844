#include "register/Mof.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace registering {
namespace {

std::string complaintAbout(const std::string& text) {
    try {
        readMof(text, "x.mof");
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

TEST(Mof, ReadsClassesWithVersionSuperclassAndReferences) {
    const Mof mof = readMof("// a comment; class Not {};\n"
                            "#pragma locale (\"en_US\")\n"
                            "Qualifier Key : boolean = false, Scope(property);\n"
                            "[Version(\"1.\" \"2.3\"), Description(\"class [ \\\" ]\")]\n"
                            "class A : B { [Key] string x; string y[] = {\"a;\"};\n"
                            "  [Description(\"Key\")] uint8 m([IN] A REF p, string q[]); };\n"
                            "/* class Not {}; */\n"
                            "[Association] class C { [Key] A REF One; D ref Other; E REF Third; };",
                            "x.mof");
    ASSERT_EQ(mof.classes.size(), 2U);
    EXPECT_EQ(mof.classes[0].name, "A");
    EXPECT_EQ(mof.classes[0].superclass, "B");
    EXPECT_EQ(mof.classes[0].version, "1.2.3");
    EXPECT_EQ(mof.classes[0].keys, std::vector<std::string>{"x"});
    EXPECT_TRUE(mof.classes[0].references.empty());
    EXPECT_EQ(mof.qualifiers, std::vector<std::string>{"Key"});
    EXPECT_EQ(mof.classes[1].keys, std::vector<std::string>{"One"});
    EXPECT_EQ(mof.classes[1].superclass, "");
    EXPECT_EQ(mof.classes[1].version, "");
    EXPECT_EQ(mof.classes[1].references, (std::vector<std::string>{"A", "D", "E"}));
}

TEST(Mof, ReadsInstancesAsTheyAreListedWithoutWhatIsNull) {
    const Mof mof = readMof("\n// path= A.x=\"{\"\n\ninstance of A\n{\n    x = \"one \"\n"
                            "        \"piece\";\n    n = {2, 3};\n    none = NULL;\n"
                            "    empty = {};\n    flag = TRUE;\n};\n",
                            "x.mof");
    ASSERT_EQ(mof.instances.size(), 1U);
    const Instance& instance = mof.instances[0];
    EXPECT_EQ(instance.text("X"), "one piece");
    EXPECT_EQ(instance.texts("n"), (std::vector<std::string>{"2", "3"}));
    EXPECT_EQ(instance.find("none"), nullptr);
    ASSERT_NE(instance.find("empty"), nullptr);
    EXPECT_TRUE(instance.texts("empty").empty());
    EXPECT_EQ(instance.text("flag"), "TRUE");
}

TEST(Mof, WhatIsWrittenReadsAsTheSame) {
    const std::string text = "instance of A {\n    x = \"a \\\"b\\\" \\\\\";\n    n = {2, 3};\n"
                             "    e = {};\n};\n\n";
    EXPECT_EQ(writeMof(readMof(text, "x.mof").instances), text);
}

TEST(Mof, AnErrorSaysWhereAndWhat) {
    EXPECT_EQ(complaintAbout("class A {\n};\nblah"),
              "x.mof:3: a class or an instance is expected, not 'blah'");
    EXPECT_EQ(complaintAbout("instance of A {\n x = ;\n};"),
              "x.mof:2: a name or a value is expected, not ';'");
    EXPECT_EQ(complaintAbout("class A {"), "x.mof:1: a name or a value is expected, not the end");
    EXPECT_EQ(complaintAbout("instance of A { x = \"a\n\"; };"), "x.mof:1: a string has no end");
    EXPECT_EQ(complaintAbout("/* no end"), "x.mof:1: a comment has no end");
    EXPECT_EQ(complaintAbout("instance of A { x = {1 2}; };"), "x.mof:1: '}' is expected, not '2'");
    EXPECT_EQ(complaintAbout("[Version(\"1\""), "x.mof:1: more is expected, not the end");
}

} // namespace
} // namespace registering
