// CIM_SubProfileRequiresProfile: enumerated from the table of pairs, got by echo.
#include "common/ServedClasses.h"
#include "profiles/ProfileAssociations.h"

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

void ServerProfileProvider::_getSubprofileRequiresProfileInstanceNames(String, PathHandler& handler,
                                                                       const String& nameSpace) {
    deliverRequirements(
        handler, {*this, nameSpace}, [](const SubProfilePair&) { return true; });
}

void ServerProfileProvider::_getSubprofileRequiresProfileInstances(String, InstanceHandler& handler,
                                                                   const String& nameSpace) {
    deliverRequirements(
        handler, {*this, nameSpace}, [](const SubProfilePair&) { return true; });
}

// Any pair that the client names is echoed, in the table or not, as an instance without a path.
CIMInstance
ServerProfileProvider::_getSubprofileRequiresProfileInstance(const CIMObjectPath& instanceName,
                                                             InstanceHandler& handler) {
    CIMInstance echo = namedInstance(subProfileRequiresProfile, instanceName, NoPath::IsAnError);
    handler.deliver(echo);
    return echo;
}

constexpr ServedClass serverprofile::subProfileRequiresProfileRow =
    servedAssociation(subProfileRequiresProfile)
        .enumeratedBy<&ServerProfileProvider::_getSubprofileRequiresProfileInstanceNames,
                      &ServerProfileProvider::_getSubprofileRequiresProfileInstances>()
        .gotBy<&ServerProfileProvider::_getSubprofileRequiresProfileInstance>();

// Its superclass has no instances but these.
constexpr ServedClass serverprofile::referencedProfileRow = {"CIM_ReferencedProfile", nullptr};
