#include "HandleFactory.h"

#include <Pegasus/Provider/ProviderException.h>

#include <utility>

namespace Pegasus {

namespace {

std::function<std::shared_ptr<CIMOMHandleRep>()>& handleFactory() {
    static std::function<std::shared_ptr<CIMOMHandleRep>()> factory;
    return factory;
}

} // namespace

embedding::Answer CIMOMHandleRep::perform(const embedding::Operation& operation) {
    embedding::refuseOperation(embedding::operationName(operation.kind));
}

void CIMOMHandleRep::disallowProviderUnload() {
}

void CIMOMHandleRep::allowProviderUnload() {
}

namespace embedding {

void setHandleFactory(std::function<std::shared_ptr<CIMOMHandleRep>()> factory) {
    handleFactory() = std::move(factory);
}

std::shared_ptr<CIMOMHandleRep> makeHandleRep() {
    const auto& factory = handleFactory();
    return factory ? factory() : nullptr;
}

void refuseOperation(const char* operation) {
    throw CIMNotSupportedException(String("this host does not offer ") + operation);
}

} // namespace embedding
} // namespace Pegasus
