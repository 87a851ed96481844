#include <Pegasus/Common/OperationContext.h>

namespace Pegasus {

template <class Concrete>
NamedContainer<Concrete>::NamedContainer() = default;

template <class Concrete>
NamedContainer<Concrete>::NamedContainer(const NamedContainer& container)
    : OperationContext::Container(container) {
}

template <class Concrete>
NamedContainer<Concrete>::~NamedContainer() = default;

template <class Concrete>
NamedContainer<Concrete>& NamedContainer<Concrete>::operator=(const NamedContainer&) {
    return *this;
}

template <class Concrete>
String NamedContainer<Concrete>::getName() const {
    return Concrete::NAME;
}

template <class Concrete>
OperationContext::Container* NamedContainer<Concrete>::clone() const {
    return new Concrete(static_cast<const Concrete&>(*this));
}

template <class Concrete>
void NamedContainer<Concrete>::destroy() {
    delete this;
}

namespace {

template <class Concrete>
const Concrete& downCast(const OperationContext::Container& container) {
    const auto* concrete = dynamic_cast<const Concrete*>(&container);
    if (!concrete)
        throw DynamicCastFailedException();
    return *concrete;
}

} // namespace

// What every container has beside its own constructor and its accessors.
#define PEGASUS_CONTAINER_BASICS(Concrete)                                                         \
    const String Concrete::NAME = #Concrete;                                                       \
    Concrete::Concrete(const OperationContext::Container& container)                               \
        : Concrete(downCast<Concrete>(container)) {                                                \
    }                                                                                              \
    Concrete::Concrete(const Concrete& container) = default;                                       \
    Concrete::~Concrete() = default;                                                               \
    Concrete& Concrete::operator=(const Concrete& container) = default;                            \
    template class NamedContainer<Concrete>;

PEGASUS_CONTAINER_BASICS(IdentityContainer)
PEGASUS_CONTAINER_BASICS(AcceptLanguageListContainer)
PEGASUS_CONTAINER_BASICS(ContentLanguageListContainer)
PEGASUS_CONTAINER_BASICS(TimeoutContainer)
PEGASUS_CONTAINER_BASICS(SubscriptionInstanceContainer)
PEGASUS_CONTAINER_BASICS(SubscriptionFilterConditionContainer)
PEGASUS_CONTAINER_BASICS(SubscriptionFilterQueryContainer)
PEGASUS_CONTAINER_BASICS(SubscriptionInstanceNamesContainer)
PEGASUS_CONTAINER_BASICS(SnmpTrapOidContainer)

#undef PEGASUS_CONTAINER_BASICS

IdentityContainer::IdentityContainer(const String& userName) : _userName(userName) {
}

String IdentityContainer::getUserName() const {
    return _userName;
}

AcceptLanguageListContainer::AcceptLanguageListContainer(const AcceptLanguageList& languages)
    : _languages(languages) {
}

AcceptLanguageList AcceptLanguageListContainer::getLanguages() const {
    return _languages;
}

ContentLanguageListContainer::ContentLanguageListContainer(const ContentLanguageList& languages)
    : _languages(languages) {
}

ContentLanguageList ContentLanguageListContainer::getLanguages() const {
    return _languages;
}

TimeoutContainer::TimeoutContainer(Uint32 timeout) : _timeout(timeout) {
}

Uint32 TimeoutContainer::getTimeOut() const {
    return _timeout;
}

SubscriptionInstanceContainer::SubscriptionInstanceContainer(
    const CIMInstance& subscriptionInstance)
    : _subscriptionInstance(subscriptionInstance) {
}

CIMInstance SubscriptionInstanceContainer::getInstance() const {
    return _subscriptionInstance;
}

SubscriptionFilterConditionContainer::SubscriptionFilterConditionContainer(
    const String& filterCondition, const String& queryLanguage)
    : _filterCondition(filterCondition), _queryLanguage(queryLanguage) {
}

String SubscriptionFilterConditionContainer::getFilterCondition() const {
    return _filterCondition;
}

String SubscriptionFilterConditionContainer::getQueryLanguage() const {
    return _queryLanguage;
}

SubscriptionFilterQueryContainer::SubscriptionFilterQueryContainer(
    const String& filterQuery, const String& queryLanguage, const CIMNamespaceName& sourceNameSpace)
    : _filterQuery(filterQuery), _queryLanguage(queryLanguage), _sourceNameSpace(sourceNameSpace) {
}

String SubscriptionFilterQueryContainer::getFilterQuery() const {
    return _filterQuery;
}

String SubscriptionFilterQueryContainer::getQueryLanguage() const {
    return _queryLanguage;
}

CIMNamespaceName SubscriptionFilterQueryContainer::getSourceNameSpace() const {
    return _sourceNameSpace;
}

SubscriptionInstanceNamesContainer::SubscriptionInstanceNamesContainer(
    const Array<CIMObjectPath>& subscriptionInstanceNames)
    : _subscriptionInstanceNames(subscriptionInstanceNames) {
}

Array<CIMObjectPath> SubscriptionInstanceNamesContainer::getInstanceNames() const {
    return _subscriptionInstanceNames;
}

SnmpTrapOidContainer::SnmpTrapOidContainer(const String& snmpTrapOid) : _snmpTrapOid(snmpTrapOid) {
}

String SnmpTrapOidContainer::getSnmpTrapOid() const {
    return _snmpTrapOid;
}

} // namespace Pegasus
