#include "register/Mof.h"

#include <gtest/gtest.h>

namespace registering {
namespace {

using Texts = std::vector<std::string>;

TEST(Mof, ReadsClassesWithVersionSuperclassKeysAndReferences) {
    const Mof mof =
        readListing("Qualifier Key : boolean = false, Scope(property);\n"
                    "[Version(\"1.\" \"2.3\"), Description(\"class [ \\\" ]\")]\n"
                    "class A : B { [Key] string x; [key(false)] string y[] = {\"a;\"};\n"
                    "  [Description(\"Key\")] uint8 m([IN] A REF p, string q[]); };\n"
                    "[Association, Version] class C {\n"
                    "  [Key] A REF One; D ref Other; E REF Third; a ref Fourth; };",
                    "x.mof");
    ASSERT_EQ(mof.classes.size(), 2U);
    EXPECT_EQ(mof.classes[0].name, "A");
    EXPECT_EQ(mof.classes[0].superclass, "B");
    EXPECT_EQ(mof.classes[0].version, "1.2.3");
    EXPECT_EQ(mof.classes[0].keys, Texts{"x"});
    EXPECT_TRUE(mof.classes[0].references.empty());
    EXPECT_EQ(mof.qualifiers, Texts{"Key"});
    EXPECT_EQ(mof.classes[1].keys, Texts{"One"});
    EXPECT_EQ(mof.classes[1].superclass, "");
    EXPECT_EQ(mof.classes[1].version, "");
    EXPECT_EQ(mof.classes[1].references, (Texts{"A", "D", "E"}));
}

TEST(Mof, ReadsInstancesAsTheyAreListedWithoutWhatIsNull) {
    const Mof mof = readListing("\n// path= A.x=\"{\"\n\ninstance of A\n{\n    x = \"one \"\n"
                                "        \"piece\";\n    n = {2, 3};\n    none = NULL;\n"
                                "    empty = {};\n    flag = TRUE;\n};\n",
                                "x.mof");
    ASSERT_EQ(mof.instances.size(), 1U);
    const Instance& instance = mof.instances[0];
    EXPECT_EQ(text(instance, "X"), "one piece");
    EXPECT_EQ(texts(instance, "n"), (Texts{"2", "3"}));
    EXPECT_EQ(find(instance, "none"), nullptr);
    ASSERT_NE(find(instance, "empty"), nullptr);
    EXPECT_TRUE(texts(instance, "empty").empty());
    EXPECT_EQ(text(instance, "flag"), "TRUE");
}

TEST(Mof, TakesEmbeddedObjectsAsCimcliPrintsThem) {
    const Mof mof =
        readListing("class A {\n    instance Job\n\n    object Parts[]\n    B ref C;\n};", "x.mof");
    ASSERT_EQ(mof.classes.size(), 1U);
    EXPECT_EQ(mof.classes[0].references, Texts{"B"});
    EXPECT_THROW(readListing("class A {\n    thing Job\n\n};", "x.mof"), mof::MofError);
}

TEST(Mof, WhatIsWrittenReadsAsTheSame) {
    const std::string text = "instance of A {\n    x = \"a \\\"b\\\" \\\\ \\n\\t\\r\\f\\b'\";\n"
                             "    c = '\\'';\n    n = {2, -3.5e1};\n    e = {};\n    b = TRUE;\n"
                             "};\n\n";
    EXPECT_EQ(writeMof(readListing(text, "x.mof").instances), text);
}

} // namespace
} // namespace registering
