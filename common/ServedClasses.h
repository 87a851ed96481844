// The classes that the module serves. Each row stands beside the functions that it names; a new
// class is a row in its family's source, and its name twice at the end of this file.
#pragma once

#include "common/Association.h"
#include "common/Selection.h"
#include "provider/ServerProfileProvider.h"

#include <functional>
#include <initializer_list>
#include <type_traits>

#include <strings.h>

namespace serverprofile {

/// A request of an association operation, its filters as plain texts: empty where the client gave
/// none or the operation has none.
struct AssociationRequest {
    const Pegasus::CIMObjectPath& source;
    Pegasus::CString association;
    Pegasus::CString result;
    Pegasus::CString role;
    Pegasus::CString resultRole;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
    Pegasus::CIMPropertyList propertyList{};
    Pegasus::String nameSpace = source.getNameSpace().getString();
    Pegasus::String keyValue{}; ///< once the source's key was found
};

/// A class of the profile: how its objects are named, and who answers for it. Where a function is
/// missing, the answer is empty. The functions are made of members of the provider, or of functions
/// that take the provider first; they throw what these throw.
struct ServedClass {
    using Provider = ServerProfileProvider;
    using PathHandler = Provider::PathHandler;
    using InstanceHandler = Provider::InstanceHandler;
    using ObjectHandler = Provider::ObjectHandler;
    using Path = Pegasus::CIMObjectPath;
    using String = Pegasus::String;
    template <class ItemHandler>
    using Enumerate = void (*)(Provider&, const char* className, ItemHandler&, const String& ns);
    template <class ItemHandler>
    using Traverse = void (*)(Provider&, const AssociationRequest&, ItemHandler&);

    const char* name;
    const char* key; ///< which names an object; nullptr: every key is accepted
    /// Of these properties, an instance that is built from the class definition carries its own.
    std::initializer_list<const char*> properties{};
    Enumerate<PathHandler> enumerateNames = nullptr;
    Enumerate<InstanceHandler> enumerateInstances = nullptr;
    void (*getInstance)(Provider&, const Path&, const String& keyValue, InstanceHandler&) = nullptr;
    Traverse<PathHandler> associatorNames = nullptr;
    Traverse<ObjectHandler> associators = nullptr;
    Traverse<PathHandler> referenceNames = nullptr;
    Traverse<ObjectHandler> references = nullptr;

    /// By (String className, handler, nameSpace). If one function serves both, it is told in a
    /// fourth argument whether instances are wanted.
    template <auto names, auto instances = names>
    constexpr ServedClass enumeratedBy() const {
        ServedClass row = *this;
        row.enumerateNames = &enumerate<names, PathHandler>;
        row.enumerateInstances = &enumerate<instances, InstanceHandler>;
        return row;
    }

    /// By (the object's whole path or the value of its key, handler).
    template <auto get>
    constexpr ServedClass gotBy() const {
        ServedClass row = *this;
        row.getInstance = [](Provider& provider, const Path& path, const String& keyValue,
                             InstanceHandler& handler) {
            if constexpr (std::is_invocable_v<decltype(get), Provider&, Path, InstanceHandler&>)
                std::invoke(get, provider, path, handler);
            else
                std::invoke(get, provider, keyValue, handler);
        };
        return row;
    }

    /// By the four functions of a family, as the provider's header has them; those for references
    /// take the source's path or not.
    template <auto namesOfFarEnds, auto farEnds, auto namesOfAssociations, auto associations>
    constexpr ServedClass traversedBy() const {
        ServedClass row = *this;
        row.associatorNames = [](Provider& provider, const AssociationRequest& r,
                                 PathHandler& handler) {
            std::invoke(namesOfFarEnds, provider, r.keyValue, r.association, r.result, r.role,
                        r.resultRole, handler, r.nameSpace);
        };
        row.associators = [](Provider& provider, const AssociationRequest& r,
                             ObjectHandler& handler) {
            std::invoke(farEnds, provider, r.keyValue, r.association, r.result, r.role,
                        r.resultRole, r.includeQualifiers, r.includeClassOrigin, r.propertyList,
                        handler, r.nameSpace);
        };
        row.referenceNames = [](Provider& provider, const AssociationRequest& r,
                                PathHandler& handler) {
            withSource<namesOfAssociations>(r, provider, r.keyValue, r.result, r.role, handler,
                                            r.nameSpace);
        };
        row.references = [](Provider& provider, const AssociationRequest& r,
                            ObjectHandler& handler) {
            withSource<associations>(r, provider, r.keyValue, r.result, r.role, r.includeQualifiers,
                                     r.includeClassOrigin, r.propertyList, handler, r.nameSpace);
        };
        return row;
    }

  private:
    template <auto function, class ItemHandler>
    static void enumerate(Provider& provider, const char* className, ItemHandler& handler,
                          const String& nameSpace) {
        if constexpr (std::is_invocable_v<decltype(function), Provider&, String, ItemHandler&,
                                          const String&>)
            std::invoke(function, provider, className, handler, nameSpace);
        else
            std::invoke(function, provider, className, handler, nameSpace,
                        std::is_same_v<ItemHandler, InstanceHandler>);
    }

    template <auto function, class... Arguments>
    static void withSource(const AssociationRequest& request, Arguments&&... arguments) {
        if constexpr (std::is_invocable_v<decltype(function), Arguments..., const Path&>)
            std::invoke(function, arguments..., request.source);
        else
            std::invoke(function, arguments...);
    }
};

/// An association class, whose keys are its references.
constexpr ServedClass servedAssociation(const AssociationClass& association) {
    return {association.name, nullptr};
}

extern const ServedClass registeredProfileRow, registeredSubProfileRow, referencedProfileRow,
    subProfileRequiresProfileRow, objectManagerHostRow, hostedServiceRow, hostedAccessPointRow,
    objectManagerRow, cimXmlMechanismRow, pgCimXmlMechanismRow, cimNamespaceRow, pgNamespaceRow,
    elementConformsToProfileRow, namespaceInManagerRow, commMechanismForManagerRow,
    softwareIdentityRow, elementSoftwareIdentityRow;

inline constexpr const ServedClass* servedClasses[] = {
    &registeredProfileRow,         &registeredSubProfileRow,   &referencedProfileRow,
    &subProfileRequiresProfileRow, &objectManagerHostRow,      &hostedServiceRow,
    &hostedAccessPointRow,         &objectManagerRow,          &cimXmlMechanismRow,
    &pgCimXmlMechanismRow,         &cimNamespaceRow,           &pgNamespaceRow,
    &elementConformsToProfileRow,  &namespaceInManagerRow,     &commMechanismForManagerRow,
    &softwareIdentityRow,          &elementSoftwareIdentityRow};

/// The row of `className` (case ignored), or nullptr.
inline const ServedClass* findClass(const char* className) {
    for (const ServedClass* served : servedClasses)
        if (::strcasecmp(className, served->name) == 0)
            return served;
    return nullptr;
}

} // namespace serverprofile
