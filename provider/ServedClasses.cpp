// Which classes the module serves, and by which key an object of each is named.
#include "common/Trace.h"
#include "provider/RequestKeys.h"
#include "provider/ServerProfileProvider.h"

#include <Pegasus/Provider/ProviderException.h>

#include <cstdio>

#include <strings.h>

PEGASUS_USING_PEGASUS;
using serverprofile::trace;

namespace {

const char* const servedClasses[] = {
    "CIM_RegisteredProfile",
    "CIM_RegisteredSubProfile",
    "CIM_ReferencedProfile",
    "CIM_SubProfileRequiresProfile",
    "ORVEX_ObjectManagerHost",
    "CIM_HostedService",
    "CIM_HostedAccessPoint",
    "CIM_ObjectManager",
    "CIM_CIMXMLCommunicationMechanism",
    "PG_CIMXMLCommunicationMechanism",
    "CIM_Namespace",
    "PG_Namespace",
    "CIM_ElementConformsToProfile",
    "CIM_NamespaceInManager",
    "CIM_CommMechanismForManager",
    "ORVEX_SoftwareIdentity",
    "ORVEX_ElementSoftwareIdentity",
};

/// For an association class, whose keys are its references: every key is accepted.
constexpr const char* anyKey = nullptr;

const struct {
    const char* className;
    const char* keyName;
} acceptedKeys[] = {
    {"CIM_RegisteredProfile", "InstanceID"},
    {"CIM_RegisteredSubProfile", "InstanceID"},
    {"CIM_ReferencedProfile", anyKey},
    {"CIM_SubProfileRequiresProfile", anyKey},
    {"CIM_ElementConformsToProfile", anyKey},
    {"ORVEX_ObjectManagerHost", "Name"},
    {"CIM_HostedService", anyKey},
    {"CIM_ObjectManager", "Name"},
    {"CIM_HostedAccessPoint", anyKey},
    {"CIM_CIMXMLCommunicationMechanism", "Name"},
    {"PG_CIMXMLCommunicationMechanism", "Name"},
    {"CIM_Namespace", "Name"},
    {"PG_Namespace", "Name"},
    {"CIM_NamespaceInManager", anyKey},
    {"CIM_CommMechanismForManager", anyKey},
    {"ORVEX_SoftwareIdentity", "InstanceID"},
    {"ORVEX_ElementSoftwareIdentity", anyKey},
};

} // namespace

bool ServerProfileProvider::_checkClass(CIMName& className) {
    const CString name = serverprofile::plain(className);
    for (const char* served : servedClasses)
        if (::strcasecmp(name, served) == 0)
            return true;
    trace("Quil _checkClass(): failed ");
    throw CIMNotSupportedException(String());
}

int ServerProfileProvider::_checkKey(const char* className, const char* keyName) {
    // These lines go through stdio and have their own form.
    std::fprintf(stdout, "ServerProfileProvider: checking key name %s -- %s \n", className,
                 keyName);
    std::fflush(stdout);
    for (const auto& row : acceptedKeys)
        if (::strcasecmp(className, row.className) == 0 &&
            (row.keyName == anyKey || ::strcasecmp(keyName, row.keyName) == 0))
            return 1;
    // "Serverprofile", and the tab: on purpose.
    std::fprintf(stdout, "\tServerprofileProvider: FAIL check key name %s -- %s \n", className,
                 keyName);
    std::fflush(stdout);
    return 0;
}
