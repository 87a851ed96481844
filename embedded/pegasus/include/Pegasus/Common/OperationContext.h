// What comes with a request beside its parameters: who asks, and in which languages.
#pragma once

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>
#include <utility>
#include <vector>

namespace Pegasus {

/// A set of containers, each found by its name. Copies are independent.
///
/// Thread-safety: one context may be read by several threads, or changed by one.
class PEGASUS_COMMON_LINKAGE OperationContext {
  public:
    /// One piece of information. A container of one's own derives from this; its name must not be
    /// one of those below.
    class PEGASUS_COMMON_LINKAGE Container {
      public:
        virtual ~Container() = default;
        virtual String getName() const = 0;
        /// A copy, to be given back by destroy().
        virtual Container* clone() const = 0;
        /// Ends the life of a container made by clone().
        virtual void destroy() = 0;
    };

    OperationContext() = default;
    OperationContext(const OperationContext& context) { *this = context; }
    virtual ~OperationContext() = default;
    OperationContext& operator=(const OperationContext& context);

    void clear() { _containers.clear(); }
    /// The container, valid until it is replaced or removed. Throws Exception "object not found"
    /// if there is none of that name.
    const Container& get(const String& containerName) const;
    Boolean contains(const String& containerName) const {
        return find(containerName) != _containers.end();
    }
    /// Replaces the container of that name. Throws Exception "object not found" if there is none.
    void set(const Container& container);
    /// Adds a container. Throws Exception "object already exists." if there is one of that name.
    void insert(const Container& container);
    /// Throws Exception "object not found" if there is none of that name.
    void remove(const String& containerName);

  private:
    struct Destroy {
        void operator()(Container* container) const { container->destroy(); }
    };
    using Containers = std::vector<std::unique_ptr<Container, Destroy>>;

    Containers::const_iterator find(const String& containerName) const;
    Containers::const_iterator require(const String& containerName) const;

    Containers _containers;
};

/// The part that all containers below have in common: the name Concrete::NAME, a value, and copies
/// of themselves.
template <class Concrete, class Value>
class PEGASUS_COMMON_LINKAGE NamedContainer : virtual public OperationContext::Container {
  public:
    /// From what get() answers. Throws DynamicCastFailedException if it is of another kind.
    NamedContainer(const OperationContext::Container& container)
        : NamedContainer(downCast(container)) {}
    NamedContainer(Value value) : _value(std::move(value)) {}

    String getName() const override { return Concrete::NAME; }
    OperationContext::Container* clone() const override {
        return new Concrete(static_cast<const Concrete&>(*this));
    }
    void destroy() override { delete this; }

  protected:
    Value _value;

  private:
    static const NamedContainer& downCast(const OperationContext::Container& container) {
        const auto* concrete = dynamic_cast<const Concrete*>(&container);
        if (!concrete)
            throw DynamicCastFailedException();
        return *concrete;
    }
};

/// Who asks.
class PEGASUS_COMMON_LINKAGE IdentityContainer : public NamedContainer<IdentityContainer, String> {
  public:
    static const String NAME;
    using NamedContainer::NamedContainer;
    String getUserName() const { return _value; }
};

/// The languages that the client accepts.
class PEGASUS_COMMON_LINKAGE AcceptLanguageListContainer
    : public NamedContainer<AcceptLanguageListContainer, AcceptLanguageList> {
  public:
    static const String NAME;
    using NamedContainer::NamedContainer;
    AcceptLanguageList getLanguages() const { return _value; }
};

/// The languages of the request's or the response's content.
class PEGASUS_COMMON_LINKAGE ContentLanguageListContainer
    : public NamedContainer<ContentLanguageListContainer, ContentLanguageList> {
  public:
    static const String NAME;
    using NamedContainer::NamedContainer;
    ContentLanguageList getLanguages() const { return _value; }
};

/// How long an operation that a provider starts may take, in milliseconds.
class PEGASUS_COMMON_LINKAGE TimeoutContainer : public NamedContainer<TimeoutContainer, Uint32> {
  public:
    static const String NAME;
    using NamedContainer::NamedContainer;
    Uint32 getTimeOut() const { return _value; }
};

} // namespace Pegasus
