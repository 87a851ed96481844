// Response handlers that remember what was delivered.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <functional>
#include <vector>

namespace testsupport {

/// `Base` is one of the three handlers that take objects, `Item` what it takes.
template <class Base, class Item>
class RecordingHandler : public Base {
  public:
    std::vector<Item> delivered;
    unsigned processingCalls = 0;
    unsigned completeCalls = 0;
    /// Called before a delivery is recorded, with the number of those before; may throw.
    std::function<void(std::size_t)> onDeliver;
    /// Called by complete(); may throw.
    std::function<void()> onComplete;

    void processing() override { ++processingCalls; }
    void complete() override {
        ++completeCalls;
        if (onComplete)
            onComplete();
    }
    void deliver(const Item& item) override {
        if (onDeliver)
            onDeliver(delivered.size());
        delivered.push_back(item);
    }
    void deliver(const Pegasus::Array<Item>& items) override {
        for (Pegasus::Uint32 i = 0; i < items.size(); ++i)
            deliver(items[i]);
    }
};

using InstanceRecorder = RecordingHandler<Pegasus::InstanceResponseHandler, Pegasus::CIMInstance>;
using PathRecorder = RecordingHandler<Pegasus::ObjectPathResponseHandler, Pegasus::CIMObjectPath>;
using ObjectRecorder = RecordingHandler<Pegasus::ObjectResponseHandler, Pegasus::CIMObject>;

} // namespace testsupport
