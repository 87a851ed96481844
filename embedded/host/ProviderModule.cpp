#include "host/ProviderModule.h"

#include "host/CallChain.h"
#include "host/LoadedProvider.h"

#include <algorithm>
#include <condition_variable>
#include <iterator>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

namespace embedded::host {

using Pegasus::CIM_ERR_FAILED;
using Pegasus::CIMException;
using Pegasus::CIMName;
using Pegasus::String;

/// The states of all providers of one server stand under one lock, so that threads which wait for
/// each other's provider can be seen. It is held for bookkeeping only, never over a call.
class LoadingOrder {
  public:
    std::mutex mutex;
    std::condition_variable changed;
    /// Which provider a thread waits for until another thread has it ready.
    std::map<std::thread::id, const ModuleProvider*> waiting;
    /// In the order in which they became ready.
    std::vector<ModuleProvider*> ready;
    unsigned loading = 0;                   ///< providers that some thread is making ready
    std::list<ProviderModules::Call> calls; ///< that have not returned, the oldest first
    bool closed = false;
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

    void call(const CIMName& className,
              const std::function<void(Pegasus::CIMProvider&)>& use) override {
        if (_registered.stopped) {
            throw CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED, "provider blocked.");
        }
        const ModuleStay stay(_name.module, className);
        const Use inUse(*this, className.getString());
        use(_loaded->object());
    }

    /// REQUIRES: the order is closed, so that no new request comes. False: it was not free in time.
    bool unload(std::unique_lock<std::mutex>& lock, Clock::time_point until) {
        if (!_order.changed.wait_until(lock, until, [&] { return _users == 0; })) {
            return false;
        }
        lock.unlock();
        {
            const ModuleStay stay(_name.module, CIMName());
            _loaded.reset();
        }
        lock.lock();
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
            const std::lock_guard<std::mutex> lock(_provider._order.mutex);
            _provider._order.calls.erase(_call);
            --_provider._users;
            _provider._order.changed.notify_all();
        }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

      private:
        ModuleProvider& _provider;
        const Calls::iterator _call;
    };

    Calls::iterator enter(const String& className) {
        std::unique_lock<std::mutex> lock(_order.mutex);
        while (_loader != std::thread::id()) {
            waitForLoader(lock);
        }
        if (_order.closed) {
            throw CIMException(CIM_ERR_FAILED, "The CIM server is shutting down.");
        }
        if (!_loaded) {
            load(lock);
        }
        const Calls::iterator call = begin(className);
        ++_users;
        return call;
    }

    Calls::iterator begin(const String& what) {
        return _order.calls.insert(_order.calls.end(), {name(), what, Clock::now()});
    }

    void load(std::unique_lock<std::mutex>& lock) {
        _call = begin("initialize()");
        _loader = std::this_thread::get_id();
        ++_order.loading;
        lock.unlock();
        std::unique_ptr<LoadedProvider> loaded;
        try {
            loaded = std::make_unique<LoadedProvider>(_registered, _name, _settings);
        } catch (...) {
            lock.lock();
            finish();
            throw;
        }
        lock.lock();
        _loaded = std::move(loaded);
        _order.ready.push_back(this);
        finish();
    }

    void finish() {
        _order.calls.erase(_call);
        _loader = std::thread::id();
        --_order.loading;
        _order.changed.notify_all();
    }

    void waitForLoader(std::unique_lock<std::mutex>& lock) {
        if (loaderWaitsForThisThread()) {
            throw CIMException(CIM_ERR_FAILED,
                               String("Provider module \"") + _name.module +
                                   String("\" is being initialized and waits for this request."));
        }
        _order.waiting[std::this_thread::get_id()] = this;
        _order.changed.wait(lock, [&] { return _loader == std::thread::id(); });
        _order.waiting.erase(std::this_thread::get_id());
    }

    /// Two providers whose initialize() ask each other, each begun on a thread of its own, would
    /// wait for ever.
    bool loaderWaitsForThisThread() const {
        const ModuleProvider* provider = this;
        for (;;) {
            if (provider->_loader == std::this_thread::get_id()) {
                return true;
            }
            const auto next = _order.waiting.find(provider->_loader);
            if (next == _order.waiting.end()) {
                return false;
            }
            provider = next->second;
        }
    }

    const ProviderName _name;
    const RegisteredModule& _registered;
    const Module& _module;
    const ModuleSettings& _settings;
    LoadingOrder& _order;
    // What follows is guarded by the order's mutex; the pointee of _loaded is not.
    std::thread::id _loader; ///< none: nobody is loading it
    Calls::iterator _call;   ///< the loader's
    std::unique_ptr<LoadedProvider> _loaded;
    unsigned _users = 0;
};

void addModule(std::vector<const Module*>& modules, const Provider* provider) {
    if (provider != nullptr &&
        std::find(modules.begin(), modules.end(), &provider->module()) == modules.end()) {
        modules.push_back(&provider->module());
    }
}

ProviderModules::ProviderModules(Registration registration, ModuleSettings settings)
    : _registration(std::move(registration)), _settings(std::move(settings)),
      _order(std::make_unique<LoadingOrder>()) {
    const auto& registered = _registration.modules();
    for (const auto& [name, module] : registered) {
        _modules.push_back({static_cast<unsigned>(_modules.size()), name});
    }
    for (const ProviderName& name : _registration.providers()) {
        const auto module = registered.find(name.module);
        const auto number = static_cast<std::size_t>(std::distance(registered.begin(), module));
        _providers.emplace(name, std::make_unique<ModuleProvider>(
                                     name, module->second, _modules[number], _settings, *_order));
    }
}

ProviderModules::~ProviderModules() {
    unloadAll();
}

Provider* ProviderModules::find(const Pegasus::CIMNamespaceName& nameSpace,
                                const CIMName& className, ProviderType type) const {
    const ProviderName* const name = _registration.find(nameSpace, className, type);
    return name == nullptr ? nullptr : _providers.at(*name).get();
}

bool ProviderModules::unloadAll(Clock::time_point until) {
    std::unique_lock<std::mutex> lock(_order->mutex);
    _order->closed = true;
    // A provider that was being loaded becomes ready meanwhile and is terminated like the others.
    bool all = _order->changed.wait_until(lock, until, [&] { return _order->loading == 0; });
    while (!_order->ready.empty()) {
        ModuleProvider* const last = _order->ready.back();
        _order->ready.pop_back();
        all = last->unload(lock, until) && all;
    }
    return all;
}

std::vector<ProviderModules::Call> ProviderModules::calls() const {
    const std::lock_guard<std::mutex> lock(_order->mutex);
    return {_order->calls.begin(), _order->calls.end()};
}

} // namespace embedded::host
