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

hosting::Answer CIMOMHandleRep::perform(const hosting::Operation& operation) {
    hosting::refuseOperation(hosting::operationName(operation.kind));
}

void CIMOMHandleRep::disallowProviderUnload() {
}

void CIMOMHandleRep::allowProviderUnload() {
}

namespace hosting {

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

} // namespace hosting
} // namespace Pegasus
