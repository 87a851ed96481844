#include "routing/LoadedProvider.h"

#include "routing/Errors.h"
#include "routing/Values.h"

#include <new>
#include <stdexcept>

namespace embedded::routing {

using namespace Pegasus;

namespace {

CIMException failed(const std::string& text) {
    return CIMException(CIM_ERR_FAILED, String(text.c_str()));
}

} // namespace

LoadedProvider::LoadedProvider(const RegisteredModule& module, const ProviderName& name,
                               const ModuleSettings& settings)
    : _name(name), _settings(settings) {
    _handle.emplace();
    create(module);
    if (!initialize()) {
        terminate();
        throw failed("provider initialization failed");
    }
}

LoadedProvider::~LoadedProvider() { terminate(); }

void LoadedProvider::create(const RegisteredModule& module) {
    if (const auto linked = _settings.linked.find(module.location);
        linked != _settings.linked.end()) {
        _object = asCimErrors([&] { return linked->second(_name.name); });
        return;
    }
    const auto file = findLibrary(_settings.directories, module.location);
    if (!file)
        throw failed("File \"" + libraryFileName(module.location) +
                     "\" was not found for provider module \"" + utf8(module.name) + "\".");
    try {
        _library.emplace(*file, _settings.keepLibraries);
        // An exception of the library's own type must be gone before the library is closed.
        _object = asCimErrors([&, create = _library->entryPoint()] { return create(_name.name); });
        if (_object == nullptr)
            throw std::runtime_error("provider is not a CIMProvider.");
    } catch (const std::runtime_error& error) {
        throw failed("ProviderLoadFailure (" + file->string() + ":" + utf8(_name.name) +
                     "):" + error.what());
    }
}

bool LoadedProvider::initialize() {
    try {
        asCimErrors([&] { _object->initialize(*_handle); });
        return true;
    } catch (const CIMException& error) {
        log("initialize", error);
    } catch (const std::bad_alloc&) { // who asked is told of a failure
    }
    return false;
}

void LoadedProvider::terminate() {
    try {
        // By convention the provider deletes itself here; nobody else does.
        asCimErrors([&] { _object->terminate(); });
    } catch (const CIMException& error) {
        log("terminate", error);
    } catch (const std::bad_alloc&) { // it is gone all the same
    }
    _object = nullptr;
}

void LoadedProvider::log(const char* operation, const CIMException& error) const noexcept {
    try {
        if (_settings.log)
            _settings.log("provider " + utf8(_name.name) + " of module " + utf8(_name.module) +
                          ": " + operation + "(): " + utf8(error.getMessage()));
    } catch (...) { // a line less
    }
}

} // namespace embedded::routing
