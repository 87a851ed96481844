// The bases of providers: here, so that their type information stands in one place and
// dynamic_cast from a CIMProvider works for modules that hide their symbols.
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>
#include <Pegasus/Provider/CIMProvider.h>

namespace Pegasus {

CIMProvider::CIMProvider() = default;
CIMProvider::~CIMProvider() = default;

CIMInstanceProvider::CIMInstanceProvider() = default;
CIMInstanceProvider::~CIMInstanceProvider() = default;

CIMAssociationProvider::CIMAssociationProvider() = default;
CIMAssociationProvider::~CIMAssociationProvider() = default;

} // namespace Pegasus
