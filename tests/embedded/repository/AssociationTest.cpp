// Which association classes may touch an instance of a class.
#include "Fixture.h"

namespace embedded::repository {

namespace {

using Pegasus::CIMName;
using Strings = std::vector<std::string>;

class AssociationTest : public RepositoryTest {
  protected:
    AssociationTest() {
        load(R"(
class Top { [Key] string Id; };
class Source : Top {};
class Below : Source {};
class Aside { [Key] string Id; };
[Association, Abstract] class AnyLink { [Key] Top REF From; [Key] Aside REF To; };
[Association] class Link : AnyLink { [Key, Override("From")] Source REF From; };
[Association] class BelowLink : AnyLink { [Key, Override("From")] Below REF From; };
[Association] class AsideLink { [Key] Aside REF Left; [Key] Aside REF Right; };
class Plain : Aside {};
)");
    }

    Strings associations(const char* source, const CIMName& filter = {}) const {
        return texts(repository.view().associationClassNames(home, source, filter));
    }
};

TEST_F(AssociationTest, TakesTheSourceClassAndItsSubclasses) {
    EXPECT_EQ(associations("Source"), (Strings{"AnyLink", "Link"}));
    EXPECT_EQ(associations("Below"), (Strings{"AnyLink", "Link", "BelowLink"}));
}

TEST_F(AssociationTest, ReferencesToASubclassOfTheSourceDoNotTakeIt) {
    EXPECT_EQ(associations("Top"), (Strings{"AnyLink"}));
}

TEST_F(AssociationTest, InheritedReferencesCount) {
    EXPECT_EQ(associations("Aside"), (Strings{"AnyLink", "Link", "BelowLink", "AsideLink"}));
}

TEST_F(AssociationTest, AFilterNarrowsToAClassAndItsSubclasses) {
    EXPECT_EQ(associations("Below", "link"), (Strings{"Link"}));
    EXPECT_EQ(associations("Below", "AnyLink"), (Strings{"AnyLink", "Link", "BelowLink"}));
    EXPECT_EQ(associations("Below", "AsideLink"), Strings{});
}

TEST_F(AssociationTest, AFilterThatIsNoAssociationFindsNone) {
    EXPECT_EQ(associations("Below", "Plain"), Strings{});
}

TEST_F(AssociationTest, UnknownClassesAreInvalidParameters) {
    EXPECT_EQ(statusOf([&] { associations("NoSuch"); }), (Status{4, "NoSuch"}));
    EXPECT_EQ(statusOf([&] { associations("Below", "NoLink"); }), (Status{4, "NoLink"}));
    EXPECT_EQ(
        statusOf([&] { repository.view().associationClassNames("root/none", "Below", CIMName()); }),
        (Status{3, "root/none"}));
}

} // namespace
} // namespace embedded::repository
