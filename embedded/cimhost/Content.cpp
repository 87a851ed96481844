#include "cimhost/Content.h"

#include "cimhost/Summary.h"
#include "mof/Mof.h"

#include <malloc.h>

#include <algorithm>

namespace embedded::cimhost {

void load(const Settings& settings, repository::Repository& repository) {
    repository.createNameSpace(settings.interop);
    for (const Pegasus::CIMNamespaceName& nameSpace : settings.nameSpaces)
        repository.createNameSpace(nameSpace);
    for (const MofFile& mof : settings.mofFiles) {
        repository.createNameSpace(mof.nameSpace); // even if the file declares nothing
        repository.load(mof::readFile(mof.file, settings.mofIncludes), mof.nameSpace);
    }
    // Reading takes several times the memory of what is kept, and lies in between it: the C library
    // gives that back only when it is told to.
    malloc_trim(0);
}

std::vector<std::string> faultsOfUnknownClasses(const std::vector<routing::Fault>& faults,
                                                const repository::View& view) {
    const std::vector<Pegasus::CIMNamespaceName> nameSpaces = view.nameSpaces();
    std::vector<std::string> complaints;
    for (const routing::Fault& fault : faults) {
        const bool known = fault.className.isNull() ||
                           std::any_of(nameSpaces.begin(), nameSpaces.end(), [&](const auto& each) {
                               return view.hasClass(each, fault.className);
                           });
        if (!known)
            complaints.push_back("--fault \"" + describe(fault) + "\": no namespace has a class " +
                                 utf8(fault.className) +
                                 "; check its spelling, or load the MOF file that declares it");
    }
    return complaints;
}

} // namespace embedded::cimhost
