// The operations of the association provider interface: one row of a table for each source class.
#include "provider/RequestKeys.h"
#include "provider/Serve.h"

PEGASUS_USING_PEGASUS;
using serverprofile::plain;
using serverprofile::trace;

namespace {

using Provider = ServerProfileProvider;
using Text = const char*;

using AssociatorNames = void (Provider::*)(String, Text, Text, Text, Text,
                                           ObjectPathResponseHandler&, const String&);
using Associators = void (Provider::*)(String, Text, Text, Text, Text, bool, bool,
                                       const CIMPropertyList&, ObjectResponseHandler&,
                                       const String&);
using ReferenceNames = void (Provider::*)(String, Text, Text, ObjectPathResponseHandler&,
                                          const String&);
using References = void (Provider::*)(String, Text, Text, bool, bool, const CIMPropertyList&,
                                      ObjectResponseHandler&, const String&);
using ReferenceNamesOf = void (Provider::*)(String, Text, Text, ObjectPathResponseHandler&,
                                            const String&, const CIMObjectPath&);
using ReferencesOf = void (Provider::*)(String, Text, Text, bool, bool, const CIMPropertyList&,
                                        ObjectResponseHandler&, const String&,
                                        const CIMObjectPath&);

/// Who traverses from a source class. The reference members come in two kinds: those of some
/// sources want the source's path too.
struct SourceRow {
    const char* className;
    AssociatorNames associatorNames;
    Associators associators;
    ReferenceNames referenceNames;
    References references;
    ReferenceNamesOf referenceNamesOf = nullptr;
    ReferencesOf referencesOf = nullptr;
};

/// The software identity has one member for all four operations and no row. A served class
/// without a row has an empty answer: CIM_CIMXMLCommunicationMechanism and CIM_Namespace are
/// traversed only under their PG_ names.
constexpr SourceRow sources[] = {
    {"CIM_RegisteredProfile", &Provider::_getRegisteredProfileAssociatorNames,
     &Provider::_getRegisteredProfileAssociators, &Provider::_getRegisteredProfileReferenceNames,
     &Provider::_getRegisteredProfileReferences},
    {"CIM_RegisteredSubProfile", &Provider::_getRegisteredSubProfileAssociatorNames,
     &Provider::_getRegisteredSubProfileAssociators,
     &Provider::_getRegisteredSubProfileReferenceNames,
     &Provider::_getRegisteredSubProfileReferences},
    {"ORVEX_ObjectManagerHost", &Provider::_getOrvexOMHostAssociatorNames,
     &Provider::_getOrvexOMHostAssociators, &Provider::_getOrvexOMHostReferenceNames,
     &Provider::_getOrvexOMHostReferences},
    {"CIM_ObjectManager", &Provider::_getObjMgrAssociatorNames, &Provider::_getObjMgrAssociators,
     &Provider::_getObjMgrReferenceNames, &Provider::_getObjMgrReferences},
    {"PG_CIMXMLCommunicationMechanism", &Provider::_getCimXmlCMAssociatorNames,
     &Provider::_getCimXmlCMAssociators, nullptr, nullptr, &Provider::_getCimXmlCMReferenceNames,
     &Provider::_getCimXmlCMReferences},
    {"PG_Namespace", &Provider::_getNamespaceAssociatorNames, &Provider::_getNamespaceAssociators,
     nullptr, nullptr, &Provider::_getNamespaceReferenceNames, &Provider::_getNamespaceReferences},
};

/// A request as plain texts, as the families take it. The texts live as long as the object.
struct PlainRequest {
    const CIMObjectPath& objectName;
    const SourceRow* row; ///< nullptr: nobody traverses from this class
    bool isSoftwareIdentity;
    String keyValue;
    String nameSpace;

    PlainRequest(const CIMObjectPath& source, const char* className, const String& key)
        : objectName(source), row(serverprofile::findRow(sources, className)),
          isSoftwareIdentity(::strcasecmp(className, "ORVEX_SoftwareIdentity") == 0), keyValue(key),
          nameSpace(source.getNameSpace().getString()) {}
};

CString plain(const String& text) {
    return text.getCString();
}

} // namespace

template <class Work>
void ServerProfileProvider::serveFrom(const char* name, const CIMObjectPath& objectName,
                                      Handler& handler, Work work, const char* flagTrace) {
    trace("Quil ", name, "(): Start ", objectName.getClassName());
    serve(name, handler, [&] {
        if (flagTrace != nullptr)
            trace(flagTrace, initFlag);
        CIMName className = objectName.getClassName();
        trace("Quil ", name, "(): className ", className);
        _checkClass(className);
        trace("Quil ", name, "(): keys.size is: ", objectName.getKeyBindings().size());
        const CString plainName = plain(className);
        const auto key = serverprofile::findKey(*this, objectName, plainName);
        serverprofile::requireKey(key);
        work(PlainRequest(objectName, plainName, key.value));
    });
}

void ServerProfileProvider::associatorNames(const OperationContext&,
                                            const CIMObjectPath& objectName,
                                            const CIMName& associationClass,
                                            const CIMName& resultClass, const String& role,
                                            const String& resultRole, PathHandler& handler) {
    serveFrom(
        "associatorNames", objectName, handler,
        [&](const PlainRequest& request) {
            const CString assoc = plain(associationClass);
            const CString result = plain(resultClass);
            const CString nearRole = plain(role);
            const CString farRole = plain(resultRole);
            if (request.row != nullptr)
                (this->*request.row->associatorNames)(request.keyValue, assoc, result, nearRole,
                                                      farRole, handler, request.nameSpace);
            else if (request.isSoftwareIdentity)
                _getOrvexSIAssociatorReferenceHelper(request.keyValue, assoc, result, nearRole,
                                                     farRole, false, false, handler,
                                                     request.nameSpace, 0);
        });
}

void ServerProfileProvider::associators(const OperationContext&, const CIMObjectPath& objectName,
                                        const CIMName& associationClass, const CIMName& resultClass,
                                        const String& role, const String& resultRole,
                                        const Boolean includeQualifiers,
                                        const Boolean includeClassOrigin,
                                        const CIMPropertyList& propertyList,
                                        ObjectHandler& handler) {
    serveFrom(
        "associators", objectName, handler,
        [&](const PlainRequest& request) {
            const CString assoc = plain(associationClass);
            const CString result = plain(resultClass);
            const CString nearRole = plain(role);
            const CString farRole = plain(resultRole);
            if (request.row != nullptr)
                (this->*request.row->associators)(request.keyValue, assoc, result, nearRole,
                                                  farRole, includeQualifiers, includeClassOrigin,
                                                  propertyList, handler, request.nameSpace);
            else if (request.isSoftwareIdentity)
                _getOrvexSIAssociatorReferenceHelper(request.keyValue, assoc, result, nearRole,
                                                     farRole, includeQualifiers, includeClassOrigin,
                                                     handler, request.nameSpace, 1);
        },
        "Quil - associators() initFlag is ");
}

void ServerProfileProvider::referenceNames(const OperationContext&, const CIMObjectPath& objectName,
                                           const CIMName& resultClass, const String& role,
                                           PathHandler& handler) {
    serveFrom(
        "referenceNames", objectName, handler,
        [&](const PlainRequest& request) {
            const CString result = plain(resultClass);
            const CString nearRole = plain(role);
            if (request.row != nullptr && request.row->referenceNamesOf != nullptr) {
                (this->*request.row->referenceNamesOf)(request.keyValue, result, nearRole, handler,
                                                       request.nameSpace, objectName);
            } else if (request.row != nullptr) {
                (this->*request.row->referenceNames)(request.keyValue, result, nearRole, handler,
                                                     request.nameSpace);
            } else if (request.isSoftwareIdentity) {
                // The result class stands in the place of the association class too: on purpose.
                _getOrvexSIAssociatorReferenceHelper(request.keyValue, result, result, nearRole, "",
                                                     false, false, handler, request.nameSpace, 2);
            }
        });
}

void ServerProfileProvider::references(const OperationContext&, const CIMObjectPath& objectName,
                                       const CIMName& resultClass, const String& role,
                                       const Boolean includeQualifiers,
                                       const Boolean includeClassOrigin,
                                       const CIMPropertyList& propertyList,
                                       ObjectHandler& handler) {
    serveFrom(
        "references", objectName, handler,
        [&](const PlainRequest& request) {
            const CString result = plain(resultClass);
            const CString nearRole = plain(role);
            if (request.row != nullptr && request.row->referencesOf != nullptr) {
                (this->*request.row->referencesOf)(
                    request.keyValue, result, nearRole, includeQualifiers, includeClassOrigin,
                    propertyList, handler, request.nameSpace, objectName);
            } else if (request.row != nullptr) {
                (this->*request.row->references)(request.keyValue, result, nearRole,
                                                 includeQualifiers, includeClassOrigin,
                                                 propertyList, handler, request.nameSpace);
            } else if (request.isSoftwareIdentity) {
                // The result class stands in the place of the association class too: on purpose.
                _getOrvexSIAssociatorReferenceHelper(request.keyValue, result, result, nearRole, "",
                                                     includeQualifiers, includeClassOrigin, handler,
                                                     request.nameSpace, 3);
            }
        });
}
