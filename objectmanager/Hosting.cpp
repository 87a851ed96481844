// CIM_HostedAccessPoint and CIM_HostedService: the host with the server's communication mechanisms
// and its object manager, enumerated by asking the server, got by echo.
#include "common/OwnObjects.h"
#include "common/ReadBack.h"
#include "common/ServedClasses.h"
#include "common/Trace.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

void ServerProfileProvider::_getOrvexSPHostedAccessPointHelper(String, Handler& handler,
                                                               const String& nameSpace,
                                                               bool instances) {
    trace(" Quil OrvexSPHostedAccessPointHelper - Start ");
    const CIMObjectPath host = hostPath({*this, nameSpace});
    Array<CIMObjectPath> mechanisms;
    guarded(ReadBack(_cimomHandle, nameSpace), mechanisms, communicationMechanismClass,
            {" Quil ni OrvexSPHostedAccessPointHelper:EXCEPTION for "
             "CIM_CIMXMLCommunicationMechanism "});
    Association hosted(hostedAccessPoint, nameSpace);
    hosted.from(host);
    for (Uint32 i = 0; i < mechanisms.size(); ++i)
        deliver(handler, instances, hosted.to(mechanisms[i]));
}

// Unlike the access points, there is always one hosted service: on purpose.
void ServerProfileProvider::_getOrvexSPHostedServiceHelper(String, Handler& handler,
                                                           const String& nameSpace,
                                                           bool instances) {
    trace(" Quil OrvexSPHostedServiceHelper - Start ");
    Array<CIMObjectPath> managers;
    guarded(ReadBack(_cimomHandle, nameSpace), managers, objectManagerClass,
            {" Quil ni OrvexSPHostedServiceHelper:EXCEPTION for CIM_ObjectManager "});
    const CIMObjectPath manager = firstOf(managers);
    const CIMObjectPath host = hostPath({*this, nameSpace});
    deliver(handler, instances, Association(hostedService, nameSpace).from(host).to(manager));
}

// "SP" and "Sp": on purpose.

CIMInstance ServerProfileProvider::_getOrvexSPHostedAccessPointInstance(const CIMObjectPath& path,
                                                                        InstanceHandler& handler) {
    return echo(hostedAccessPoint, path, handler, "getOrvexSPHostedAccessPointInstance(): Start ",
                "getOrvexSpHostedAccessPointInstance () - Exit ");
}

CIMInstance ServerProfileProvider::_getOrvexSPHostedServiceInstance(const CIMObjectPath& path,
                                                                    InstanceHandler& handler) {
    return echo(hostedService, path, handler, "getOrvexSPHostedServiceInstance(): Start ",
                "getOrvexSpHostedServiceInstance () - Exit ");
}

constexpr ServedClass serverprofile::hostedAccessPointRow =
    servedAssociation(hostedAccessPoint)
        .enumeratedBy<&ServerProfileProvider::_getOrvexSPHostedAccessPointHelper>()
        .gotBy<&ServerProfileProvider::_getOrvexSPHostedAccessPointInstance>();

constexpr ServedClass serverprofile::hostedServiceRow =
    servedAssociation(hostedService)
        .enumeratedBy<&ServerProfileProvider::_getOrvexSPHostedServiceHelper>()
        .gotBy<&ServerProfileProvider::_getOrvexSPHostedServiceInstance>();
