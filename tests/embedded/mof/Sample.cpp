#include "Sample.h"

const std::string sampleText = R"mof(// Everything the reader knows, once.
#pragma locale ("en_US")
#pragma namespace ("root/cimv2")

Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);
QUALIFIER Values : string[], Scope(property, method, parameter), Flavor(EnableOverride,
    ToSubclass, Translatable);
Qualifier Schema : string = null, Scope(any);
Qualifier Ref : sint32 = -1, Scope(class, association, indication, qualifier, schema);
Qualifier Levels : uint8[3] = {1, 2, 3}, Scope(any), Flavor(Restricted);

/* A class with
   a property of each type **/
[Description("Two " "parts \"joined\" \x263A"), Schema(null), Values{"a", "b"} : ToSubclass
 DisableOverride]
class TST_Base as $base
{
    [Key, Ref(-5)] string Id;
    boolean Yes = TRUE;
    uint8 U8 = 101b;
    sint8 S8 = -017;
    uint16 U16 = 0xFFff;
    sint16 S16 = +12;
    uint32 U32;
    sint32 S32 = -0x1F;
    uint64 U64 = 18446744073709551615;
    sint64 S64 = 0;
    real32 R32 = 1.5e+3;
    real64 R64 = -.25;
    char16 C16 = '\'';
    datetime When = "20240102030405.000000+060";
    string Grüße = "größer";
    string Open[] = {"x", null};
    uint16 Sized[4] = {};
};

class TST_Derived : TST_Base
{
    TST_Base ref Other = null;
    uint32 Start();
    [Values{"OK", "Failed"}]
    string Call([Key] uint16 Number, string Texts[], TST_Base REF One, TST_Base REF Many[],
                datetime Times[2]);
    string Class;
    string Of;
};

instance of TST_Base as $one
{
    Id = "one" /* between */ "-and-only"; // after
    Yes = false;
    U8 = null;
    C16 = '\x41';
    Open = {"p", "q" "r", "s"};
    [Schema("x")] Sized = { };
};

[Schema("of an instance")]
Instance Of TST_Derived
{
    Other = $one;
    Class = "TST_Base.Id=\"one\"";
};
instance of TST_Empty {};
)mof";
