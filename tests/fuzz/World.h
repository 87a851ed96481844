// A small CIM server without modules: the classes and objects of the wire cases.
#pragma once

#include "repository/Repository.h"
#include "routing/Enumerations.h"
#include "routing/Router.h"

#include <memory>
#include <vector>

namespace fuzz {

/// Thread-safety: one thread at a time.
class World : public embedded::routing::CimOperations {
  public:
    World() { renew(); }

    /// Makes everything as it was, if something was written or is open.
    void restore() {
        if (_written || _server->enumerations.size() != 0)
            renew();
    }
    embedded::routing::Enumerations& enumerations() { return _server->enumerations; }
    embedded::routing::Plan plan(const embedded::routing::Operation& operation) override;
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
        embedded::routing::ProviderModules modules{embedded::routing::Registration(), {}};
        embedded::routing::Router router{repository, modules, "fuzz", true};
        embedded::routing::Enumerations enumerations; // which refer to it
    };
    void renew();

    std::unique_ptr<Server> _server;
    bool _written = false;
};

} // namespace fuzz
