#include "routing/Faults.h"

#include "routing/Values.h"
#include "text/Ascii.h"

#include <Pegasus/Common/Exception.h>

#include <cstring>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace embedded::routing {

using namespace Pegasus;

namespace {

using Pegasus::embedding::operationName;
using text::equalIgnoringCase;

/// The operations that a provider can ask for through its handle.
std::vector<OperationKind> readBacks() {
    std::vector<OperationKind> kinds;
    for (int i = 0; i <= static_cast<int>(OperationKind::ReferenceNames); ++i)
        kinds.push_back(static_cast<OperationKind>(i));
    return kinds;
}

constexpr const char* any = "*";
constexpr const char* hang = "hang:";
constexpr const char* empty = "empty";
constexpr double longestHang = 3600; // seconds

/// The statuses that a client can see (DSP0200 clause 5.2, "Return Codes"), in their order.
std::vector<CIMStatusCode> statuses() {
    std::vector<CIMStatusCode> result;
    for (int code = 1; code <= CIM_ERR_SERVER_IS_SHUTTING_DOWN; ++code) {
        const auto status = static_cast<CIMStatusCode>(code);
        if (std::strncmp(cimStatusCodeToString(status), "CIM_ERR_", 8) == 0)
            result.push_back(status);
    }
    return result;
}

std::string operationList() { return any + (", " + joined(readBacks(), operationName)); }

std::string statusList() {
    return joined(
        statuses(),
        [](CIMStatusCode status) {
            return std::to_string(status) + " " + cimStatusCodeToString(status);
        });
}

[[noreturn]] void reject(const std::string& what, const std::string& possible) {
    throw std::invalid_argument(what + "; possible: " + possible);
}

std::optional<OperationKind> readOperation(const std::string& text) {
    if (text == any)
        return std::nullopt;
    for (const OperationKind kind : readBacks())
        if (equalIgnoringCase(text, operationName(kind)))
            return kind;
    reject("no operation is called '" + text + "'", operationList());
}

CIMName readClass(const std::string& text) {
    if (text == any)
        return {};
    const String name(text.c_str());
    if (!CIMName::legal(name))
        reject("'" + text + "' is not a class name", "*, a class name such as CIM_Namespace");
    return CIMName(name);
}

std::chrono::milliseconds readDelay(const std::string& text) {
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    double seconds = -1;
    if (!(in >> seconds) || !in.eof() || !(seconds >= 0 && seconds <= longestHang))
        reject("'" + text + "' is not a time to hang", "0 to 3600 seconds, such as 3 or 0.5");
    return std::chrono::milliseconds(static_cast<long>(seconds * 1000));
}

CIMStatusCode readStatus(const std::string& text) {
    for (const CIMStatusCode status : statuses())
        if (text == std::to_string(status) ||
            equalIgnoringCase(text, cimStatusCodeToString(status)))
            return status;
    reject("'" + text + "' cannot happen",
           "empty, hang:SECONDS, STATUS or STATUS:MESSAGE with one of the statuses " +
               statusList());
}

void readWhat(const std::string& text, Fault& fault) {
    if (equalIgnoringCase(text, empty)) {
        fault.kind = Fault::Kind::AnswersNothing;
        return;
    }
    const std::size_t colon = text.find(':');
    if (equalIgnoringCase(text.substr(0, colon == std::string::npos ? colon : colon + 1), hang)) {
        fault.kind = Fault::Kind::Hangs;
        fault.delay = readDelay(text.substr(colon + 1));
        return;
    }
    fault.status = readStatus(text.substr(0, colon));
    if (colon != std::string::npos)
        fault.message = text.substr(colon + 1);
}

} // namespace

Fault readFault(const std::string& text) {
    const std::size_t colon = text.find(':');
    const std::size_t equals = text.find('=');
    if (colon == std::string::npos || equals == std::string::npos || equals < colon)
        throw std::invalid_argument("OPERATION:CLASS=WHAT is expected, not '" + text + "'");
    Fault fault;
    fault.operation = readOperation(text.substr(0, colon));
    fault.className = readClass(text.substr(colon + 1, equals - colon - 1));
    readWhat(text.substr(equals + 1), fault);
    return fault;
}

std::string faultHelp() {
    constexpr std::size_t width = 80;
    std::string operations;
    std::string line = "  OPERATION ";
    for (std::istringstream words(operationList()); !words.eof();) {
        std::string word;
        words >> word;
        if (line.size() + 1 + word.size() > width) {
            operations += line + "\n";
            line = "            ";
        }
        line += " " + word;
    }
    return operations + line +
           "\n"
           "  CLASS      the class named, or that of the instance named; * for any\n"
           "             (one that no namespace has is an error)\n"
           "  WHAT       STATUS or STATUS:MESSAGE  fails with that CIM status, a number or a name\n"
           "             hang:SECONDS              waits, then goes on to the next fault or "
           "answer\n"
           "             empty                     answers nothing\n";
}

std::string describe(const Fault& fault) {
    std::string text =
        std::string(fault.operation ? operationName(*fault.operation) : "everything") + " of " +
        (fault.className.isNull() ? "any class" : utf8(fault.className));
    switch (fault.kind) {
    case Fault::Kind::Fails:
        text += std::string(" fails with ") + cimStatusCodeToString(fault.status);
        return fault.message.empty() ? text : text + ": " + fault.message;
    case Fault::Kind::Hangs:
        return text + " hangs for " + std::to_string(fault.delay.count()) + " ms";
    case Fault::Kind::AnswersNothing:
        return text + " answers nothing";
    }
    return text;
}

Plan FaultyReadBacks::plan(const Operation& operation) {
    return {{},
            [this, &operation] {
                for (const Fault& fault : _faults) {
                    if ((fault.operation && *fault.operation != operation.kind) ||
                        (!fault.className.isNull() && !fault.className.equal(operation.target())))
                        continue;
                    switch (fault.kind) {
                    case Fault::Kind::Fails:
                        throw CIMException(fault.status, String(fault.message.c_str()));
                    case Fault::Kind::Hangs:
                        std::this_thread::sleep_for(fault.delay);
                        break;
                    case Fault::Kind::AnswersNothing:
                        return Answer();
                    }
                }
                return _server.perform(operation);
            }};
}

} // namespace embedded::routing
