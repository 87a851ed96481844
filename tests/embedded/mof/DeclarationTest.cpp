// What is declared is handed on with all its parts, in order, and with its place.
#include "Read.h"
#include "Sample.h"

using namespace embedded::mof;

namespace {

using Words = std::vector<std::string>;

std::string place(const Location& where) {
    return std::to_string(where.line) + ":" + std::to_string(where.column);
}

Words names(const Specification& declarations) {
    Words out;
    for (const Declaration& declaration : declarations)
        if (const auto* qualifier = std::get_if<QualifierDeclaration>(&declaration.what))
            out.push_back("qualifier " + qualifier->name);
        else if (const auto* type = std::get_if<ClassDeclaration>(&declaration.what))
            out.push_back("class " + type->name);
        else
            out.push_back("instance " + std::get<InstanceDeclaration>(declaration.what).className);
    return out;
}

} // namespace

TEST(MofDeclarations, ComeInTheOrderOfTheText) {
    EXPECT_EQ(names(readText(sampleText, "t.mof")),
              (Words{"qualifier Key", "qualifier Values", "qualifier Schema", "qualifier Ref",
                     "qualifier Levels", "class TST_Base", "class TST_Derived", "instance TST_Base",
                     "instance TST_Derived", "instance TST_Empty"}));
}

TEST(MofDeclarations, AnEmptyTextDeclaresNothing) {
    for (const char* text : {"", " \t\r\n", "// only this", "/**/", "/***x**y*/", "\xEF\xBB\xBF"})
        EXPECT_TRUE(readText(text, "t.mof").empty()) << text;
}

TEST(MofDeclarations, AQualifierDeclarationHasTypeScopesAndFlavors) {
    const auto levels = readOne<QualifierDeclaration>(
        "Qualifier Levels : UINT8[3] = {1, 2}, Scope(Class, PROPERTY), Flavor(Restricted, "
        "ToSubclass);");
    EXPECT_EQ(levels.type, "uint8");
    EXPECT_TRUE(levels.isArray);
    EXPECT_EQ(levels.arraySize, 3U);
    ASSERT_TRUE(levels.value);
    EXPECT_TRUE(levels.value->isArray);
    EXPECT_EQ(levels.value->items.size(), 2U);
    EXPECT_EQ(levels.scopes, (Words{"class", "property"}));
    EXPECT_EQ(levels.flavors, (Words{"restricted", "tosubclass"}));

    const auto key = readOne<QualifierDeclaration>("Qualifier Key : boolean, Scope(any);");
    EXPECT_FALSE(key.isArray);
    EXPECT_FALSE(key.value);
    EXPECT_EQ(key.scopes, Words{"any"});
    EXPECT_TRUE(key.flavors.empty());
}

TEST(MofDeclarations, EveryScopeAndFlavorIsRead) {
    for (const char* scope : {"class", "association", "indication", "qualifier", "property",
                              "reference", "method", "parameter", "schema", "any"}) {
        const auto read = readOne<QualifierDeclaration>(
            std::string("qualifier Q : string, scope(") + scope + ");");
        EXPECT_EQ(read.scopes, Words{scope});
    }
    for (const char* flavor : {"enableoverride", "disableoverride", "restricted", "tosubclass",
                               "toinstance", "translatable"}) {
        const auto read = readOne<QualifierDeclaration>(
            std::string("qualifier Q : string, scope(any), flavor(") + flavor + ");");
        EXPECT_EQ(read.flavors, Words{flavor});
    }
}

TEST(MofDeclarations, EveryIntrinsicTypeIsRead) {
    for (const char* type :
         {"boolean", "uint8", "sint8", "uint16", "sint16", "uint32", "sint32", "uint64", "sint64",
          "real32", "real64", "char16", "string", "datetime"}) {
        const auto read = readOne<ClassDeclaration>(std::string("class A_B { ") + type + " P; " +
                                                    type + " M(" + type + " X); };");
        EXPECT_EQ(read.properties.at(0).type, type);
        EXPECT_EQ(read.methods.at(0).returnType, type);
        EXPECT_EQ(read.methods.at(0).parameters.at(0).type, type);
    }
}

TEST(MofDeclarations, AClassHasAliasSuperclassAndQualifiers) {
    const auto read = readOne<ClassDeclaration>(
        "[Abstract, Version(\"1\") : ToSubclass EnableOverride, Values{\"a\"}]\n"
        "class A_B as $x : A_C {};");
    EXPECT_EQ(read.name, "A_B");
    EXPECT_EQ(read.alias, "$x");
    EXPECT_EQ(read.superclass, "A_C");
    ASSERT_EQ(read.qualifiers.size(), 3U);
    EXPECT_EQ(read.qualifiers[0].name, "Abstract");
    EXPECT_FALSE(read.qualifiers[0].value);
    EXPECT_EQ(read.qualifiers[1].value->items.at(0).text, "1");
    EXPECT_FALSE(read.qualifiers[1].value->isArray);
    EXPECT_EQ(read.qualifiers[1].flavors, (Words{"tosubclass", "enableoverride"}));
    EXPECT_TRUE(read.qualifiers[2].value->isArray);

    const auto bare = readOne<ClassDeclaration>("class A_B {};");
    EXPECT_EQ(bare.alias, "");
    EXPECT_EQ(bare.superclass, "");
}

TEST(MofDeclarations, PropertiesHaveArraysSizesDefaultsAndReferences) {
    const auto read = readOne<ClassDeclaration>("class A_B {\n"
                                                "  [Key] string Scalar = \"d\";\n"
                                                "  uint8 Open[] = {1, 2};\n"
                                                "  uint8 Sized[7];\n"
                                                "  A_C REF Other;\n"
                                                "};");
    ASSERT_EQ(read.properties.size(), 4U);
    const auto& [scalar, open, sized, other] =
        std::tie(read.properties[0], read.properties[1], read.properties[2], read.properties[3]);
    EXPECT_EQ(scalar.qualifiers.at(0).name, "Key");
    EXPECT_EQ(scalar.value->items.at(0).text, "d");
    EXPECT_FALSE(scalar.isArray);
    EXPECT_TRUE(open.isArray);
    EXPECT_EQ(open.arraySize, 0U);
    EXPECT_EQ(open.value->items.size(), 2U);
    EXPECT_TRUE(sized.isArray);
    EXPECT_EQ(sized.arraySize, 7U);
    EXPECT_FALSE(sized.value);
    EXPECT_EQ(other.type, "ref");
    EXPECT_EQ(other.referenceClass, "A_C");
    EXPECT_EQ(other.name, "Other");
}

TEST(MofDeclarations, MethodsHaveParametersInOrder) {
    const auto read = readOne<ClassDeclaration>(
        "class A_B { uint32 None(); [Static] uint32 Some([In, Out] string A, A_C ref B, "
        "A_C ref C[], uint8 D[2]); };");
    ASSERT_EQ(read.methods.size(), 2U);
    EXPECT_TRUE(read.methods[0].parameters.empty());
    EXPECT_EQ(read.methods[1].qualifiers.at(0).name, "Static");
    const auto& parameters = read.methods[1].parameters;
    ASSERT_EQ(parameters.size(), 4U);
    EXPECT_EQ(parameters[0].qualifiers.size(), 2U);
    EXPECT_EQ(parameters[1].referenceClass, "A_C");
    EXPECT_FALSE(parameters[1].isArray);
    EXPECT_EQ(parameters[2].type, "ref");
    EXPECT_TRUE(parameters[2].isArray);
    EXPECT_EQ(parameters[3].arraySize, 2U);
}

TEST(MofDeclarations, AnInstanceHasClassAliasAndValues) {
    const auto read = readOne<InstanceDeclaration>(
        "[Description(\"d\")] instance of A_B as $i { A = 1; [Q] B = {\"x\"}; C = $other; };");
    EXPECT_EQ(read.className, "A_B");
    EXPECT_EQ(read.alias, "$i");
    EXPECT_EQ(read.qualifiers.size(), 1U);
    ASSERT_EQ(read.properties.size(), 3U);
    EXPECT_EQ(read.properties[0].name, "A");
    EXPECT_FALSE(read.properties[0].value.isArray);
    EXPECT_EQ(read.properties[1].qualifiers.at(0).name, "Q");
    EXPECT_TRUE(read.properties[1].value.isArray);
    EXPECT_EQ(read.properties[2].value.items.at(0).kind, Literal::Kind::Alias);
    EXPECT_EQ(read.properties[2].value.items.at(0).text, "$other");
}

TEST(MofDeclarations, KeywordsAreReadInAnyCase) {
    EXPECT_EQ(names(readText("QUALIFIER Q : STRING, SCOPE(ANY), FLAVOR(TOSUBCLASS);\n"
                             "CLASS A_B AS $a : A_C { A_D REF P = NULL; };\n"
                             "INSTANCE OF A_B AS $i { P = TRUE; };\n"
                             "#PRAGMA NAMESPACE (\"root\")",
                             "t.mof")),
              (Words{"qualifier Q", "class A_B", "instance A_B"}));
}

TEST(MofDeclarations, PropertiesMayBeNamedLikeKeywords) {
    for (const char* name :
         {"class", "Instance", "Of", "as", "qualifier", "Scope", "flavor", "String", "datetime",
          "Schema", "any", "Property", "method", "Restricted", "translatable"}) {
        const std::string word = name;
        const auto type =
            readOne<ClassDeclaration>("class A_B { string " + word + "; A_C ref " + word +
                                      "; uint8 " + word + "(string " + word + "); };");
        EXPECT_EQ(type.properties.at(0).name, word);
        EXPECT_EQ(type.methods.at(0).parameters.at(0).name, word);
        const auto instance =
            readOne<InstanceDeclaration>("instance of A_B { " + word + " = 1; };");
        EXPECT_EQ(instance.properties.at(0).name, word);
    }
}

TEST(MofDeclarations, QualifiersMayBeNamedLikeKeywords) {
    for (const char* name :
         {"Ref", "Association", "Indication", "Schema", "any", "Class", "string", "restricted"}) {
        const std::string word = name;
        EXPECT_EQ(
            readOne<QualifierDeclaration>("Qualifier " + word + " : string, Scope(any);").name,
            word);
        EXPECT_EQ(readOne<ClassDeclaration>("[" + word + ", " + word + "(1)] class A_B {};")
                      .qualifiers.at(1)
                      .name,
                  word);
    }
}

TEST(MofDeclarations, StandWhereTheirNameStands) {
    const auto type = readOne<ClassDeclaration>("[Abstract,\r\n"
                                                "\tKey]\r\n"
                                                "class A_B {\r\n"
                                                "\t[Q] uint8 P = 5;\r\n"
                                                "  A_C ref R;\r\n"
                                                "  uint8 M(string X);\r\n"
                                                "};");
    EXPECT_EQ(type.where.text(), "t.mof:3:7");
    EXPECT_EQ(place(type.qualifiers.at(0).where), "1:2");
    EXPECT_EQ(place(type.qualifiers.at(1).where), "2:2");
    EXPECT_EQ(place(type.properties.at(0).where), "4:12");
    EXPECT_EQ(place(type.properties.at(0).value->where), "4:16");
    EXPECT_EQ(place(type.properties.at(1).where), "5:11");
    EXPECT_EQ(place(type.methods.at(0).where), "6:9");
    EXPECT_EQ(place(type.methods.at(0).parameters.at(0).where), "6:18");

    const auto instance = readOne<InstanceDeclaration>("/* ö */ instance of A_B {\n"
                                                       "  P = {1,\n"
                                                       "       \"a\" \"b\"}; };");
    EXPECT_EQ(place(instance.where), "1:22") << "a column counts bytes";
    EXPECT_EQ(place(instance.properties.at(0).where), "2:3");
    EXPECT_EQ(place(instance.properties.at(0).value.where), "2:7");
    EXPECT_EQ(place(instance.properties.at(0).value.items.at(1).where), "3:8");

    const auto qualifier = readOne<QualifierDeclaration>("\xEF\xBB\xBFqualifier Q : string = "
                                                         "\"v\", Scope(any);");
    EXPECT_EQ(place(qualifier.where), "1:11") << "a byte order mark has no column";
    EXPECT_EQ(place(qualifier.value->where), "1:24");
}

TEST(MofDeclarations, BelongToTheNamespaceOfTheLastPragma) {
    const auto read = readText("class A_A {};\n"
                               "#pragma namespace (\"root/\" \"one\")\n"
                               "class A_B {}; class A_C {};\n"
                               "#pragma namespace (\"/root/two\")\n"
                               "class A_D {};\n"
                               "#pragma namespace (\"root/_A\xC3\xB6Z9\")\n"
                               "class A_E {};",
                               "t.mof");
    ASSERT_EQ(read.size(), 5U);
    EXPECT_EQ(read[4].nameSpace, "root/_A\xC3\xB6Z9");
    EXPECT_FALSE(read[0].nameSpace);
    EXPECT_EQ(read[1].nameSpace, "root/one");
    EXPECT_EQ(read[2].nameSpace, "root/one");
    EXPECT_EQ(read[3].nameSpace, "/root/two");
}

TEST(MofDeclarations, UnknownPragmasSayNothing) {
    EXPECT_EQ(
        readText("#pragma locale (\"en_US\")\n#pragma class(\"x\") class A_B {};", "t.mof").size(),
        1U);
}
