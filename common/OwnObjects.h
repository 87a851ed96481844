// The module's own objects as the ends of associations: their paths for a request, themselves in
// the form that the handler takes, and the associations that several families make of them.
#pragma once

#include "common/Association.h"
#include "provider/ServerProfileProvider.h"

namespace serverprofile {

/// Who asks, and in which namespace.
struct Request {
    ServerProfileProvider& provider;
    const Pegasus::String& nameSpace;
};

/// One half of the profile catalogue: the profiles or the subprofiles.
struct CatalogueHalf {
    const char* className;
    const ServerProfileProvider::Instances& (ServerProfileProvider::*entries)() const;

    const ServerProfileProvider::Instances& of(const Request& request) const {
        return (request.provider.*entries)();
    }
};
constexpr CatalogueHalf profileEntries = {"CIM_RegisteredProfile",
                                          &ServerProfileProvider::registeredProfiles};
constexpr CatalogueHalf subProfileEntries = {"CIM_RegisteredSubProfile",
                                             &ServerProfileProvider::registeredSubProfiles};

// Paths. Those of the catalogue carry the request's namespace (errors as
// buildRegisteredProfileReference), the others are in "root/cimv2" whatever it is.

Pegasus::CIMObjectPath entryPath(const Request& request, const CatalogueHalf& half,
                                 Pegasus::Uint32 position);
Pegasus::CIMObjectPath softwareIdentityPath(const Request& request);
/// Traces the end of a host record.
Pegasus::CIMObjectPath hostPath(const Request& request);

// Far ends: the path, or the whole object. An entry of the catalogue as an object is a clone, with
// the path of the catalogue.

void deliverEntry(Pegasus::ObjectPathResponseHandler& handler, const Request& request,
                  const CatalogueHalf& half, Pegasus::Uint32 position);
void deliverEntry(Pegasus::ObjectResponseHandler& handler, const Request& request,
                  const CatalogueHalf& half, Pegasus::Uint32 position);
void deliverSoftwareIdentity(Pegasus::ObjectPathResponseHandler& handler, const Request& request);
void deliverSoftwareIdentity(Pegasus::ObjectResponseHandler& handler, const Request& request);
void deliverHost(Pegasus::ObjectPathResponseHandler& handler, const Request& request);
void deliverHost(Pegasus::ObjectResponseHandler& handler, const Request& request);

/// CIM_ElementConformsToProfile between the profile at `position` and an element yet to be named,
/// one of `elementClass`.
Association conforming(const Request& request, Pegasus::Uint32 position, const char* elementClass);

/// ORVEX_ElementSoftwareIdentity between the firmware and the entries of a half yet to be named.
Association implementedBy(const Request& request, const CatalogueHalf& half);

/// Calls visit(association) for each ORVEX_ElementSoftwareIdentity: all registered profiles, then
/// all subprofiles, each in the order of the catalogue.
template <class Visit>
void forEachImplemented(const Request& request, Visit visit) {
    Association association = implementedBy(request, profileEntries);
    for (const CatalogueHalf* half : {&profileEntries, &subProfileEntries}) {
        association.secondIs(Pegasus::CIMName(half->className));
        for (Pegasus::Uint32 i = 0; i < half->of(request).size(); ++i)
            visit(association.to(entryPath(request, *half, i)));
    }
}

} // namespace serverprofile
