// What comes with a request beside its parameters: who asks, and in which languages.
#pragma once

#include <Pegasus/Common/AcceptLanguageList.h>
#include <Pegasus/Common/Array.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMName.h>
#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/ContentLanguageList.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/String.h>

#include <memory>

namespace Pegasus {

struct OperationContextRep;

/// A set of containers, each found by its name. Copies are independent.
///
/// Thread-safety: one context may be read by several threads, or changed by one.
class PEGASUS_COMMON_LINKAGE OperationContext {
  public:
    /// One piece of information. A container of one's own derives from this; its name must not be
    /// one of those below.
    class PEGASUS_COMMON_LINKAGE Container {
      public:
        virtual ~Container();
        virtual String getName() const = 0;
        /// A copy, to be given back by destroy().
        virtual Container* clone() const = 0;
        /// Ends the life of a container made by clone().
        virtual void destroy() = 0;
    };

    OperationContext();
    OperationContext(const OperationContext& context);
    virtual ~OperationContext();
    OperationContext& operator=(const OperationContext& context);

    void clear();
    /// The container, valid until it is replaced or removed. Throws Exception "object not found"
    /// if there is none of that name.
    const Container& get(const String& containerName) const;
    Boolean contains(const String& containerName) const;
    /// Replaces the container of that name. Throws Exception "object not found" if there is none.
    void set(const Container& container);
    /// Adds a container. Throws Exception "object already exists." if there is one of that name.
    void insert(const Container& container);
    /// Throws Exception "object not found" if there is none of that name.
    void remove(const String& containerName);

  private:
    std::unique_ptr<OperationContextRep> _rep;
};

/// The part that all containers below have in common: the name Concrete::NAME, and copies of
/// themselves.
template <class Concrete>
class PEGASUS_COMMON_LINKAGE NamedContainer : virtual public OperationContext::Container {
  public:
    String getName() const override;
    OperationContext::Container* clone() const override;
    void destroy() override;

  protected:
    NamedContainer();
    NamedContainer(const NamedContainer& container);
    ~NamedContainer() override;
    NamedContainer& operator=(const NamedContainer& container);
};

// Every container below can be made from what get() answers; that constructor throws
// DynamicCastFailedException if the container is of another kind.

/// Who asks.
class PEGASUS_COMMON_LINKAGE IdentityContainer : public NamedContainer<IdentityContainer> {
  public:
    static const String NAME;

    IdentityContainer(const OperationContext::Container& container);
    IdentityContainer(const IdentityContainer& container);
    IdentityContainer(const String& userName);
    ~IdentityContainer() override;
    IdentityContainer& operator=(const IdentityContainer& container);

    String getUserName() const;

  private:
    String _userName;
};

/// The languages that the client accepts.
class PEGASUS_COMMON_LINKAGE AcceptLanguageListContainer
    : public NamedContainer<AcceptLanguageListContainer> {
  public:
    static const String NAME;

    AcceptLanguageListContainer(const OperationContext::Container& container);
    AcceptLanguageListContainer(const AcceptLanguageListContainer& container);
    AcceptLanguageListContainer(const AcceptLanguageList& languages);
    ~AcceptLanguageListContainer() override;
    AcceptLanguageListContainer& operator=(const AcceptLanguageListContainer& container);

    AcceptLanguageList getLanguages() const;

  private:
    AcceptLanguageList _languages;
};

/// The languages of the request's or the response's content.
class PEGASUS_COMMON_LINKAGE ContentLanguageListContainer
    : public NamedContainer<ContentLanguageListContainer> {
  public:
    static const String NAME;

    ContentLanguageListContainer(const OperationContext::Container& container);
    ContentLanguageListContainer(const ContentLanguageListContainer& container);
    ContentLanguageListContainer(const ContentLanguageList& languages);
    ~ContentLanguageListContainer() override;
    ContentLanguageListContainer& operator=(const ContentLanguageListContainer& container);

    ContentLanguageList getLanguages() const;

  private:
    ContentLanguageList _languages;
};

/// How long an operation that a provider starts may take, in milliseconds.
class PEGASUS_COMMON_LINKAGE TimeoutContainer : public NamedContainer<TimeoutContainer> {
  public:
    static const String NAME;

    TimeoutContainer(const OperationContext::Container& container);
    TimeoutContainer(const TimeoutContainer& container);
    TimeoutContainer(Uint32 timeout);
    ~TimeoutContainer() override;
    TimeoutContainer& operator=(const TimeoutContainer& container);

    Uint32 getTimeOut() const;

  private:
    Uint32 _timeout;
};

/// The subscription that an indication is for.
class PEGASUS_COMMON_LINKAGE SubscriptionInstanceContainer
    : public NamedContainer<SubscriptionInstanceContainer> {
  public:
    static const String NAME;

    SubscriptionInstanceContainer(const OperationContext::Container& container);
    SubscriptionInstanceContainer(const SubscriptionInstanceContainer& container);
    SubscriptionInstanceContainer(const CIMInstance& subscriptionInstance);
    ~SubscriptionInstanceContainer() override;
    SubscriptionInstanceContainer& operator=(const SubscriptionInstanceContainer& container);

    CIMInstance getInstance() const;

  private:
    CIMInstance _subscriptionInstance;
};

/// The condition of a subscription's filter.
class PEGASUS_COMMON_LINKAGE SubscriptionFilterConditionContainer
    : public NamedContainer<SubscriptionFilterConditionContainer> {
  public:
    static const String NAME;

    SubscriptionFilterConditionContainer(const OperationContext::Container& container);
    SubscriptionFilterConditionContainer(const SubscriptionFilterConditionContainer& container);
    SubscriptionFilterConditionContainer(const String& filterCondition,
                                         const String& queryLanguage);
    ~SubscriptionFilterConditionContainer() override;
    SubscriptionFilterConditionContainer&
    operator=(const SubscriptionFilterConditionContainer& container);

    String getFilterCondition() const;
    String getQueryLanguage() const;

  private:
    String _filterCondition;
    String _queryLanguage;
};

/// The whole query of a subscription's filter.
class PEGASUS_COMMON_LINKAGE SubscriptionFilterQueryContainer
    : public NamedContainer<SubscriptionFilterQueryContainer> {
  public:
    static const String NAME;

    SubscriptionFilterQueryContainer(const OperationContext::Container& container);
    SubscriptionFilterQueryContainer(const SubscriptionFilterQueryContainer& container);
    SubscriptionFilterQueryContainer(const String& filterQuery, const String& queryLanguage,
                                     const CIMNamespaceName& sourceNameSpace);
    ~SubscriptionFilterQueryContainer() override;
    SubscriptionFilterQueryContainer& operator=(const SubscriptionFilterQueryContainer& container);

    String getFilterQuery() const;
    String getQueryLanguage() const;
    CIMNamespaceName getSourceNameSpace() const;

  private:
    String _filterQuery;
    String _queryLanguage;
    CIMNamespaceName _sourceNameSpace;
};

/// The paths of the subscriptions that an indication matches.
class PEGASUS_COMMON_LINKAGE SubscriptionInstanceNamesContainer
    : public NamedContainer<SubscriptionInstanceNamesContainer> {
  public:
    static const String NAME;

    SubscriptionInstanceNamesContainer(const OperationContext::Container& container);
    SubscriptionInstanceNamesContainer(const SubscriptionInstanceNamesContainer& container);
    SubscriptionInstanceNamesContainer(const Array<CIMObjectPath>& subscriptionInstanceNames);
    ~SubscriptionInstanceNamesContainer() override;
    SubscriptionInstanceNamesContainer&
    operator=(const SubscriptionInstanceNamesContainer& container);

    Array<CIMObjectPath> getInstanceNames() const;

  private:
    Array<CIMObjectPath> _subscriptionInstanceNames;
};

/// The object identifier of the SNMP trap that an indication was made from.
class PEGASUS_COMMON_LINKAGE SnmpTrapOidContainer : public NamedContainer<SnmpTrapOidContainer> {
  public:
    static const String NAME;

    SnmpTrapOidContainer(const OperationContext::Container& container);
    SnmpTrapOidContainer(const SnmpTrapOidContainer& container);
    SnmpTrapOidContainer(const String& snmpTrapOid);
    ~SnmpTrapOidContainer() override;
    SnmpTrapOidContainer& operator=(const SnmpTrapOidContainer& container);

    String getSnmpTrapOid() const;

  private:
    String _snmpTrapOid;
};

} // namespace Pegasus
