// A small CIM server without modules: the classes and objects of the wire cases.
#pragma once

#include "host/Enumerations.h"
#include "host/Router.h"
#include "repository/Repository.h"

#include <memory>
#include <vector>

namespace fuzz {

/// Thread-safety: one thread at a time.
class World : public embedded::host::CimOperations {
  public:
    World() { renew(); }

    /// Makes everything as it was, if something was written or is open.
    void restore() {
        if (_written || _server->enumerations.size() != 0)
            renew();
    }
    embedded::host::Enumerations& enumerations() { return _server->enumerations; }
    embedded::host::Plan plan(const embedded::host::Operation& operation) override;
    std::vector<Pegasus::CIMName> keyNames(const Pegasus::CIMNamespaceName& nameSpace,
                                           const Pegasus::CIMName& className) override {
        return _server->router.keyNames(nameSpace, className);
    }
    bool hasNameSpace(const Pegasus::CIMNamespaceName& nameSpace) override {
        return _server->router.hasNameSpace(nameSpace);
    }

  private:
    struct Server {
        Server();
        embedded::repository::Repository repository;
        embedded::host::ProviderModules modules{embedded::host::Registration(), {}};
        embedded::host::Router router{repository, modules, "fuzz", true};
        embedded::host::Enumerations enumerations; // which refer to it
    };
    void renew();

    std::unique_ptr<Server> _server;
    bool _written = false;
};

} // namespace fuzz
