#include "Throws.h"

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMValue.h>

using namespace Pegasus;
using apitest::text;
using apitest::throwsTypeMismatch;

namespace {

CIMKeyBinding key(const char* name, const char* value, CIMKeyBinding::Type type) {
    return CIMKeyBinding(CIMName(name), String(value), type);
}

TEST(CIMKeyBinding, HasWhatItIsGiven) {
    const CIMKeyBinding original = key("a", "1", CIMKeyBinding::NUMERIC);
    CIMKeyBinding copy(original);
    copy.setName(CIMName("b"));
    copy.setValue("2");
    copy.setType(CIMKeyBinding::STRING);
    EXPECT_EQ(text(copy.getName().getString()), "b");
    EXPECT_EQ(text(copy.getValue()), "2");
    EXPECT_EQ(copy.getType(), CIMKeyBinding::STRING);
    EXPECT_EQ(text(original.getName().getString()), "a");
    EXPECT_EQ(text(original.getValue()), "1");
    EXPECT_EQ(original.getType(), CIMKeyBinding::NUMERIC);
    copy = original;
    EXPECT_EQ(text(copy.getValue()), "1");
}

TEST(CIMKeyBinding, NumbersItsTypes) {
    EXPECT_EQ(CIMKeyBinding::BOOLEAN, 0);
    EXPECT_EQ(CIMKeyBinding::STRING, 1);
    EXPECT_EQ(CIMKeyBinding::NUMERIC, 2);
    EXPECT_EQ(CIMKeyBinding::REFERENCE, 3);
}

TEST(CIMKeyBinding, IsMadeOfAValue) {
    const struct {
        CIMValue value;
        const char* text;
        CIMKeyBinding::Type type;
    } cases[] = {
        {CIMValue(Boolean(true)), "TRUE", CIMKeyBinding::BOOLEAN},
        {CIMValue(Boolean(false)), "FALSE", CIMKeyBinding::BOOLEAN},
        {CIMValue(Uint8(5)), "5", CIMKeyBinding::NUMERIC},
        {CIMValue(Sint8(-5)), "-5", CIMKeyBinding::NUMERIC},
        {CIMValue(Uint16(5)), "5", CIMKeyBinding::NUMERIC},
        {CIMValue(Sint16(-5)), "-5", CIMKeyBinding::NUMERIC},
        {CIMValue(Uint32(5)), "5", CIMKeyBinding::NUMERIC},
        {CIMValue(Sint32(-5)), "-5", CIMKeyBinding::NUMERIC},
        {CIMValue(~Uint64(0)), "18446744073709551615", CIMKeyBinding::NUMERIC},
        {CIMValue(Sint64(-5)), "-5", CIMKeyBinding::NUMERIC},
        {CIMValue(Real32(1.5)), "1.5000000000000000e+00", CIMKeyBinding::NUMERIC},
        {CIMValue(Real64(1.5)), "1.5000000000000000e+00", CIMKeyBinding::NUMERIC},
        {CIMValue(Char16('c')), "c", CIMKeyBinding::STRING},
        {CIMValue(String("s\"t")), "s\"t", CIMKeyBinding::STRING},
        {CIMValue(CIMDateTime()), "00000000000000.000000:000", CIMKeyBinding::STRING},
        {CIMValue(CIMObjectPath("//h/n:A.b=2,a=\"q\"")), "//h/n:A.a=\"q\",b=2",
         CIMKeyBinding::REFERENCE},
        {CIMValue(CIMObjectPath()), "", CIMKeyBinding::REFERENCE},
        {CIMValue(CIMTYPE_STRING, false), "", CIMKeyBinding::STRING},
        {CIMValue(CIMTYPE_DATETIME, false), "", CIMKeyBinding::STRING},
        {CIMValue(CIMTYPE_REFERENCE, false), "", CIMKeyBinding::REFERENCE},
        {CIMValue(CIMTYPE_UINT8, false), "", CIMKeyBinding::NUMERIC},
        {CIMValue(), "", CIMKeyBinding::BOOLEAN},
    };
    for (const auto& c : cases) {
        const CIMKeyBinding made(CIMName("k"), c.value);
        EXPECT_EQ(text(made.getValue()), c.text);
        EXPECT_EQ(made.getType(), c.type) << c.text;
    }
}

TEST(CIMKeyBinding, IsNotMadeOfArraysAndObjects) {
    const CIMName name("k");
    const CIMInstance instance(CIMName("A"));
    for (const CIMValue& value :
         {CIMValue(Array<Uint8>()), CIMValue(CIMTYPE_STRING, true), CIMValue(CIMTYPE_OBJECT, false),
          CIMValue(CIMTYPE_INSTANCE, false), CIMValue(instance), CIMValue(CIMObject(instance))})
        EXPECT_TRUE(throwsTypeMismatch([&] { CIMKeyBinding made(name, value); }));
}

TEST(CIMKeyBinding, ComparesByItsType) {
    using K = CIMKeyBinding;
    const struct {
        K::Type type;
        const char* x;
        const char* y;
        bool equal;
    } cases[] = {
        {K::NUMERIC, "1", "0x1", true},
        {K::NUMERIC, "10", "0XA", true},
        {K::NUMERIC, "-0", "0", true},
        {K::NUMERIC, "1", "+1", true},
        {K::NUMERIC, "1", "01", false},
        {K::NUMERIC, "01", "01", true},
        {K::NUMERIC, "8", "010", false},
        {K::NUMERIC, "-1", "18446744073709551615", false},
        {K::NUMERIC, "18446744073709551615", "0xFFFFFFFFFFFFFFFF", true},
        {K::NUMERIC, "1.5", "1.50", false},
        {K::NUMERIC, "x", "x", true},
        {K::BOOLEAN, "TRUE", "true", true},
        {K::BOOLEAN, "TRUE", "FALSE", false},
        {K::STRING, "s", "s", true},
        {K::STRING, "s", "S", false},
        {K::REFERENCE, "A.b=1,c=2", "a.C=2,B=0x1", true},
        {K::REFERENCE, "A.b=1", "n:A.b=1", false},
        {K::REFERENCE, "no path", "no path", true},
        {K::REFERENCE, "A", "", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.x) + " " + c.y);
        EXPECT_EQ(key("a", c.x, c.type) == key("A", c.y, c.type), c.equal);
        EXPECT_EQ(key("a", c.y, c.type) == key("A", c.x, c.type), c.equal);
        EXPECT_FALSE(key("a", c.x, c.type) == key("b", c.x, c.type));
    }
    EXPECT_FALSE(key("a", "5", K::NUMERIC) == key("a", "5", K::STRING));
}

TEST(CIMKeyBinding, ComparesWithAValue) {
    using K = CIMKeyBinding;
    const auto equal = [](K::Type type, const char* given, const CIMValue& value) {
        return key("a", given, type).equal(value);
    };
    EXPECT_TRUE(equal(K::NUMERIC, "0x1", CIMValue(Uint8(1))));
    EXPECT_TRUE(equal(K::NUMERIC, "1", CIMValue(Sint64(1))));
    EXPECT_TRUE(equal(K::NUMERIC, "1.5", CIMValue(Real32(1.5))));
    EXPECT_FALSE(equal(K::NUMERIC, "1.5", CIMValue(Real32(2.5))));
    EXPECT_TRUE(equal(K::STRING, "s", CIMValue(String("s"))));
    EXPECT_TRUE(equal(K::STRING, "c", CIMValue(Char16('c'))));
    EXPECT_TRUE(equal(K::BOOLEAN, "true", CIMValue(Boolean(true))));
    EXPECT_TRUE(equal(K::REFERENCE, "A.b=1", CIMValue(CIMObjectPath("a.B=1"))));
    EXPECT_FALSE(equal(K::STRING, "1", CIMValue(Uint8(1))));
    EXPECT_FALSE(equal(K::STRING, "", CIMValue(CIMTYPE_STRING, false)));
    EXPECT_FALSE(equal(K::STRING, "s", CIMValue(Array<String>())));
    EXPECT_FALSE(equal(K::STRING, "s", CIMValue(CIMInstance(CIMName("A")))));
}

/// A reference made from a path is the one made from the path's text, also where the text says
/// something else than the path, or nothing.
TEST(CIMKeyBinding, OfAPathIsThatOfItsText) {
    const auto pathOf = [](const CIMKeyBinding& binding) {
        return CIMObjectPath(String(), CIMNamespaceName(), CIMName("A"),
                             Array<CIMKeyBinding>(1, binding));
    };
    CIMObjectPath hosted("root/x:A.k=1");
    hosted.setHost("h");
    CIMObjectPath unnamed("A.k=1");
    unnamed.setHost("h"); // and no namespace
    const CIMObjectPath paths[] = {
        CIMObjectPath("A"),
        CIMObjectPath("A.k=1"),
        CIMObjectPath("A.b=TRUE,k=-1,s=\"q\\\"\",t=\"\""),
        hosted,
        CIMObjectPath("A.r=\"root/x:B.z=1\""),
        unnamed,
        CIMObjectPath(),
        pathOf(key("s", "B.k=\"1\"", CIMKeyBinding::STRING)), // reads as a reference
        pathOf(key("s", "B.k=", CIMKeyBinding::STRING)),
        pathOf(key("b", "true", CIMKeyBinding::BOOLEAN)), // reads as TRUE
        pathOf(key("b", "maybe", CIMKeyBinding::BOOLEAN)),
        pathOf(key("n", "1.5", CIMKeyBinding::NUMERIC)),
        pathOf(key("n", "0x1F", CIMKeyBinding::NUMERIC)),
        pathOf(key("n", "05", CIMKeyBinding::NUMERIC)),
        pathOf(CIMKeyBinding()),
        pathOf(CIMKeyBinding(CIMName(), "TRUE", CIMKeyBinding::BOOLEAN)),
        pathOf(CIMKeyBinding(CIMName("r"), CIMValue(CIMObjectPath("B")))), // reads as a string
        pathOf(CIMKeyBinding(CIMName("r"), CIMValue(CIMObjectPath("B.k=1")))),
    };
    const auto holderText = [](const CIMKeyBinding& binding) {
        std::string all; // as far as it can be told
        try {
            const CIMObjectPath holder(String(), CIMNamespaceName(), CIMName("Holder"),
                                       Array<CIMKeyBinding>(1, binding));
            all += text(holder.toString());
            const CIMObjectPath inner(holder.getKeyBindings()[0].getValue());
            for (Uint32 i = 0; i < inner.getKeyBindings().size(); ++i)
                all += " " + std::to_string(inner.getKeyBindings()[i].getType());
            CIMInstance instance(CIMName("I"));
            instance.addProperty(CIMProperty(CIMName("p"), CIMValue(holder)));
            return all + text(CIMObject(instance).toString());
        } catch (const MalformedObjectNameException& exception) {
            return all + text(exception.getMessage());
        }
    };
    for (const CIMObjectPath& path : paths) {
        SCOPED_TRACE(text(path.toString()));
        const CIMKeyBinding made(CIMName("r"), CIMValue(path));
        const CIMKeyBinding read(CIMName("r"), path.toString(), CIMKeyBinding::REFERENCE);
        EXPECT_TRUE(made == read);
        EXPECT_TRUE(read == made);
        EXPECT_EQ(holderText(made), holderText(read));
        EXPECT_EQ(text(made.getValue()), text(read.getValue()));
        const CIMKeyBinding again(CIMName("r"), CIMValue(path));
        EXPECT_TRUE(made == again);
        CIMKeyBinding changed(made);
        changed.setType(CIMKeyBinding::STRING);
        EXPECT_EQ(text(changed.getValue()), text(path.toString()));
        changed.setValue("new");
        EXPECT_EQ(text(changed.getValue()), "new");
        EXPECT_EQ(text(made.getValue()), text(path.toString()));
    }
}

TEST(CIMKeyBinding, OfAPathIsAnotherOneWhenItsValueIsSet) {
    const auto binding = [](const char* path) {
        return CIMKeyBinding(CIMName("r"), CIMValue(CIMObjectPath(path)));
    };
    CIMKeyBinding changed = binding("A.k=1");
    changed.setValue("A.k=2");
    EXPECT_TRUE(changed == binding("A.k=2"));
    EXPECT_FALSE(changed == binding("A.k=1"));
}

TEST(CIMKeyBinding, OfAPathStaysWhenThePathChanges) {
    CIMObjectPath path("A.k=1");
    const CIMKeyBinding binding(CIMName("r"), CIMValue(path));
    path.setClassName(CIMName("B"));
    Array<CIMKeyBinding> keys = path.getKeyBindings();
    keys[0].setValue("2");
    path.setKeyBindings(keys);
    EXPECT_EQ(text(path.toString()), "B.k=2");
    EXPECT_EQ(text(binding.getValue()), "A.k=1");
}

} // namespace
