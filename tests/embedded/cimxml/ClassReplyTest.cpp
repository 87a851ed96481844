// Classes and qualifier declarations in replies.
#include "embedding/XmlWriter.h"

#include <gtest/gtest.h>

namespace embedded::cimxml {
namespace {

using namespace Pegasus;
using namespace Pegasus::embedding;

TEST(WrittenClass, HasQualifiersPropertiesAndMethods) {
    CIMClass cimClass(CIMName("C"), CIMName("S"));
    cimClass.addQualifier(CIMQualifier(CIMName("Description"), CIMValue(String("d")),
                                       CIMFlavor::DEFAULTS + CIMFlavor::TRANSLATABLE));
    cimClass.addProperty(CIMProperty(CIMName("p"), CIMValue(CIMTYPE_STRING, false), 0, CIMName(),
                                     CIMName("C"), false));
    cimClass.addProperty(CIMProperty(CIMName("r"), CIMValue(CIMTYPE_REFERENCE, false), 0,
                                     CIMName("Y"), CIMName("S"), true));
    CIMMethod method(CIMName("M"), CIMTYPE_UINT32, CIMName("C"), true);
    method.addQualifier(CIMQualifier(CIMName("Q"), CIMValue(Boolean(true)), CIMFlavor::DEFAULTS));
    CIMParameter in(CIMName("in"), CIMTYPE_STRING);
    in.addQualifier(CIMQualifier(CIMName("In"), CIMValue(Boolean(true)), CIMFlavor::DEFAULTS));
    method.addParameter(in);
    method.addParameter(CIMParameter(CIMName("list"), CIMTYPE_UINT8, true, 3));
    method.addParameter(CIMParameter(CIMName("ref"), CIMTYPE_REFERENCE, false, 0, CIMName("Y")));
    method.addParameter(CIMParameter(CIMName("refs"), CIMTYPE_REFERENCE, true, 0, CIMName("Y")));
    cimClass.addMethod(method);
    cimClass.addMethod(CIMMethod(CIMName("N"), CIMTYPE_STRING));

    std::string out;
    appendClass(out, cimClass);
    EXPECT_EQ(out, "<CLASS NAME=\"C\"  SUPERCLASS=\"S\" >\n"
                   "<QUALIFIER NAME=\"Description\" TYPE=\"string\" TRANSLATABLE=\"true\">\n"
                   "<VALUE>d</VALUE>\n"
                   "</QUALIFIER>\n"
                   "<PROPERTY NAME=\"p\"  CLASSORIGIN=\"C\" TYPE=\"string\">\n"
                   "</PROPERTY>\n"
                   "<PROPERTY.REFERENCE NAME=\"r\"  REFERENCECLASS=\"Y\" CLASSORIGIN=\"S\" "
                   "PROPAGATED=\"true\">\n"
                   "</PROPERTY.REFERENCE>\n"
                   "<METHOD NAME=\"M\" TYPE=\"uint32\" CLASSORIGIN=\"C\" PROPAGATED=\"true\">\n"
                   "<QUALIFIER NAME=\"Q\" TYPE=\"boolean\">\n"
                   "<VALUE>TRUE</VALUE>\n"
                   "</QUALIFIER>\n"
                   "<PARAMETER NAME=\"in\" TYPE=\"string\">\n"
                   "<QUALIFIER NAME=\"In\" TYPE=\"boolean\">\n"
                   "<VALUE>TRUE</VALUE>\n"
                   "</QUALIFIER>\n"
                   "</PARAMETER>\n"
                   "<PARAMETER.ARRAY NAME=\"list\" TYPE=\"uint8\" ARRAYSIZE=\"3\">\n"
                   "</PARAMETER.ARRAY>\n"
                   "<PARAMETER.REFERENCE NAME=\"ref\" REFERENCECLASS=\"Y\">\n"
                   "</PARAMETER.REFERENCE>\n"
                   "<PARAMETER.REFARRAY NAME=\"refs\" REFERENCECLASS=\"Y\">\n"
                   "</PARAMETER.REFARRAY>\n"
                   "</METHOD>\n"
                   "<METHOD NAME=\"N\" TYPE=\"string\">\n"
                   "</METHOD>\n"
                   "</CLASS>\n");
}

std::string written(const CIMQualifierDecl& declaration) {
    std::string out;
    appendQualifierDeclaration(out, declaration);
    return out;
}

TEST(WrittenDeclaration, HasNoLineFeedAfterItsScope) {
    EXPECT_EQ(written(CIMQualifierDecl(CIMName("Q"), CIMValue(Boolean(true)), CIMScope::ANY,
                                       CIMFlavor::DEFAULTS)),
              "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"boolean\">\n"
              "<SCOPE CLASS=\"true\" ASSOCIATION=\"true\" REFERENCE=\"true\" PROPERTY=\"true\" "
              "METHOD=\"true\" PARAMETER=\"true\" INDICATION=\"true\"/><VALUE>TRUE</VALUE>\n"
              "</QUALIFIER.DECLARATION>\n");
}

TEST(WrittenDeclaration, NamesScopesAndFlavors) {
    EXPECT_EQ(written(CIMQualifierDecl(CIMName("Q"), CIMValue(CIMTYPE_STRING, false),
                                       CIMScope::CLASS + CIMScope::PROPERTY,
                                       CIMFlavor::DEFAULTS + CIMFlavor::TRANSLATABLE)),
              "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\" TRANSLATABLE=\"true\">\n"
              "<SCOPE CLASS=\"true\" PROPERTY=\"true\"/></QUALIFIER.DECLARATION>\n");
}

TEST(WrittenDeclaration, SaysThatItIsAnArray) {
    Array<String> value;
    value.append("x");
    EXPECT_EQ(written(CIMQualifierDecl(CIMName("Q"), CIMValue(value), CIMScope::NONE,
                                       CIMFlavor::DISABLEOVERRIDE + CIMFlavor::RESTRICTED)),
              "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\" ISARRAY=\"true\" "
              "OVERRIDABLE=\"false\" TOSUBCLASS=\"false\">\n"
              "<VALUE.ARRAY>\n<VALUE>x</VALUE>\n</VALUE.ARRAY>\n</QUALIFIER.DECLARATION>\n");
}

} // namespace
} // namespace embedded::cimxml
