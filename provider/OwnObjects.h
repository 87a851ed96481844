// The module's own objects as the far ends of an association: in the form that the handler takes,
// as a path for the request's namespace or as the whole object.
#pragma once

#include "provider/ServerProfileProvider.h"

namespace serverprofile {

/// Who asks, and in which namespace.
struct Request {
    ServerProfileProvider& provider;
    const Pegasus::String& nameSpace;
};

// A registered profile or subprofile by its position in the catalogue. As an object: a clone, with
// the path of the catalogue.
void deliverProfile(Pegasus::ObjectPathResponseHandler&, const Request&, Pegasus::Uint32 profile);
void deliverProfile(Pegasus::ObjectResponseHandler&, const Request&, Pegasus::Uint32 profile);
void deliverSubProfile(Pegasus::ObjectPathResponseHandler&, const Request&, Pegasus::Uint32);
void deliverSubProfile(Pegasus::ObjectResponseHandler&, const Request&, Pegasus::Uint32);

void deliverSoftwareIdentity(Pegasus::ObjectPathResponseHandler& handler, const Request& request);
void deliverSoftwareIdentity(Pegasus::ObjectResponseHandler& handler, const Request& request);

void deliverHost(Pegasus::ObjectPathResponseHandler& handler, const Request& request);
void deliverHost(Pegasus::ObjectResponseHandler& handler, const Request& request);

} // namespace serverprofile
