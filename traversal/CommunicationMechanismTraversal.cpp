// Traversals from a CIM-XML communication mechanism: to the object managers and to the host.
#include "common/Selection.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"
#include "traversal/ManagerEnds.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

constexpr int managers = 1;
constexpr int hosts = 2;
constexpr int all = 7; // the third bit has no use
constexpr SelectionRow selection[] = {
    {"CIM_CommMechanismForManager", managers},
    {"CIM_HostedAccessPoint", hosts},
};

constexpr const char* managersStep = " Quil CommMech ForMgr - 1 ";
constexpr const char* hostsStep = " Quil HostedAccessPoint assoc - 1 ";

template <class Handler>
void deliverFarEnds(const Request& request, int bits, Handler& handler) {
    if ((bits & managers) != 0) {
        trace(managersStep);
        deliverManagers(request, handler);
    }
    if ((bits & hosts) != 0) {
        trace(hostsStep);
        deliverHost(handler, request);
    }
}

template <class Handler>
void deliverAssociations(const Request& request, int bits, const CIMObjectPath& source,
                         Handler& handler) {
    if ((bits & managers) != 0) {
        trace(managersStep);
        deliverManagerAssociations(request, commMechanismForManager, source, handler);
    }
    if ((bits & hosts) != 0) {
        trace(hostsStep);
        const CIMObjectPath host = hostPath(request);
        deliver(handler, Association(hostedAccessPoint, request.nameSpace).from(host).to(source));
    }
}

} // namespace

void ServerProfileProvider::_getCimXmlCMAssociatorNames(String keyValue, Text assocClass,
                                                        Text resultClass, Text, Text,
                                                        PathHandler& handler,
                                                        const String& nameSpace) {
    trace(" Quil CimXmlCMAssociatorNames(): assoc class is ", assocClass);
    trace(" Quil CimXmlCMAssociatorNames(): result class is ", resultClass);
    deliverFarEnds({*this, nameSpace}, selectTraced(selection, assocClass, all, keyValue), handler);
}

void ServerProfileProvider::_getCimXmlCMAssociators(String keyValue, Text assocClass,
                                                    Text resultClass, Text, Text, bool, bool,
                                                    const CIMPropertyList&, ObjectHandler& handler,
                                                    const String& nameSpace) {
    trace(" Quil CimXmlCMAssociators(): assoc class is ", assocClass);
    trace(" Quil CimXmlCMAssociators(): result class is ", resultClass);
    deliverFarEnds({*this, nameSpace}, selectTraced(selection, assocClass, all, keyValue), handler);
}

// The other operation's name in its trace: on purpose.
void ServerProfileProvider::_getCimXmlCMReferenceNames(String keyValue, Text resultClass, Text,
                                                       PathHandler& handler,
                                                       const String& nameSpace,
                                                       const CIMObjectPath& objectName) {
    trace(" Quil CimXmlCMReferences(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, selectTraced(selection, resultClass, all, keyValue),
                        objectName, handler);
}

void ServerProfileProvider::_getCimXmlCMReferences(String keyValue, Text resultClass, Text, bool,
                                                   bool, const CIMPropertyList&,
                                                   ObjectHandler& handler, const String& nameSpace,
                                                   const CIMObjectPath& objectName) {
    trace(" Quil CimXmlCMReferences(): result class is ", resultClass);
    deliverAssociations({*this, nameSpace}, selectTraced(selection, resultClass, all, keyValue),
                        objectName, handler);
}

// Traversed only under its PG_ name: on purpose.
constexpr ServedClass serverprofile::cimXmlMechanismRow = {communicationMechanismClass, "Name"};

constexpr ServedClass serverprofile::pgCimXmlMechanismRow =
    ServedClass{"PG_CIMXMLCommunicationMechanism", "Name"}
        .traversedBy<&ServerProfileProvider::_getCimXmlCMAssociatorNames,
                     &ServerProfileProvider::_getCimXmlCMAssociators,
                     &ServerProfileProvider::_getCimXmlCMReferenceNames,
                     &ServerProfileProvider::_getCimXmlCMReferences>();
