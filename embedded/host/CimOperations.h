// The operations of a CIM server (DSP0200 clause 5.3.2) as its protocol side calls them.
// host::Router answers them; tests answer them with what they need.
#pragma once

#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/CIMQualifierDecl.h>
#include <Pegasus/Common/CIMValue.h>

namespace embedded::host {

/// What a client's request brings along besides its parameters.
struct Caller {
    Pegasus::String userName; ///< empty: not authenticated
};

/// Objects, and from how many legs (providers, repository) they were gathered. A reader of the
/// wire can tell: an empty answer of one leg has no IRETURNVALUE, one of several has an empty one.
template <class T>
struct Answer {
    Pegasus::Array<T> objects;
    unsigned legs = 1;
};

/// Every operation throws Pegasus::CIMException with the status and the message that the client
/// is to see, and nothing else. A null CIMName or an empty String stands for a filter that the
/// client left out. Objects come as their provider gave them: includeQualifiers,
/// includeClassOrigin and propertyList are applied when they are written out, not here, unless an
/// operation says otherwise.
///
/// An association operation whose `objectName` has no keys asks about its class, whether the client
/// wrote a CLASSNAME or an INSTANCENAME. No provider is asked; the answers are classes, to which
/// the flags and the property list are applied here, as getClass() does without localOnly.
///
/// Thread-safety: all operations may be called from several threads at once.
class CimOperations {
  public:
    virtual ~CimOperations() = default;

    /// Applies localOnly, includeQualifiers, includeClassOrigin and propertyList.
    virtual Pegasus::CIMClass getClass(const Caller& caller,
                                       const Pegasus::CIMNamespaceName& nameSpace,
                                       const Pegasus::CIMName& className, bool localOnly,
                                       bool includeQualifiers, bool includeClassOrigin,
                                       const Pegasus::CIMPropertyList& propertyList) = 0;
    /// `className` null: from the root of the inheritance trees. Applies its flags.
    virtual Pegasus::Array<Pegasus::CIMClass>
    enumerateClasses(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                     const Pegasus::CIMName& className, bool deepInheritance, bool localOnly,
                     bool includeQualifiers, bool includeClassOrigin) = 0;
    virtual Pegasus::Array<Pegasus::CIMName>
    enumerateClassNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                        const Pegasus::CIMName& className, bool deepInheritance) = 0;

    virtual Pegasus::CIMInstance getInstance(const Caller& caller,
                                             const Pegasus::CIMNamespaceName& nameSpace,
                                             const Pegasus::CIMObjectPath& instanceName,
                                             bool includeQualifiers, bool includeClassOrigin,
                                             const Pegasus::CIMPropertyList& propertyList) = 0;
    virtual Answer<Pegasus::CIMInstance>
    enumerateInstances(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                       const Pegasus::CIMName& className, bool deepInheritance,
                       bool includeQualifiers, bool includeClassOrigin,
                       const Pegasus::CIMPropertyList& propertyList) = 0;
    virtual Answer<Pegasus::CIMObjectPath>
    enumerateInstanceNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                           const Pegasus::CIMName& className) = 0;
    virtual Pegasus::CIMObjectPath createInstance(const Caller& caller,
                                                  const Pegasus::CIMNamespaceName& nameSpace,
                                                  const Pegasus::CIMInstance& newInstance) = 0;
    virtual void modifyInstance(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                                const Pegasus::CIMInstance& modifiedInstance,
                                bool includeQualifiers,
                                const Pegasus::CIMPropertyList& propertyList) = 0;
    virtual void deleteInstance(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                                const Pegasus::CIMObjectPath& instanceName) = 0;
    virtual Pegasus::CIMValue getProperty(const Caller& caller,
                                          const Pegasus::CIMNamespaceName& nameSpace,
                                          const Pegasus::CIMObjectPath& instanceName,
                                          const Pegasus::CIMName& propertyName) = 0;

    virtual Answer<Pegasus::CIMObject>
    associators(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                const Pegasus::String& resultRole, bool includeQualifiers, bool includeClassOrigin,
                const Pegasus::CIMPropertyList& propertyList) = 0;
    virtual Answer<Pegasus::CIMObjectPath>
    associatorNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                    const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& assocClass,
                    const Pegasus::CIMName& resultClass, const Pegasus::String& role,
                    const Pegasus::String& resultRole) = 0;
    virtual Answer<Pegasus::CIMObject>
    references(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
               const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
               const Pegasus::String& role, bool includeQualifiers, bool includeClassOrigin,
               const Pegasus::CIMPropertyList& propertyList) = 0;
    virtual Answer<Pegasus::CIMObjectPath>
    referenceNames(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace,
                   const Pegasus::CIMObjectPath& objectName, const Pegasus::CIMName& resultClass,
                   const Pegasus::String& role) = 0;

    virtual Pegasus::CIMQualifierDecl getQualifier(const Caller& caller,
                                                   const Pegasus::CIMNamespaceName& nameSpace,
                                                   const Pegasus::CIMName& qualifierName) = 0;
    virtual Pegasus::Array<Pegasus::CIMQualifierDecl>
    enumerateQualifiers(const Caller& caller, const Pegasus::CIMNamespaceName& nameSpace) = 0;
};

} // namespace embedded::host
