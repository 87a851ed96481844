#include "cimhost/Content.h"

#include "mof/Mof.h"

namespace embedded::cimhost {

void load(const Settings& settings, repository::Repository& repository) {
    repository.createNameSpace(settings.interop);
    for (const Pegasus::CIMNamespaceName& nameSpace : settings.nameSpaces)
        repository.createNameSpace(nameSpace);
    for (const MofFile& mof : settings.mofFiles) {
        repository.createNameSpace(mof.nameSpace); // even if the file declares nothing
        repository.load(mof::readFile(mof.file, settings.mofIncludes), mof.nameSpace);
    }
}

} // namespace embedded::cimhost
