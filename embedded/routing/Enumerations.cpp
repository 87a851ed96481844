#include "routing/Enumerations.h"

#include <Pegasus/Common/Exception.h>
#include <embedding/Text.h>

#include <array>
#include <stdexcept>
#include <sys/random.h>
#include <utility>
#include <vector>

namespace embedded::routing {

using namespace Pegasus;

namespace {

/// 128 bits of the system's randomness.
std::string newContext() {
    std::array<unsigned char, 16> bytes{};
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the system has no randomness");
    constexpr std::string_view digits = "0123456789abcdef";
    std::string context;
    for (const unsigned byte : bytes) {
        context += digits[byte >> 4U];
        context += digits[byte & 15U];
    }
    return context;
}

CIMException limitsExceeded(const char* what) { return {CIM_ERR_SERVER_LIMITS_EXCEEDED, what}; }

CIMException unknownContext() {
    return {CIM_ERR_INVALID_ENUMERATION_CONTEXT,
            "There is no such enumeration: it has come to its end, was closed, has expired, or "
            "never was."};
}

} // namespace

bool Enumeration::next(Answered& answered) {
    if (!hasMore())
        return false;
    answered = std::move(*_ahead);
    _ahead.reset();
    return true;
}

bool Enumeration::hasMore() {
    if (!_ahead && _next && !_next(_ahead.emplace())) {
        _ahead.reset();
        _next = nullptr;
    }
    return _ahead.has_value();
}

EnumerationLease& EnumerationLease::operator=(EnumerationLease&& other) noexcept {
    std::swap(_all, other._all);
    std::swap(_context, other._context);
    std::swap(_enumeration, other._enumeration);
    return *this;
}

EnumerationLease::~EnumerationLease() {
    if (_enumeration == nullptr)
        return;
    std::unique_ptr<Enumeration> removed;
    const threads::Lock lock(_all->_mutex);
    removed = _all->remove(_all->_open.find(_context));
}

void EnumerationLease::charge(std::size_t objects) {
    const threads::Lock lock(_all->_mutex);
    if (objects > _all->_bounds.objects - _all->_objects)
        throw limitsExceeded("The open enumerations hold too many objects of providers; try again "
                             "later, or ask for all at once.");
    _all->_objects += objects;
    _all->_open.find(_context)->second.objects = objects;
}

void EnumerationLease::giveBack() noexcept {
    const threads::Lock lock(_all->_mutex);
    Enumerations::Open& open = _all->_open.find(_context)->second;
    open.isLeased = false;
    open.until = _all->_now() + open.timeOut;
    _enumeration = nullptr;
    _all->_changed.notifyAll();
}

Enumerations::Enumerations(const Bounds& bounds, std::function<Clock::time_point()> now)
    : _bounds(bounds), _now(std::move(now)), _expiring([this] { removeExpired(); }) {}

Enumerations::~Enumerations() {
    {
        const threads::Lock lock(_mutex);
        _ending = true;
        _changed.notifyAll();
    }
    _expiring.join();
}

EnumerationLease Enumerations::open(Operation operation, std::chrono::seconds timeOut) {
    std::string context = newContext();
    const std::string user = Pegasus::embedding::utf8(operation.caller.userName);
    auto enumeration = std::make_unique<Enumeration>(std::move(operation));
    Enumeration& opened = *enumeration;
    const threads::Lock lock(_mutex);
    if (_open.size() >= _bounds.open)
        throw limitsExceeded("Too many enumerations are open; try again later.");
    std::size_t& ofUser = _ofUser[user];
    if (ofUser >= _bounds.ofOneUser)
        throw limitsExceeded("Too many enumerations of this user are open; close some.");
    _open.emplace(context, Open{std::move(enumeration), timeOut});
    ++ofUser;
    return {*this, std::move(context), opened};
}

Enumerations::Table::iterator Enumerations::find(const std::string& context,
                                                 const Operation& request) {
    const auto found = _open.find(context);
    if (found == _open.end())
        throw unknownContext();
    const Operation& opened = found->second.enumeration->operation();
    const bool isExpired = !found->second.isLeased && found->second.until <= _now();
    if (isExpired || opened.caller.userName != request.caller.userName ||
        !opened.nameSpace.equal(request.nameSpace))
        throw unknownContext();
    return found;
}

EnumerationLease Enumerations::take(const std::string& context, const Operation& request) {
    const threads::Lock lock(_mutex);
    const auto found = find(context, request);
    Open& open = found->second;
    if (returnsPaths(open.enumeration->operation().kind) != returnsPaths(request.kind))
        throw CIMException(CIM_ERR_INVALID_ENUMERATION_CONTEXT,
                           returnsPaths(request.kind)
                               ? "This enumeration is one of instances, not of paths."
                               : "This enumeration is one of paths, not of instances.");
    if (open.isLeased)
        throw CIMException(CIM_ERR_FAILED,
                           "Another request of this enumeration is being answered.");
    open.isLeased = true;
    return {*this, context, *open.enumeration};
}

void Enumerations::close(const std::string& context, const Operation& request) {
    std::unique_ptr<Enumeration> removed;
    const threads::Lock lock(_mutex);
    const auto found = find(context, request);
    if (found->second.isLeased)
        throw CIMException(CIM_ERR_PULL_CANNOT_BE_ABANDONED,
                           "Another request of this enumeration is being answered.");
    removed = remove(found);
}

std::size_t Enumerations::size() const {
    const threads::Lock lock(_mutex);
    return _open.size();
}

std::unique_ptr<Enumeration> Enumerations::remove(Table::iterator which) {
    std::unique_ptr<Enumeration> removed = std::move(which->second.enumeration);
    _objects -= which->second.objects;
    _open.erase(which);
    const auto user = _ofUser.find(Pegasus::embedding::utf8(removed->operation().caller.userName));
    if (--user->second == 0)
        _ofUser.erase(user);
    return removed;
}

// What the clock of the tests says is seen when something is given back, or after a second.
void Enumerations::removeExpired() {
    std::vector<std::unique_ptr<Enumeration>> removed;
    while (true) {
        removed.clear(); // without the lock
        const threads::Lock lock(_mutex);
        if (_ending)
            return;
        bool waiting = false;
        for (auto each = _open.begin(); each != _open.end();) {
            const auto which = each++;
            waiting = waiting || !which->second.isLeased;
            if (!which->second.isLeased && which->second.until <= _now())
                removed.push_back(remove(which));
        }
        if (!removed.empty())
            continue;
        if (waiting)
            _changed.waitUntil(_mutex, Clock::now() + std::chrono::seconds(1));
        else
            _changed.wait(_mutex);
    }
}

} // namespace embedded::routing
