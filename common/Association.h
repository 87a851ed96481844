// Association instances: two references, built directly and not from a class definition.
//
// Every association class of the module is stated once here; the families name it and its ends.
#pragma once

#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/ResponseHandler.h>

#include <optional>

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

/// An association between two objects. The same object can stand for one association after another:
/// its names, and the key of an end that does not change, are made only once.
class Association {
  public:
    /// Its path is in `nameSpace`, its ends are empty.
    Association(const AssociationClass& cimClass, const Pegasus::String& nameSpace);

    Association& from(const Pegasus::CIMObjectPath& first);
    Association& to(const Pegasus::CIMObjectPath& second);
    /// Declares the class of the second reference, where the association class leaves it open. A
    /// null name leaves the reference without one.
    Association& secondIs(const Pegasus::CIMName& referenceClass);
    /// Puts the second reference before the first among the properties; the keys stay as they are.
    Association& secondPropertyFirst();

    /// The association's own path: the local host name, the namespace, and the ends as keys. The
    /// library refuses a reference key without a value, so an end without a path stands as a string
    /// key with an empty value.
    Pegasus::CIMObjectPath path();
    /// The two reference properties, without a path.
    Pegasus::CIMInstance instance() const;
    /// The two reference properties, with path().
    Pegasus::CIMInstance instanceWithPath();

  private:
    struct End {
        explicit End(const ReferenceRole& declared);
        void set(const Pegasus::CIMObjectPath& end);
        const Pegasus::CIMKeyBinding& asKey();
        Pegasus::CIMProperty asProperty() const;

        Pegasus::CIMName role;
        Pegasus::CIMName referenceClass;
        Pegasus::CIMObjectPath path;
        std::optional<Pegasus::CIMKeyBinding> key; ///< once it was asked for
    };

    Pegasus::CIMName _name;
    Pegasus::String _nameSpace;
    End _first;
    End _second;
    bool _secondPropertyFirst = false;
};

/// How a key is treated whose value is not an object path.
enum class NoPath {
    IsAnError,    ///< what the library's path parser throws passes
    IsAnEmptyEnd, ///< as is the one that Association::path() writes for an empty end
};

/// The association that `path` names, without a path, whether it exists or not. Its ends are those
/// of the keys, moved to the local host and into the namespace of `path`. A missing key leaves its
/// end empty, of several with one name the last counts. Where the association class leaves the
/// second reference's class open, it is that of the end that the client named, and none for an
/// empty end.
Pegasus::CIMInstance namedInstance(const AssociationClass& cimClass,
                                   const Pegasus::CIMObjectPath& path, NoPath noPath);

/// Traces `startTrace`, delivers the association of `cimClass` that `path` names, with `path` as
/// its path, and traces `exitTrace`. A missing key, or one that holds no object path, leaves its
/// end empty: clients can get every path that the module delivers, also those without an end.
Pegasus::CIMInstance echo(const AssociationClass& cimClass, const Pegasus::CIMObjectPath& path,
                          Pegasus::InstanceResponseHandler& handler, const char* startTrace,
                          const char* exitTrace);

// Delivery, in the form that the handler takes: the path, the instance, the instance as an object.

void deliver(Pegasus::ObjectPathResponseHandler& handler, Association& association);
void deliver(Pegasus::InstanceResponseHandler& handler, Association& association);
void deliver(Pegasus::ObjectResponseHandler& handler, Association& association);
/// The instance when `instances`, else the path. A handler of the other kind: std::bad_cast.
void deliver(Pegasus::ResponseHandler& handler, bool instances, Association& association);

} // namespace serverprofile
