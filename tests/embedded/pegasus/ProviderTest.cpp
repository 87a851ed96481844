// Providers, handlers and exceptions, as a module uses them.
#include "Throws.h"

#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/ProviderException.h>

#include <memory>
#include <type_traits>

using namespace Pegasus;
using namespace apitest;

namespace {

/// Keeps what is delivered to a handler of things of type T.
template <class Handler, class T>
class Sink : public Handler {
  public:
    void processing() override { events += "p"; }
    void complete() override { events += "c"; }
    void deliver(const T& thing) override {
        events += "1";
        delivered.append(thing);
    }
    void deliver(const Array<T>& things) override {
        events += "n";
        delivered.appendArray(things);
    }
    using ResponseHandler::getContext;

    std::string events;
    Array<T> delivered;
};

using InstanceSink = Sink<InstanceResponseHandler, CIMInstance>;
using PathSink = Sink<ObjectPathResponseHandler, CIMObjectPath>;
using ObjectSink = Sink<ObjectResponseHandler, CIMObject>;

/// A provider of one instance, which is associated with itself.
class SelfProvider : public CIMInstanceProvider, public CIMAssociationProvider {
  public:
    explicit SelfProvider(bool& terminated) : _terminated(terminated) {}

    void initialize(CIMOMHandle&) override {}
    void terminate() override {
        _terminated = true;
        delete this;
    }

    void getInstance(const OperationContext&, const CIMObjectPath& path, const Boolean,
                     const Boolean, const CIMPropertyList&,
                     InstanceResponseHandler& handler) override {
        handler.processing();
        handler.deliver(CIMInstance(path.getClassName()));
        handler.complete();
    }
    void enumerateInstances(const OperationContext&, const CIMObjectPath& path, const Boolean,
                            const Boolean, const CIMPropertyList&,
                            InstanceResponseHandler& handler) override {
        handler.deliver(Array<CIMInstance>(2, CIMInstance(path.getClassName())));
        handler.complete();
    }
    void enumerateInstanceNames(const OperationContext&, const CIMObjectPath& path,
                                ObjectPathResponseHandler& handler) override {
        handler.deliver(path);
        handler.deliver(Array<CIMObjectPath>(2, path));
    }
    void modifyInstance(const OperationContext&, const CIMObjectPath&, const CIMInstance&,
                        const Boolean, const CIMPropertyList&, ResponseHandler& handler) override {
        handler.complete();
    }
    void createInstance(const OperationContext&, const CIMObjectPath& path, const CIMInstance&,
                        ObjectPathResponseHandler& handler) override {
        handler.deliver(path);
    }
    void deleteInstance(const OperationContext&, const CIMObjectPath&, ResponseHandler&) override {
        throw CIMNotSupportedException("");
    }
    void associators(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                     const CIMName&, const String&, const String&, const Boolean, const Boolean,
                     const CIMPropertyList&, ObjectResponseHandler& handler) override {
        handler.deliver(CIMInstance(path.getClassName()));
    }
    void associatorNames(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                         const CIMName&, const String&, const String&,
                         ObjectPathResponseHandler& handler) override {
        handler.deliver(path);
    }
    void references(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                    const String&, const Boolean, const Boolean, const CIMPropertyList&,
                    ObjectResponseHandler& handler) override {
        handler.deliver(CIMInstance(path.getClassName()));
        handler.deliver(Array<CIMObject>(1, CIMClass(path.getClassName())));
    }
    void referenceNames(const OperationContext&, const CIMObjectPath& path, const CIMName&,
                        const String&, ObjectPathResponseHandler& handler) override {
        handler.deliver(path);
    }

  private:
    bool& _terminated;
};

const CIMObjectPath path("//host/root/cimv2:Disk.Id=1");

struct TheProvider {
    bool terminated = false;
    CIMProvider* base = new SelfProvider(terminated);
    OperationContext context;

    ~TheProvider() { base->terminate(); }
    CIMInstanceProvider& instances() { return dynamic_cast<CIMInstanceProvider&>(*base); }
    CIMAssociationProvider& associations() { return dynamic_cast<CIMAssociationProvider&>(*base); }
};

TEST(Providers, AreReachedFromTheirCommonBase) {
    TheProvider provider;
    EXPECT_NE(dynamic_cast<CIMInstanceProvider*>(provider.base), nullptr);
    EXPECT_NE(dynamic_cast<CIMAssociationProvider*>(provider.base), nullptr);
    // One base for both, so that the interfaces lead to each other and back.
    CIMAssociationProvider& other = dynamic_cast<CIMAssociationProvider&>(provider.instances());
    EXPECT_EQ(static_cast<CIMProvider*>(&other), provider.base);
}

TEST(Providers, MayDeleteThemselvesInTerminate) {
    bool terminated = false;
    CIMProvider* provider = new SelfProvider(terminated);
    provider->terminate();
    EXPECT_TRUE(terminated);
}

TEST(Providers, ImplementExactlyTheOperationsOfTheirInterface) {
    EXPECT_TRUE(std::is_abstract<CIMProvider>::value);
    EXPECT_TRUE(std::is_abstract<CIMInstanceProvider>::value);
    EXPECT_TRUE(std::is_abstract<CIMAssociationProvider>::value);
    EXPECT_FALSE(std::is_abstract<SelfProvider>::value);
}

TEST(Providers, DeliverInstances) {
    TheProvider provider;
    InstanceSink sink;
    provider.instances().getInstance(provider.context, path, true, true, CIMPropertyList(), sink);
    EXPECT_EQ(sink.events, "p1c");
    provider.instances().enumerateInstances(provider.context, path, true, true, CIMPropertyList(),
                                            sink);
    EXPECT_EQ(sink.events, "p1cnc");
    EXPECT_EQ(sink.delivered.size(), 3U);
    provider.instances().modifyInstance(provider.context, path, CIMInstance("Disk"), true,
                                        CIMPropertyList(), sink);
    EXPECT_EQ(sink.events, "p1cncc");
}

TEST(Providers, DeliverPaths) {
    TheProvider provider;
    PathSink sink;
    provider.instances().enumerateInstanceNames(provider.context, path, sink);
    provider.instances().createInstance(provider.context, path, CIMInstance("Disk"), sink);
    provider.associations().associatorNames(provider.context, path, CIMName(), CIMName(), "", "",
                                            sink);
    provider.associations().referenceNames(provider.context, path, CIMName(), "", sink);
    EXPECT_EQ(sink.events, "1n111");
    ASSERT_EQ(sink.delivered.size(), 6U);
    EXPECT_TRUE(sink.delivered[5] == path);
}

TEST(Providers, DeliverInstancesAndClassesAsObjects) {
    TheProvider provider;
    ObjectSink sink;
    const CIMPropertyList all;
    provider.associations().associators(provider.context, path, CIMName(), CIMName(), "", "", true,
                                        true, all, sink);
    provider.associations().references(provider.context, path, CIMName(), "", true, true, all,
                                       sink);
    EXPECT_EQ(sink.events, "11n");
    ASSERT_EQ(sink.delivered.size(), 3U);
    EXPECT_TRUE(sink.delivered[0].isInstance());
    EXPECT_TRUE(sink.delivered[2].isClass());
}

TEST(ResponseHandler, KeepsTheContextOfTheResponse) {
    InstanceSink sink;
    EXPECT_FALSE(sink.getContext().contains(TimeoutContainer::NAME));
    OperationContext context;
    context.insert(TimeoutContainer(5));
    ResponseHandler& handler = sink;
    handler.setContext(context);
    EXPECT_TRUE(sink.getContext().contains(TimeoutContainer::NAME));
}

template <class Thrown>
void expectStatus(CIMStatusCode code) {
    EXPECT_TRUE((std::is_base_of<CIMOperationFailedException, Thrown>::value));
    for (const std::string message : {"", "what went wrong"}) {
        try {
            throw Thrown(String(message.c_str()));
        } catch (const CIMException& exception) {
            EXPECT_EQ(exception.getCode(), code);
            EXPECT_EQ(text(exception.getMessage()), message);
        }
    }
}

TEST(ProviderExceptions, AreCIMExceptionsWithTheirCodeAndTheMessageAsGiven) {
    expectStatus<CIMOperationFailedException>(CIM_ERR_FAILED);
    expectStatus<CIMAccessDeniedException>(CIM_ERR_ACCESS_DENIED);
    expectStatus<CIMInvalidParameterException>(CIM_ERR_INVALID_PARAMETER);
    expectStatus<CIMObjectNotFoundException>(CIM_ERR_NOT_FOUND);
    expectStatus<CIMNotSupportedException>(CIM_ERR_NOT_SUPPORTED);
    expectStatus<CIMObjectAlreadyExistsException>(CIM_ERR_ALREADY_EXISTS);
    expectStatus<CIMPropertyNotFoundException>(CIM_ERR_NO_SUCH_PROPERTY);
    expectStatus<CIMMethodNotFoundException>(CIM_ERR_METHOD_NOT_FOUND);
}

TEST(ProviderExceptions, AreNoStandardExceptions) {
    EXPECT_FALSE((std::is_base_of<std::exception, CIMException>::value));
}

} // namespace
