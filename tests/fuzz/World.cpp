#include "fuzz/World.h"

#include "mof/Mof.h"

namespace fuzz {

using embedded::routing::OperationKind;

World::Server::Server() {
    static const embedded::mof::Specification wire =
        embedded::mof::readFile(SOURCE_DIRECTORY "/tests/wire/wire.mof");
    repository.createNameSpace(Pegasus::CIMNamespaceName("root/other"));
    repository.load(wire, Pegasus::CIMNamespaceName("root/wire"));
}

void World::renew() {
    _server = std::make_unique<Server>();
    _written = false;
}

embedded::routing::Plan World::plan(const embedded::routing::Operation& operation) {
    _written |= operation.kind == OperationKind::CreateInstance ||
                operation.kind == OperationKind::ModifyInstance ||
                operation.kind == OperationKind::DeleteInstance;
    return _server->router.plan(operation);
}

} // namespace fuzz
