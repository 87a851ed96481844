// Association instances: two references, built directly and not from a class definition.
//
// Every association class of the module is stated once here; the families name it and its ends.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/ResponseHandler.h>

namespace serverprofile {

/// A reference of an association class, and the class that the module declares for it.
struct ReferenceRole {
    const char* name;
    const char* referenceClass; ///< nullptr: it varies, see Association::secondIs()
};

/// An association class with its references in the order of its keys.
struct AssociationClass {
    const char* name;
    ReferenceRole first;
    ReferenceRole second;
};

constexpr AssociationClass subProfileRequiresProfile = {
    "CIM_SubProfileRequiresProfile",
    {"Antecedent", "CIM_RegisteredProfile"},
    {"Dependent", "CIM_RegisteredSubProfile"},
};
constexpr AssociationClass elementConformsToProfile = {
    "CIM_ElementConformsToProfile",
    {"ConformantStandard", "CIM_RegisteredProfile"},
    {"ManagedElement", nullptr},
};
constexpr AssociationClass commMechanismForManager = {
    "CIM_CommMechanismForManager",
    {"Antecedent", "CIM_ObjectManager"},
    {"Dependent", "PG_CIMXMLCommunicationMechanism"},
};
constexpr AssociationClass namespaceInManager = {
    "CIM_NamespaceInManager",
    {"Antecedent", "CIM_ObjectManager"},
    {"Dependent", "PG_Namespace"},
};
constexpr AssociationClass hostedAccessPoint = {
    "CIM_HostedAccessPoint",
    {"Antecedent", "ORVEX_ObjectManagerHost"},
    {"Dependent", "PG_CIMXMLCommunicationMechanism"},
};
constexpr AssociationClass hostedService = {
    "CIM_HostedService",
    {"Antecedent", "ORVEX_ObjectManagerHost"},
    {"Dependent", "CIM_ObjectManager"},
};
constexpr AssociationClass elementSoftwareIdentity = {
    "ORVEX_ElementSoftwareIdentity",
    {"Antecedent", "ORVEX_SoftwareIdentity"},
    {"Dependent", nullptr},
};

/// One association between two objects.
class Association {
  public:
    Association(const AssociationClass& cimClass, const Pegasus::CIMObjectPath& first,
                const Pegasus::CIMObjectPath& second);

    const Pegasus::CIMObjectPath& second() const { return _second; }

    /// Declares the class of the second reference, where the association class leaves it open. A
    /// null name leaves the reference without one.
    Association& secondIs(const Pegasus::CIMName& referenceClass);
    /// Puts the second reference before the first among the properties; the keys stay as they are.
    Association& secondPropertyFirst();

    /// The association's own path: the local host name, `nameSpace`, and the ends as keys. The
    /// library refuses a reference key without a value, so an end without a path stands as a string
    /// key with an empty value.
    Pegasus::CIMObjectPath path(const Pegasus::String& nameSpace) const;
    /// The two reference properties, without a path.
    Pegasus::CIMInstance instance() const;
    /// The two reference properties, with path(nameSpace).
    Pegasus::CIMInstance instance(const Pegasus::String& nameSpace) const;

  private:
    const AssociationClass& _class;
    Pegasus::CIMObjectPath _first;
    Pegasus::CIMObjectPath _second;
    Pegasus::CIMName _secondClass;
    bool _secondPropertyFirst = false;
};

/// What a key is whose value is no object path.
enum class NoPath {
    IsAnError,    ///< what the library's path parser throws passes
    IsAnEmptyEnd, ///< as is the one that Association::path() writes for an empty end
};

/// The association that `path` names, whether there is one or not: its ends are those of the keys,
/// put on the local host and into the namespace of `path`. A missing key leaves its end empty, of
/// several with one name the last counts.
Association namedAssociation(const AssociationClass& cimClass, const Pegasus::CIMObjectPath& path,
                             NoPath noPath);

// Delivery, in the form that the handler takes: the path, the instance, the instance as an object.

void deliver(Pegasus::ObjectPathResponseHandler& handler, const Association& association,
             const Pegasus::String& nameSpace);
void deliver(Pegasus::InstanceResponseHandler& handler, const Association& association,
             const Pegasus::String& nameSpace);
void deliver(Pegasus::ObjectResponseHandler& handler, const Association& association,
             const Pegasus::String& nameSpace);
/// The instance when `instances`, else the path. A handler of the other kind: std::bad_cast.
void deliver(Pegasus::ResponseHandler& handler, bool instances, const Association& association,
             const Pegasus::String& nameSpace);

} // namespace serverprofile
