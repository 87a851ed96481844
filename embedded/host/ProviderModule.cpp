#include "host/ProviderModule.h"

#include "host/CallChain.h"
#include "host/LoadedProvider.h"

#include <condition_variable>
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
    unsigned loading = 0; ///< providers that some thread is making ready
    bool closed = false;
};

class ModuleProvider : public Provider {
  public:
    ModuleProvider(ProviderName name, const RegisteredModule& module,
                   const ModuleSettings& settings, LoadingOrder& order)
        : _name(std::move(name)), _module(module), _settings(settings), _order(order) {}

    String name() const override { return _name.module + String("/") + _name.name; }

    void call(const CIMName& className,
              const std::function<void(Pegasus::CIMProvider&)>& use) override {
        if (_module.stopped) {
            throw CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED, "provider blocked.");
        }
        const ModuleStay stay(_name.module, className);
        const Use inUse(*this);
        use(_loaded->object());
    }

    /// REQUIRES: the order is closed, so that no new request comes.
    void unload(std::unique_lock<std::mutex>& lock) {
        _order.changed.wait(lock, [&] { return _users == 0; });
        lock.unlock();
        {
            const ModuleStay stay(_name.module, CIMName());
            _loaded.reset();
        }
        lock.lock();
    }

  private:
    /// A request in progress; the provider is ready while it lasts.
    class Use {
      public:
        explicit Use(ModuleProvider& provider) : _provider(provider) { provider.enter(); }
        ~Use() {
            const std::lock_guard<std::mutex> lock(_provider._order.mutex);
            --_provider._users;
            _provider._order.changed.notify_all();
        }
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

      private:
        ModuleProvider& _provider;
    };

    void enter() {
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
        ++_users;
    }

    void load(std::unique_lock<std::mutex>& lock) {
        _loader = std::this_thread::get_id();
        ++_order.loading;
        lock.unlock();
        std::unique_ptr<LoadedProvider> loaded;
        try {
            loaded = std::make_unique<LoadedProvider>(_module, _name, _settings);
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
    const RegisteredModule& _module;
    const ModuleSettings& _settings;
    LoadingOrder& _order;
    // What follows is guarded by the order's mutex; the pointee of _loaded is not.
    std::thread::id _loader; ///< none: nobody is loading it
    std::unique_ptr<LoadedProvider> _loaded;
    unsigned _users = 0;
};

ProviderModules::ProviderModules(Registration registration, ModuleSettings settings)
    : _registration(std::move(registration)), _settings(std::move(settings)),
      _order(std::make_unique<LoadingOrder>()) {
    for (const ProviderName& name : _registration.providers()) {
        _providers.emplace(
            name, std::make_unique<ModuleProvider>(name, _registration.modules().at(name.module),
                                                   _settings, *_order));
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

void ProviderModules::unloadAll() {
    std::unique_lock<std::mutex> lock(_order->mutex);
    _order->closed = true;
    // A provider that was being loaded becomes ready meanwhile and is terminated like the others.
    _order->changed.wait(lock, [&] { return _order->loading == 0; });
    while (!_order->ready.empty()) {
        ModuleProvider* const last = _order->ready.back();
        _order->ready.pop_back();
        last->unload(lock);
    }
}

} // namespace embedded::host
