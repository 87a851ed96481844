// The provider of the switch's "Server" profile.
#pragma once

#include "common/Records.h"

#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/CIMPropertyList.h>
#include <Pegasus/Common/ResponseHandler.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMOMHandle.h>

/// Answers the read operations on the 17 classes of the profile; refuses the write operations.
///
/// The seven read operations hold the module mutex from the init gate to their end, so requests
/// are served one at a time. A Pegasus::Exception below them is traced and leaves an answer without
/// complete(), never an error for the client; exceptions of other types pass to the server.
/// What they call (the catalogue, the builders and the families below) is not locked by itself,
/// only delivers, and lets every exception pass unless it says otherwise.
///
/// In the families, `keyValue` is the value of the source's or wanted object's key, `nameSpace` the
/// request's namespace. Filter texts are empty when the client gave none. Role, result role, the
/// two flags and the property list are accepted and do not shape an answer.
class ServerProfileProvider : public Pegasus::CIMInstanceProvider,
                              public Pegasus::CIMAssociationProvider {
  public:
    using String = Pegasus::String;
    using CIMName = Pegasus::CIMName;
    using CIMInstance = Pegasus::CIMInstance;
    using CIMObjectPath = Pegasus::CIMObjectPath;
    using CIMPropertyList = Pegasus::CIMPropertyList;
    using OperationContext = Pegasus::OperationContext;
    using Handler = Pegasus::ResponseHandler;
    using InstanceHandler = Pegasus::InstanceResponseHandler;
    using ObjectHandler = Pegasus::ObjectResponseHandler;
    using PathHandler = Pegasus::ObjectPathResponseHandler;
    using Instances = Pegasus::Array<CIMInstance>;
    using Text = const char*;

    ServerProfileProvider();
    ~ServerProfileProvider() override;
    ServerProfileProvider(const ServerProfileProvider&) = delete;
    ServerProfileProvider& operator=(const ServerProfileProvider&) = delete;

    // Life cycle

    /// Keeps `cimom`, finds the host name, builds the catalogue. A Pegasus::Exception on the way is
    /// traced and leaves the init gate closed for good: a provider without its catalogue serves
    /// nothing. An exception of another type passes, with the module mutex still locked.
    void initialize(Pegasus::CIMOMHandle& cimom) override;
    /// Deletes the provider.
    void terminate() override;
    /// Never agrees to be unloaded early. Not virtual: today's provider interface has none.
    bool tryTerminate();

    // The operations of CIMInstanceProvider and CIMAssociationProvider

    void getInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                     const Pegasus::Boolean includeQualifiers,
                     const Pegasus::Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                     InstanceHandler& handler) override;
    void enumerateInstances(const OperationContext& context, const CIMObjectPath& classReference,
                            const Pegasus::Boolean includeQualifiers,
                            const Pegasus::Boolean includeClassOrigin,
                            const CIMPropertyList& propertyList, InstanceHandler& handler) override;
    void enumerateInstanceNames(const OperationContext& context,
                                const CIMObjectPath& classReference, PathHandler& handler) override;
    /// The three write operations throw CIMNotSupportedException with an empty message.
    void modifyInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        const CIMInstance& instanceObject, const Pegasus::Boolean includeQualifiers,
                        const CIMPropertyList& propertyList, Handler& handler) override;
    void createInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        const CIMInstance& instanceObject, PathHandler& handler) override;
    void deleteInstance(const OperationContext& context, const CIMObjectPath& instanceReference,
                        Handler& handler) override;
    void associators(const OperationContext& context, const CIMObjectPath& objectName,
                     const CIMName& associationClass, const CIMName& resultClass,
                     const String& role, const String& resultRole,
                     const Pegasus::Boolean includeQualifiers,
                     const Pegasus::Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                     ObjectHandler& handler) override;
    void associatorNames(const OperationContext& context, const CIMObjectPath& objectName,
                         const CIMName& associationClass, const CIMName& resultClass,
                         const String& role, const String& resultRole,
                         PathHandler& handler) override;
    void references(const OperationContext& context, const CIMObjectPath& objectName,
                    const CIMName& resultClass, const String& role,
                    const Pegasus::Boolean includeQualifiers,
                    const Pegasus::Boolean includeClassOrigin, const CIMPropertyList& propertyList,
                    ObjectHandler& handler) override;
    void referenceNames(const OperationContext& context, const CIMObjectPath& objectName,
                        const CIMName& resultClass, const String& role,
                        PathHandler& handler) override;

    /// True for one of the 17 served classes; else traces and throws CIMNotSupportedException.
    bool _checkClass(CIMName& className);
    /// 1 when `keyName` names an object of `className`, else 0; writes what it checks.
    int _checkKey(const char* className, const char* keyName);

    // The profile catalogue

    /// Fills both arrays of the catalogue from the server's class definitions and publishes the
    /// host name to OrvexOMHost. To be called with the module mutex held.
    void initData();
    CIMInstance buildRegisteredProfileInstance(String className, RegisteredProfile profile);
    /// The path of `instance` as one of `className` in `nameSpace`. Throws
    /// CIMInvalidParameterException when it has no InstanceID of type string with a value.
    CIMObjectPath buildRegisteredProfileReference(String className, CIMInstance instance,
                                                  String nameSpace);
    /// The index of the first of `profiles` with that InstanceID (case ignored), or PEG_NOT_FOUND.
    /// Throws as buildRegisteredProfileReference for an entry on the way.
    Pegasus::Uint32 findRegProfIndex(String instanceId, Instances profiles);

    // What the operations and the families read: the server's handle, and the catalogue as it is.

    Pegasus::CIMOMHandle& cimomHandle() { return _cimomHandle; }
    const Instances& registeredProfiles() const { return _registeredProfiles; }
    const Instances& registeredSubProfiles() const { return _registeredSubProfiles; }

    // The families have functions of these kinds.

    using EnumerateNames = void(String className, PathHandler& handler, const String& nameSpace);
    using EnumerateInstances = void(String className, InstanceHandler& handler,
                                    const String& nameSpace);
    /// Both in one. `instances`: deliver instances through an InstanceResponseHandler, else paths
    /// through an ObjectPathResponseHandler; a handler of the other kind is a std::bad_cast at the
    /// first delivery.
    using Enumerate = void(String className, Handler& handler, const String& nameSpace,
                           bool instances);
    /// A miss delivers nothing and returns an uninitialised instance.
    using GetByKey = CIMInstance(String keyValue, InstanceHandler& handler);
    /// Echoes whatever association the client names.
    using GetByPath = CIMInstance(const CIMObjectPath& path, InstanceHandler& handler);
    using AssociatorNames = void(String keyValue, Text assocClass, Text resultClass, Text role,
                                 Text resultRole, PathHandler& handler, const String& nameSpace);
    using Associators = void(String keyValue, Text assocClass, Text resultClass, Text role,
                             Text resultRole, bool includeQualifiers, bool includeClassOrigin,
                             const CIMPropertyList& propertyList, ObjectHandler& handler,
                             const String& nameSpace);
    using ReferenceNames = void(String keyValue, Text resultClass, Text role, PathHandler& handler,
                                const String& nameSpace);
    using References = void(String keyValue, Text resultClass, Text role, bool includeQualifiers,
                            bool includeClassOrigin, const CIMPropertyList& propertyList,
                            ObjectHandler& handler, const String& nameSpace);
    // The same, with the path of the source itself.
    using ReferenceNamesOf = void(String keyValue, Text resultClass, Text role,
                                  PathHandler& handler, const String& nameSpace,
                                  const CIMObjectPath& objectName);
    using ReferencesOf = void(String keyValue, Text resultClass, Text role, bool includeQualifiers,
                              bool includeClassOrigin, const CIMPropertyList& propertyList,
                              ObjectHandler& handler, const String& nameSpace,
                              const CIMObjectPath& objectName);

    // Registered profiles and subprofiles.
    EnumerateInstances _getRegisteredProfileInstances, _getRegisteredSubProfileInstances;
    EnumerateNames _getRegisteredProfileInstanceNames, _getRegisteredSubProfileInstanceNames;
    GetByKey _getRegisteredProfileInstance, _getRegisteredSubProfileInstance;

    // The host of the object manager. Its path is in "root/cimv2" whatever the request says.
    CIMInstance buildOrvexOMHostInstance(String className, OrvexOMHost host);
    CIMObjectPath buildOrvexOMHostReference(String className, OrvexOMHost host, String nameSpace);
    GetByKey _getOrvexOMHostInstance;
    EnumerateInstances _getOrvexOMHostInstances;
    EnumerateNames _getOrvexOHostInstanceNames;

    // The software identity. Its path is in "root/cimv2" whatever the request says.
    CIMInstance buildOrvexSIInstance(String className, OrvexSI si);
    CIMObjectPath buildOrvexSIReference(String className, OrvexSI si, String nameSpace);
    GetByKey _getOrvexSIInstance;
    EnumerateInstances _getOrvexSIInstances;
    EnumerateNames _getOrvexSIInstanceNames;

    // The association classes: from the catalogue, or from what the server's other providers
    // publish.
    EnumerateNames _getSubprofileRequiresProfileInstanceNames,
        _getElementConformstoProfileInstanceNames;
    EnumerateInstances _getSubprofileRequiresProfileInstances,
        _getElementConformstoProfileInstances;
    Enumerate _getCommMechForMgrHelper, _getNSInMgrHelper, _getOrvexSPHostedAccessPointHelper,
        _getOrvexSPHostedServiceHelper, _getOrvexSPESIHelper;
    GetByPath _getSubprofileRequiresProfileInstance, _getElementConformstoProfileInstance,
        _getCommMechForMgrInstance, _getNSInMgrInstance, _getOrvexSPHostedAccessPointInstance,
        _getOrvexSPHostedServiceInstance, _getOrvexSPESIInstance;

    // Traversals, by source class. The association classes are selected by `assocClass`, in the two
    // reference operations by `resultClass`; an unknown one selects nothing and is no error.

    AssociatorNames _getRegisteredProfileAssociatorNames, _getRegisteredSubProfileAssociatorNames,
        _getOrvexOMHostAssociatorNames, _getObjMgrAssociatorNames, _getCimXmlCMAssociatorNames,
        _getNamespaceAssociatorNames;
    Associators _getRegisteredProfileAssociators, _getRegisteredSubProfileAssociators,
        _getOrvexOMHostAssociators, _getObjMgrAssociators, _getCimXmlCMAssociators,
        _getNamespaceAssociators;
    ReferenceNames _getRegisteredProfileReferenceNames, _getRegisteredSubProfileReferenceNames,
        _getOrvexOMHostReferenceNames, _getObjMgrReferenceNames;
    References _getRegisteredProfileReferences, _getRegisteredSubProfileReferences,
        _getOrvexOMHostReferences, _getObjMgrReferences;
    ReferenceNamesOf _getCimXmlCMReferenceNames, _getNamespaceReferenceNames;
    ReferencesOf _getCimXmlCMReferences, _getNamespaceReferences;

    // From the software identity: 0 associator names, 1 associators, 2 reference names,
    // 3 references; any other mode delivers nothing. A handler of the other kind is a std::bad_cast
    // at the first delivery.
    void _getOrvexSIAssociatorReferenceHelper(String keyValue, Text assocClass, Text resultClass,
                                              Text role, Text resultRole, bool includeQualifiers,
                                              bool includeClassOrigin, Handler& handler,
                                              const String& nameSpace, int mode);

  private:
    /// Runs `work` as the operation `name`: through the init gate, under the module mutex, with
    /// complete() at its end, and with its Pegasus exceptions traced and swallowed.
    template <class Work>
    void serve(const char* name, Handler& handler, Work work);
    /// The same for the enumeration `name` of `classReference`, by that function of its class's
    /// row.
    template <class ItemHandler, class Row, class Function>
    void enumerate(const char* name, const CIMObjectPath& classReference, ItemHandler& handler,
                   Function Row::*function);
    /// The same for the association operation `name`, whose source's class and key it checks, by
    /// that function of the class's row. `flagTrace`, if any, is traced with initFlag on the way.
    template <class Request, class ItemHandler, class Row, class Function>
    void traverse(const char* name, Request request, ItemHandler& handler, Function Row::*function,
                  const char* flagTrace = nullptr);

    Pegasus::CIMOMHandle _cimomHandle;
    Instances _registeredProfiles;
    Instances _registeredSubProfiles;
    bool initFlag;
};
