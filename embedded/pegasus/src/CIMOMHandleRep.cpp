#include "HandleFactory.h"

#include <Pegasus/Provider/ProviderException.h>

#include <utility>

namespace Pegasus {

namespace {

[[noreturn]] void notOffered(const char* operation) {
    throw CIMNotSupportedException(String("this host does not offer ") + operation);
}

std::function<std::shared_ptr<CIMOMHandleRep>()>& handleFactory() {
    static std::function<std::shared_ptr<CIMOMHandleRep>()> factory;
    return factory;
}

} // namespace

CIMClass CIMOMHandleRep::getClass(const OperationContext&, const CIMNamespaceName&, const CIMName&,
                                  Boolean, Boolean, Boolean, const CIMPropertyList&) {
    notOffered("getClass");
}

Array<CIMClass> CIMOMHandleRep::enumerateClasses(const OperationContext&, const CIMNamespaceName&,
                                                 const CIMName&, Boolean, Boolean, Boolean,
                                                 Boolean) {
    notOffered("enumerateClasses");
}

Array<CIMName> CIMOMHandleRep::enumerateClassNames(const OperationContext&, const CIMNamespaceName&,
                                                   const CIMName&, Boolean) {
    notOffered("enumerateClassNames");
}

void CIMOMHandleRep::createClass(const OperationContext&, const CIMNamespaceName&,
                                 const CIMClass&) {
    notOffered("createClass");
}

void CIMOMHandleRep::modifyClass(const OperationContext&, const CIMNamespaceName&,
                                 const CIMClass&) {
    notOffered("modifyClass");
}

void CIMOMHandleRep::deleteClass(const OperationContext&, const CIMNamespaceName&, const CIMName&) {
    notOffered("deleteClass");
}

CIMInstance CIMOMHandleRep::getInstance(const OperationContext&, const CIMNamespaceName&,
                                        const CIMObjectPath&, Boolean, Boolean, Boolean,
                                        const CIMPropertyList&) {
    notOffered("getInstance");
}

Array<CIMInstance> CIMOMHandleRep::enumerateInstances(const OperationContext&,
                                                      const CIMNamespaceName&, const CIMName&,
                                                      Boolean, Boolean, Boolean, Boolean,
                                                      const CIMPropertyList&) {
    notOffered("enumerateInstances");
}

Array<CIMObjectPath> CIMOMHandleRep::enumerateInstanceNames(const OperationContext&,
                                                            const CIMNamespaceName&,
                                                            const CIMName&) {
    notOffered("enumerateInstanceNames");
}

CIMObjectPath CIMOMHandleRep::createInstance(const OperationContext&, const CIMNamespaceName&,
                                             const CIMInstance&) {
    notOffered("createInstance");
}

void CIMOMHandleRep::modifyInstance(const OperationContext&, const CIMNamespaceName&,
                                    const CIMInstance&, Boolean, const CIMPropertyList&) {
    notOffered("modifyInstance");
}

void CIMOMHandleRep::deleteInstance(const OperationContext&, const CIMNamespaceName&,
                                    const CIMObjectPath&) {
    notOffered("deleteInstance");
}

Array<CIMObject> CIMOMHandleRep::execQuery(const OperationContext&, const CIMNamespaceName&,
                                           const String&, const String&) {
    notOffered("execQuery");
}

Array<CIMObject> CIMOMHandleRep::associators(const OperationContext&, const CIMNamespaceName&,
                                             const CIMObjectPath&, const CIMName&, const CIMName&,
                                             const String&, const String&, Boolean, Boolean,
                                             const CIMPropertyList&) {
    notOffered("associators");
}

Array<CIMObjectPath> CIMOMHandleRep::associatorNames(const OperationContext&,
                                                     const CIMNamespaceName&, const CIMObjectPath&,
                                                     const CIMName&, const CIMName&, const String&,
                                                     const String&) {
    notOffered("associatorNames");
}

Array<CIMObject> CIMOMHandleRep::references(const OperationContext&, const CIMNamespaceName&,
                                            const CIMObjectPath&, const CIMName&, const String&,
                                            Boolean, Boolean, const CIMPropertyList&) {
    notOffered("references");
}

Array<CIMObjectPath> CIMOMHandleRep::referenceNames(const OperationContext&,
                                                    const CIMNamespaceName&, const CIMObjectPath&,
                                                    const CIMName&, const String&) {
    notOffered("referenceNames");
}

CIMValue CIMOMHandleRep::getProperty(const OperationContext&, const CIMNamespaceName&,
                                     const CIMObjectPath&, const CIMName&) {
    notOffered("getProperty");
}

void CIMOMHandleRep::setProperty(const OperationContext&, const CIMNamespaceName&,
                                 const CIMObjectPath&, const CIMName&, const CIMValue&) {
    notOffered("setProperty");
}

CIMValue CIMOMHandleRep::invokeMethod(const OperationContext&, const CIMNamespaceName&,
                                      const CIMObjectPath&, const CIMName&,
                                      const Array<CIMParamValue>&, Array<CIMParamValue>&) {
    notOffered("invokeMethod");
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

} // namespace hosting
} // namespace Pegasus
