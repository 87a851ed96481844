#include "routing/ProviderModule.h"

#include "routing/Errors.h"
#include "routing/ProviderLibrary.h"
#include "routing/Values.h"
#include "threads/Locks.h"

#include <Pegasus/Provider/CIMOMHandle.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <new>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

namespace embedded::routing {

using namespace Pegasus;
using threads::Condition;
using threads::Lock;
using threads::Mutex;

namespace {

class ReentryGuard;
thread_local const ReentryGuard* innermost = nullptr;

/// Says that this thread is inside a module. A read-back runs on the thread of the provider that
/// makes it, so the modules that wait for its answer are those that its thread has entered.
class ReentryGuard {
  public:
    explicit ReentryGuard(const String& module) noexcept : _module(module), _outer(innermost) {
        innermost = this;
    }
    /// Throws CIMException CIM_ERR_FAILED when this thread is inside `module` already: the module
    /// would have to answer the question while it waits for the answer.
    static void requireOutside(const String& module, const CIMName& className) {
        for (const ReentryGuard* guard = innermost; guard != nullptr; guard = guard->_outer)
            if (guard->_module == module)
                throw CIMException(CIM_ERR_FAILED,
                                   String("Provider module \"") + module +
                                       "\" waits for this request itself and cannot be asked for "
                                       "class " +
                                       className.getString() + ".");
    }
    ~ReentryGuard() { innermost = _outer; }
    ReentryGuard(const ReentryGuard&) = delete;
    ReentryGuard& operator=(const ReentryGuard&) = delete;

  private:
    const String& _module;
    const ReentryGuard* const _outer;
};

CIMException failed(const std::string& text) {
    return CIMException(CIM_ERR_FAILED, String(text.c_str()));
}

/// A provider's object, with the library and the handle that it needs. Not to be used while it is
/// made or destroyed.
class LoadedProvider {
  public:
    /// Opens the library (unless the module is part of the program), creates the provider `name`
    /// and initialises it. Throws CIMException CIM_ERR_FAILED, and undoes everything then.
    LoadedProvider(const RegisteredModule& module, const ProviderName& name,
                   const ModuleSettings& settings)
        : _name(name), _settings(settings) {
        create(module);
        if (!returns("initialize", [&] { _object->initialize(_handle); })) {
            terminate();
            throw failed("provider initialization failed");
        }
    }
    /// Calls terminate(), then closes the library, if there is one.
    ~LoadedProvider() { terminate(); }
    LoadedProvider(const LoadedProvider&) = delete;
    LoadedProvider& operator=(const LoadedProvider&) = delete;

    CIMProvider& object() { return *_object; }

  private:
    void create(const RegisteredModule& module) {
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
            _object =
                asCimErrors([&, create = _library->entryPoint()] { return create(_name.name); });
            if (_object == nullptr)
                throw std::runtime_error("provider is not a CIMProvider.");
        } catch (const std::runtime_error& error) {
            throw failed("ProviderLoadFailure (" + file->string() + ":" + utf8(_name.name) +
                         "):" + error.what());
        }
    }

    /// By convention the provider deletes itself here; nobody else does.
    void terminate() {
        returns(
            "terminate", [&] { _object->terminate(); });
    }

    /// Whether `call` returns; what it throws is logged, a lack of memory is not.
    template <class Call>
    bool returns(const char* operation, Call call) const noexcept {
        try {
            asCimErrors(call);
            return true;
        } catch (const CIMException& error) {
            log(operation, error);
        } catch (const std::bad_alloc&) {
        }
        return false;
    }

    void log(const char* operation, const CIMException& error) const noexcept {
        try {
            if (_settings.log)
                _settings.log("provider " + utf8(_name.name) + " of module " + utf8(_name.module) +
                              ": " + operation + "(): " + utf8(error.getMessage()));
        } catch (...) { // a line less
        }
    }

    const ProviderName& _name;
    const ModuleSettings& _settings;
    // Members are destroyed from the last to the first: the library is closed when nothing of it is
    // left.
    std::optional<ProviderLibrary> _library;
    CIMOMHandle _handle;
    CIMProvider* _object = nullptr;
};

} // namespace

/// The states of all providers of one server stand under one lock, so that threads which wait for
/// each other's provider can be seen. It is held for bookkeeping only, never over a call.
class LoadingOrder {
  public:
    /// No new request comes after it. Waits for those that are being loaded: they become ready, and
    /// are terminated like the others. False: they were not in time.
    bool close(ProviderModules::Clock::time_point until) EXCLUDES(mutex) {
        const Lock lock(mutex);
        closed = true;
        while (loading != 0 && changed.waitUntil(mutex, until))
            ;
        return loading == 0;
    }
    /// The provider that became ready last; null when there is none.
    ModuleProvider* takeLast() EXCLUDES(mutex) {
        const Lock lock(mutex);
        if (ready.empty())
            return nullptr;
        ModuleProvider* const last = ready.back();
        ready.pop_back();
        return last;
    }

    Mutex mutex;
    Condition changed;
    /// Which provider a thread waits for until another thread has it ready.
    std::map<std::thread::id, const ModuleProvider*> waiting GUARDED_BY(mutex);
    /// In the order in which they became ready.
    std::vector<ModuleProvider*> ready GUARDED_BY(mutex);
    unsigned loading GUARDED_BY(mutex) = 0; ///< providers that some thread is making ready
    std::list<ProviderModules::Call> calls GUARDED_BY(mutex); ///< not returned, the oldest first
    bool closed GUARDED_BY(mutex) = false;
};

class ModuleProvider : public Provider {
  public:
    using Clock = ProviderModules::Clock;

    ModuleProvider(ProviderName name, const RegisteredModule& registered, const Module& module,
                   const ModuleSettings& settings, LoadingOrder& order)
        : _name(std::move(name)), _registered(registered), _module(module), _settings(settings),
          _order(order) {}

    String name() const override { return _name.module + String("/") + _name.name; }
    const Module& module() const override { return _module; }

    void call(const CIMName& className, const std::function<void(CIMProvider&)>& use) override {
        if (_registered.stopped)
            throw CIMException(CIM_ERR_NOT_SUPPORTED, "provider blocked.");
        ReentryGuard::requireOutside(_name.module, className);
        const ReentryGuard guard(_name.module);
        const Use inUse(*this, className.getString());
        use(_loaded->object());
    }

    /// REQUIRES: the order is closed, so that no new request comes. False: it was not free in time.
    bool unload(Clock::time_point until) EXCLUDES(_order.mutex) {
        {
            const Lock lock(_order.mutex);
            while (_users != 0 && _order.changed.waitUntil(_order.mutex, until))
                ;
            if (_users != 0)
                return false;
        }
        const ReentryGuard guard(_name.module);
        _loaded.reset();
        return true;
    }

  private:
    using Calls = std::list<ProviderModules::Call>;

    /// A request in progress; the provider is ready while it lasts.
    class Use {
      public:
        Use(ModuleProvider& provider, const String& className)
            : _provider(provider), _call(provider.enter(className)) {}
        ~Use() {
            const Lock lock(_provider._order.mutex);
            _provider._order.calls.erase(_call);
            --_provider._users;
            _provider._order.changed.notifyAll();
        }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

      private:
        ModuleProvider& _provider;
        const Calls::iterator _call;
    };

    Calls::iterator enter(const String& className) EXCLUDES(_order.mutex) {
        const Lock lock(_order.mutex);
        while (_loader != std::thread::id())
            waitForLoader();
        if (_order.closed)
            throw CIMException(CIM_ERR_FAILED, "The CIM server is shutting down.");
        if (!_loaded)
            load();
        const auto call = begin(className);
        ++_users;
        return call;
    }

    Calls::iterator begin(const String& what) REQUIRES(_order.mutex) {
        return _order.calls.insert(_order.calls.end(), {name(), what, Clock::now()});
    }

    void load() REQUIRES(_order.mutex) {
        _call = begin("initialize()");
        _loader = std::this_thread::get_id();
        ++_order.loading;
        _order.mutex.unlock();
        std::unique_ptr<LoadedProvider> loaded;
        try {
            loaded = std::make_unique<LoadedProvider>(_registered, _name, _settings);
        } catch (...) {
            _order.mutex.lock();
            finish();
            throw;
        }
        _order.mutex.lock();
        _loaded = std::move(loaded);
        _order.ready.push_back(this);
        finish();
    }

    void finish() REQUIRES(_order.mutex) {
        _order.calls.erase(_call);
        _loader = std::thread::id();
        --_order.loading;
        _order.changed.notifyAll();
    }

    void waitForLoader() REQUIRES(_order.mutex) {
        if (loaderWaitsForThisThread())
            throw CIMException(CIM_ERR_FAILED,
                               String("Provider module \"") + _name.module +
                                   String("\" is being initialized and waits for this request."));
        _order.waiting[std::this_thread::get_id()] = this;
        while (_loader != std::thread::id())
            _order.changed.wait(_order.mutex);
        _order.waiting.erase(std::this_thread::get_id());
    }

    /// Two providers whose initialize() ask each other, each begun on a thread of its own, would
    /// wait for ever. (The compiler does not know that all of them have the same order.)
    bool loaderWaitsForThisThread() const REQUIRES(_order.mutex) LOCKING_UNCHECKED {
        const ModuleProvider* provider = this;
        for (;;) {
            if (provider->_loader == std::this_thread::get_id())
                return true;
            const auto next = _order.waiting.find(provider->_loader);
            if (next == _order.waiting.end())
                return false;
            provider = next->second;
        }
    }

    const ProviderName _name;
    const RegisteredModule& _registered;
    const Module& _module;
    const ModuleSettings& _settings;
    LoadingOrder& _order;
    std::thread::id _loader GUARDED_BY(_order.mutex); ///< none: nobody is loading it
    Calls::iterator _call GUARDED_BY(_order.mutex);   ///< the loader's
    unsigned _users GUARDED_BY(_order.mutex) = 0;
    /// Set under the order's mutex before there are users, and reset when there are none any more:
    /// they use it without.
    std::unique_ptr<LoadedProvider> _loaded;
};

void addModule(std::vector<const Module*>& modules, const Provider* provider) {
    if (provider != nullptr &&
        std::find(modules.begin(), modules.end(), &provider->module()) == modules.end())
        modules.push_back(&provider->module());
}

ProviderModules::ProviderModules(Registration registration, ModuleSettings settings)
    : _registration(std::move(registration)), _settings(std::move(settings)),
      _order(std::make_unique<LoadingOrder>()) {
    const auto& registered = _registration.modules();
    for (const auto& [name, module] : registered)
        _modules.push_back({static_cast<unsigned>(_modules.size()), name});
    for (const ProviderName& name : _registration.providers()) {
        const auto module = registered.find(name.module);
        const auto number = static_cast<std::size_t>(std::distance(registered.begin(), module));
        _providers.emplace(name, std::make_unique<ModuleProvider>(
                                     name, module->second, _modules[number], _settings, *_order));
    }
}

ProviderModules::~ProviderModules() { unloadAll(); }

Provider* ProviderModules::find(const CIMNamespaceName& nameSpace, const CIMName& className,
                                ProviderType type) const {
    const Capability* const found = _registration.find(nameSpace, className, type);
    return found == nullptr ? nullptr : _providers.at(found->provider).get();
}

bool ProviderModules::unloadAll(Clock::time_point until) {
    bool all = _order->close(until);
    while (ModuleProvider* const last = _order->takeLast())
        all = last->unload(until) && all;
    return all;
}

std::vector<ProviderModules::Call> ProviderModules::calls() const {
    const Lock lock(_order->mutex);
    return {_order->calls.begin(), _order->calls.end()};
}

} // namespace embedded::routing
