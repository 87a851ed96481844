#include "Throws.h"

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMValue.h>

#include <limits>

using namespace Pegasus;
using apitest::text;
using apitest::throws;
using apitest::throwsTypeMismatch;
using apitest::throwsUninitialized;

namespace {

template <class T>
bool same(const T& x, const T& y) {
    return x == y;
}

bool same(const CIMInstance& x, const CIMInstance& y) { return x.identical(y); }

bool same(const CIMObject& x, const CIMObject& y) { return x.identical(y); }

/// The rules that hold for every type: `x` and `y` are two different values of it.
template <class T>
void expectTheRulesOfEveryType(const T& x, const T& y, CIMType type) {
    SCOPED_TRACE(cimTypeToString(type));
    Array<T> both;
    both.append(x);
    both.append(y);
    const CIMValue scalar(x);
    const CIMValue array(both);
    const CIMValue nullScalar(type, false);
    const CIMValue nullArray(type, true, 3);

    for (const CIMValue& value : {scalar, array, nullScalar, nullArray})
        EXPECT_EQ(value.getType(), type);
    EXPECT_FALSE(scalar.isArray() || nullScalar.isArray());
    EXPECT_TRUE(array.isArray() && nullArray.isArray());
    EXPECT_FALSE(scalar.isNull() || array.isNull());
    EXPECT_TRUE(nullScalar.isNull() && nullArray.isNull());
    EXPECT_FALSE(CIMValue(Array<T>()).isNull());
    EXPECT_EQ(scalar.getArraySize(), 0U);
    EXPECT_EQ(array.getArraySize(), 2U);
    EXPECT_EQ(nullArray.getArraySize(), 3U);

    // Out comes what went in; a null changes nothing; another shape is a mismatch.
    T element(y);
    scalar.get(element);
    EXPECT_TRUE(same(element, x));
    nullScalar.get(element);
    EXPECT_TRUE(same(element, x));
    Array<T> elements;
    array.get(elements);
    ASSERT_EQ(elements.size(), 2U);
    EXPECT_TRUE(same(elements[0], x) && same(elements[1], y));
    nullArray.get(elements);
    EXPECT_EQ(elements.size(), 2U);
    EXPECT_TRUE(throwsTypeMismatch([&] { array.get(element); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { scalar.get(elements); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { nullArray.get(element); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { nullScalar.get(elements); }));

    EXPECT_TRUE(scalar == CIMValue(x));
    EXPECT_TRUE(scalar != CIMValue(y));
    EXPECT_TRUE(scalar != nullScalar);
    EXPECT_TRUE(nullScalar == CIMValue(type, false));
    EXPECT_TRUE(array == CIMValue(both));
    EXPECT_TRUE(array != CIMValue(Array<T>(1, x)));
    EXPECT_TRUE(array != CIMValue(Array<T>(2, x)));
    EXPECT_TRUE(array != nullArray);
    EXPECT_TRUE(nullArray == CIMValue(type, true));
    EXPECT_TRUE(nullArray != CIMValue(Array<T>()));
    EXPECT_TRUE(scalar != array);
    EXPECT_TRUE(scalar.typeCompatible(nullScalar));
    EXPECT_TRUE(array.typeCompatible(nullArray));
    EXPECT_FALSE(scalar.typeCompatible(array));

    CIMValue changed(scalar);
    changed.set(y);
    EXPECT_TRUE(changed == CIMValue(y));
    EXPECT_TRUE(scalar == CIMValue(x));
    changed.set(both);
    EXPECT_TRUE(changed == array);
    changed.setNullValue(type, true, 2);
    EXPECT_TRUE(changed.isNull() && changed.isArray());
    EXPECT_EQ(changed.getArraySize(), 2U);
    changed = scalar;
    changed.clear();
    EXPECT_TRUE(changed.isNull());
    EXPECT_EQ(changed.getType(), CIMTYPE_BOOLEAN);
    changed.assign(scalar);
    EXPECT_TRUE(changed.equal(scalar));

    // An array that is changed afterwards, or that was taken out, is not that of the value.
    both.remove(0);
    elements.clear();
    EXPECT_EQ(array.getArraySize(), 2U);

    EXPECT_EQ(text(nullScalar.toString()), "");
    EXPECT_EQ(text(nullArray.toString()), "");
    EXPECT_EQ(text(array.toString()),
              text(scalar.toString()) + " " + text(CIMValue(y).toString()) + " ");
}

template <class T>
void expectTheRulesOfNumbers(CIMType type) {
    expectTheRulesOfEveryType(std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), type);
}

TEST(CIMValue, HoldsEveryType) {
    expectTheRulesOfEveryType<Boolean>(true, false, CIMTYPE_BOOLEAN);
    expectTheRulesOfNumbers<Uint8>(CIMTYPE_UINT8);
    expectTheRulesOfNumbers<Sint8>(CIMTYPE_SINT8);
    expectTheRulesOfNumbers<Uint16>(CIMTYPE_UINT16);
    expectTheRulesOfNumbers<Sint16>(CIMTYPE_SINT16);
    expectTheRulesOfNumbers<Uint32>(CIMTYPE_UINT32);
    expectTheRulesOfNumbers<Sint32>(CIMTYPE_SINT32);
    expectTheRulesOfNumbers<Uint64>(CIMTYPE_UINT64);
    expectTheRulesOfNumbers<Sint64>(CIMTYPE_SINT64);
    expectTheRulesOfNumbers<Real32>(CIMTYPE_REAL32);
    expectTheRulesOfNumbers<Real64>(CIMTYPE_REAL64);
    expectTheRulesOfEveryType(Char16('a'), Char16(0x20AC), CIMTYPE_CHAR16);
    expectTheRulesOfEveryType(String("a"), String("A"), CIMTYPE_STRING);
    expectTheRulesOfEveryType(CIMDateTime(1, true), CIMDateTime(), CIMTYPE_DATETIME);
    expectTheRulesOfEveryType(CIMObjectPath("A.k=1"), CIMObjectPath("n:A.k=1"), CIMTYPE_REFERENCE);
    const CIMInstance a(CIMName("A"));
    const CIMInstance b(CIMName("B"));
    expectTheRulesOfEveryType(a, b, CIMTYPE_INSTANCE);
    expectTheRulesOfEveryType(CIMObject(a), CIMObject(CIMClass(CIMName("B"))), CIMTYPE_OBJECT);
}

TEST(CIMValue, IsANullBooleanUntilItIsGiven) {
    const CIMValue value;
    EXPECT_TRUE(value.isNull());
    EXPECT_FALSE(value.isArray());
    EXPECT_EQ(value.getType(), CIMTYPE_BOOLEAN);
    EXPECT_EQ(text(value.toString()), "");
    EXPECT_TRUE(value == CIMValue(CIMTYPE_BOOLEAN, false));
    Boolean kept = true;
    value.get(kept);
    EXPECT_TRUE(kept);
    Uint8 other = 0;
    EXPECT_TRUE(throwsTypeMismatch([&] { value.get(other); }));
}

TEST(CIMValue, NeverConvertsBetweenTypes) {
    Uint8 narrow = 0;
    Sint16 different = 0;
    String string;
    const CIMValue value(Uint16(1));
    EXPECT_TRUE(throwsTypeMismatch([&] { value.get(narrow); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { value.get(different); }));
    EXPECT_TRUE(throwsTypeMismatch([&] { value.get(string); }));
    EXPECT_FALSE(value == CIMValue(Uint8(1)));
    EXPECT_FALSE(value.typeCompatible(CIMValue(Uint8(1))));
    EXPECT_FALSE(CIMValue(CIMTYPE_UINT8, false) == CIMValue(CIMTYPE_UINT16, false));
}

TEST(CIMValue, IsWrittenForPeople) {
    Array<String> strings;
    strings.append("x");
    strings.append("y z");
    const struct {
        CIMValue value;
        const char* text;
    } cases[] = {
        {CIMValue(Boolean(true)), "TRUE"},
        {CIMValue(Boolean(false)), "FALSE"},
        {CIMValue(Uint8(255)), "255"},
        {CIMValue(Sint8(-128)), "-128"},
        {CIMValue(~Uint64(0)), "18446744073709551615"},
        {CIMValue(std::numeric_limits<Sint64>::min()), "-9223372036854775808"},
        {CIMValue(Real32(1.5)), "1.5000000000000000e+00"},
        {CIMValue(Real32(0.1F)), "1.0000000149011612e-01"},
        {CIMValue(Real64(0.1)), "1.0000000000000001e-01"},
        {CIMValue(Real64(-0.0)), "-0.0000000000000000e+00"},
        {CIMValue(Real64(1e300)), "1.0000000000000001e+300"},
        {CIMValue(std::numeric_limits<Real64>::infinity()), "inf"},
        {CIMValue(-std::numeric_limits<Real32>::infinity()), "-inf"},
        {CIMValue(Char16(0x20AC)), "\xe2\x82\xac"},
        {CIMValue(String("a\xc3\xa4")), "a\xc3\xa4"},
        {CIMValue(CIMDateTime(String("20240101000000.000000+060"))), "20240101000000.000000+060"},
        {CIMValue(CIMObjectPath("//h/n:A.k=\"q\"")), "//h/n:A.k=\"q\""},
        {CIMValue(strings), "x y z "},
        {CIMValue(Array<Boolean>(2, true)), "TRUE TRUE "},
        {CIMValue(Array<Uint32>()), ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(c.value.toString()), c.text);
}

TEST(CIMValue, ComparesPathsAsPathsAndTimesOnlyWithTheirKind) {
    EXPECT_TRUE(CIMValue(CIMObjectPath("A.b=1")) == CIMValue(CIMObjectPath("a.B=0x1")));
    const CIMValue time(CIMDateTime(String("20240101000000.000000+060")));
    EXPECT_TRUE(throws<TypeMismatchException>(
        [&] { time.equal(CIMValue(CIMDateTime())); },
        "type mismatch: Trying to compare CIMDateTime objects of differing types"));
    const Real64 notANumber = std::numeric_limits<Real64>::quiet_NaN();
    EXPECT_FALSE(CIMValue(notANumber) == CIMValue(notANumber));
}

TEST(CIMValue, TakesAnEmptyPathForAValue) { EXPECT_FALSE(CIMValue(CIMObjectPath()).isNull()); }

TEST(CIMValue, RejectsUninitializedObjects) {
    EXPECT_TRUE(throwsUninitialized([] { CIMValue value{CIMInstance()}; }));
    EXPECT_TRUE(throwsUninitialized([] { CIMValue value{CIMObject()}; }));
    EXPECT_TRUE(throwsUninitialized([] { CIMValue value{Array<CIMInstance>(1)}; }));
    EXPECT_TRUE(throwsUninitialized([] { CIMValue value{Array<CIMObject>(1)}; }));
    CIMValue kept(Uint8(1));
    EXPECT_TRUE(throwsUninitialized([&] { kept.set(CIMInstance()); }));
    EXPECT_TRUE(kept == CIMValue(Uint8(1)));
}

template <class Object>
void expectItsOwnCopy() {
    const CIMProperty property(CIMName("p"), CIMValue(Uint8(1)));
    const CIMProperty other(CIMName("q"), CIMValue(Uint8(1)));
    CIMInstance given(CIMName("A"));
    const Object object(given);
    const CIMValue scalar(object);
    const CIMValue array(Array<Object>(1, object));
    given.addProperty(property);
    for (int i = 0; i < 2; ++i) {
        Object fromScalar;
        scalar.get(fromScalar);
        EXPECT_EQ(fromScalar.getPropertyCount(), 0U);
        fromScalar.addProperty(other);
        Array<Object> fromArray;
        array.get(fromArray);
        EXPECT_EQ(fromArray[0].getPropertyCount(), 0U);
        fromArray[0].addProperty(other);
    }
}

/// Copies of instances and objects share; those in a value do not.
TEST(CIMValue, KeepsObjectsToItself) {
    expectItsOwnCopy<CIMInstance>();
    expectItsOwnCopy<CIMObject>();
}

TEST(CIMValue, WritesObjectsAsXml) {
    CIMInstance instance(CIMName("A"));
    instance.addProperty(CIMProperty(CIMName("p"), CIMValue(Uint8(1))));
    const std::string xml = "<INSTANCE CLASSNAME=\"A\" >\n"
                            "<PROPERTY NAME=\"p\"  TYPE=\"uint8\">\n"
                            "<VALUE>1</VALUE>\n"
                            "</PROPERTY>\n"
                            "</INSTANCE>\n";
    EXPECT_EQ(text(CIMValue(instance).toString()), xml);
    EXPECT_EQ(text(CIMValue(CIMObject(instance)).toString()), xml);
    EXPECT_FALSE(CIMValue(instance) == CIMValue(CIMObject(instance)));
}

} // namespace
