#include "Throws.h"

#include <Pegasus/Common/OperationContext.h>

using namespace Pegasus;
using namespace apitest;

namespace {

AcceptLanguageList english() {
    AcceptLanguageList list;
    list.insert(LanguageTag("en"), 1.0F);
    return list;
}

String userIn(const OperationContext& context) {
    return IdentityContainer(context.get(IdentityContainer::NAME)).getUserName();
}

/// A container of a kind that the library does not know; counts those that are alive.
class Counted : public OperationContext::Container {
  public:
    explicit Counted(int& alive) : _alive(alive) { ++_alive; }
    Counted(const Counted& x) : OperationContext::Container(x), _alive(x._alive) { ++_alive; }
    Counted& operator=(const Counted&) = delete;
    ~Counted() override { --_alive; }
    String getName() const override { return "Counted"; }
    OperationContext::Container* clone() const override { return new Counted(*this); }
    void destroy() override { delete this; }

  private:
    int& _alive;
};

TEST(OperationContext, FindsContainersByTheirName) {
    OperationContext context;
    EXPECT_FALSE(context.contains(IdentityContainer::NAME));
    context.insert(IdentityContainer("alice"));
    context.insert(AcceptLanguageListContainer(english()));
    EXPECT_TRUE(context.contains(IdentityContainer::NAME));
    EXPECT_EQ(text(userIn(context)), "alice");
    const OperationContext::Container& container = context.get(IdentityContainer::NAME);
    EXPECT_NE(dynamic_cast<const IdentityContainer*>(&container), nullptr);
    EXPECT_EQ(text(container.getName()), "IdentityContainer");
    EXPECT_FALSE(context.contains("identitycontainer"));
}

TEST(OperationContext, SaysWhatIsMissingOrThereAlready) {
    OperationContext context;
    const IdentityContainer alice("alice");
    EXPECT_TRUE(throws<Exception>([&] { context.get("Nothing"); }, "object not found"));
    EXPECT_TRUE(throws<Exception>([&] { context.remove("Nothing"); }, "object not found"));
    EXPECT_TRUE(throws<Exception>([&] { context.set(alice); }, "object not found"));
    context.insert(alice);
    EXPECT_TRUE(throws<Exception>([&] { context.insert(IdentityContainer("bob")); },
                                  "object already exists."));
    EXPECT_EQ(text(userIn(context)), "alice");
}

TEST(OperationContext, ReplacesRemovesAndClears) {
    OperationContext context;
    context.insert(IdentityContainer("alice"));
    context.insert(TimeoutContainer(100));
    context.set(IdentityContainer("bob"));
    EXPECT_EQ(text(userIn(context)), "bob");
    context.remove(IdentityContainer::NAME);
    EXPECT_FALSE(context.contains(IdentityContainer::NAME));
    EXPECT_TRUE(context.contains(TimeoutContainer::NAME));
    context.clear();
    EXPECT_FALSE(context.contains(TimeoutContainer::NAME));
}

TEST(OperationContext, IsAValueWhoseCopiesAreIndependent) {
    OperationContext context;
    context.insert(IdentityContainer("alice"));
    OperationContext copy(context);
    copy.set(IdentityContainer("bob"));
    EXPECT_EQ(text(userIn(context)), "alice");
    const OperationContext& self = copy;
    copy = self;
    EXPECT_EQ(text(userIn(copy)), "bob");
    copy = context;
    context.clear();
    EXPECT_EQ(text(userIn(copy)), "alice");
}

TEST(OperationContext, TakesContainersOfAnyKindAndDestroysItsCopies) {
    int alive = 0;
    {
        OperationContext context;
        context.insert(Counted(alive));
        EXPECT_EQ(alive, 1);
        {
            const OperationContext copy(context);
            EXPECT_EQ(alive, 2);
            EXPECT_NE(dynamic_cast<const Counted*>(&copy.get("Counted")), nullptr);
        }
        EXPECT_EQ(alive, 1);
        context.set(Counted(alive));
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(Containers, ArePublishedUnderTheirClassNames) {
    const struct {
        const String& name;
        const char* expected;
    } cases[] = {
        {IdentityContainer::NAME, "IdentityContainer"},
        {AcceptLanguageListContainer::NAME, "AcceptLanguageListContainer"},
        {ContentLanguageListContainer::NAME, "ContentLanguageListContainer"},
        {TimeoutContainer::NAME, "TimeoutContainer"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(c.name), c.expected);
}

/// What comes out of a context in which `container` was put.
template <class Container>
Container throughContext(const Container& container) {
    OperationContext context;
    context.insert(container);
    return Container(context.get(Container::NAME));
}

TEST(Containers, ComeOutOfAContextAsTheyWentIn) {
    EXPECT_EQ(text(throughContext(IdentityContainer("alice")).getUserName()), "alice");
    EXPECT_TRUE(throughContext(AcceptLanguageListContainer(english())).getLanguages() == english());
    ContentLanguageList french;
    french.append(LanguageTag("fr"));
    EXPECT_TRUE(throughContext(ContentLanguageListContainer(french)).getLanguages() == french);
    EXPECT_EQ(throughContext(TimeoutContainer(20000)).getTimeOut(), 20000U);
}

TEST(Containers, AreMadeOnlyFromTheirOwnKind) {
    const IdentityContainer identity("alice");
    const OperationContext::Container& container = identity;
    EXPECT_TRUE(throwsDynamicCastFailed([&] { AcceptLanguageListContainer other(container); }));
    EXPECT_TRUE(throwsDynamicCastFailed([&] { TimeoutContainer other(container); }));
    EXPECT_EQ(text(IdentityContainer(container).getUserName()), "alice");
}

TEST(Containers, CanBeAssigned) {
    IdentityContainer identity("alice");
    identity = IdentityContainer("bob");
    EXPECT_EQ(text(identity.getUserName()), "bob");
}

} // namespace
