// Traversals from the software identity: to every entry of the profile catalogue.
#include "common/OwnObjects.h"
#include "common/Selection.h"
#include "common/Trace.h"

#include <Pegasus/Common/CIMObject.h>

PEGASUS_USING_PEGASUS;
using namespace serverprofile;

namespace {

constexpr SelectionRow selection[] = {{elementSoftwareIdentity.name, 1}};

// Which operation is served.
constexpr int associatorNamesMode = 0;
constexpr int associatorsMode = 1;
constexpr int referenceNamesMode = 2;
constexpr int referencesMode = 3;

/// Hands out `handler` as what the operation's handler must be, anew for each delivery: one of the
/// wrong kind is a std::bad_cast at the first.
template <class Kind>
struct Deliver {
    const Request& request;
    ResponseHandler& handler;

    Kind& kind() const { return dynamic_cast<Kind&>(handler); }

    void farEnds(const char* resultClass) const {
        for (const CatalogueHalf* half : {&profileEntries, &subProfileEntries})
            if (takes(resultClass, half->className))
                for (Uint32 i = 0; i < half->of(request).size(); ++i)
                    deliverEntry(kind(), request, *half, i);
    }

    void associations() const {
        forEachImplemented(
            request, [&](Association& association) { deliver(kind(), association); });
    }
};

} // namespace

void ServerProfileProvider::_getOrvexSIAssociatorReferenceHelper(String, Text assocClass,
                                                                 Text resultClass, Text, Text, bool,
                                                                 bool, Handler& handler,
                                                                 const String& nameSpace,
                                                                 int mode) {
    trace(" Quil orvexSIAssociators(): assoc class is ", assocClass);
    trace(" Quil orvexSIAssociators(): result class is ", resultClass);
    if (selectTraced(selection, assocClass, 1) == 0)
        return;
    trace(" Quil assoc flag is ", mode);

    const Request request{*this, nameSpace};
    const Deliver<ObjectPathResponseHandler> paths{request, handler};
    const Deliver<ObjectResponseHandler> objects{request, handler};
    switch (mode) {
    case associatorNamesMode:
        paths.farEnds(resultClass);
        break;
    case associatorsMode:
        objects.farEnds(resultClass);
        break;
    case referenceNamesMode:
        paths.associations();
        break;
    case referencesMode:
        objects.associations();
        break;
    default:
        break;
    }
}
