// ORVEX_ElementSoftwareIdentity: the firmware with every entry of the profile catalogue, enumerated
// without asking the server, got by echo.
#include "common/OwnObjects.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

void ServerProfileProvider::_getOrvexSPESIHelper(String, Handler& handler, const String& nameSpace,
                                                 bool instances) {
    trace(" Quil OrvexSPESIHelper - Start ");
    forEachImplemented({*this, nameSpace},
                       [&](Association& association) { deliver(handler, instances, association); });
}

CIMInstance ServerProfileProvider::_getOrvexSPESIInstance(const CIMObjectPath& path,
                                                          InstanceHandler& handler) {
    return echo(elementSoftwareIdentity, path, handler, "getOrvexSPESIInstance(): Start ",
                "getOrvexSpESI () - Exit ");
}

constexpr ServedClass serverprofile::elementSoftwareIdentityRow =
    servedAssociation(elementSoftwareIdentity)
        .enumeratedBy<&ServerProfileProvider::_getOrvexSPESIHelper>()
        .gotBy<&ServerProfileProvider::_getOrvexSPESIInstance>();
