#include "cimxml/Message.h"

#include "cimxml/Call.h"
#include "embedding/Text.h"
#include "embedding/XmlWriter.h"
#include "limits/Limits.h"

#include <Pegasus/Common/CIMStatusCode.h>
#include <Pegasus/Common/Exception.h>

#include <utility>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;

namespace {

constexpr std::size_t pieceSize = std::size_t{64} * 1024;

/// What a request of `size` bytes made the process take goes back to the system when this does: the
/// allocator keeps what lies between small blocks, which of a large one comes to ten times its
/// size.
class MemoryTrim {
  public:
    explicit MemoryTrim(std::size_t size) : _isLarge(size > kept) {}
    MemoryTrim(const MemoryTrim&) = delete;
    ~MemoryTrim() {
#ifdef __GLIBC__
        if (_isLarge)
            malloc_trim(0);
#endif
    }

  private:
    /// Reading one of more bytes takes so long that this does not count.
    static constexpr std::size_t kept = std::size_t{256} * 1024;

    const bool _isLarge;
};

// DESCRIPTION starts with the name of the status; without a message it is the name alone.
std::string error(CIMStatusCode code, const String& message) {
    String description(cimStatusCodeToString(code));
    if (message.size() != 0)
        description.append(": ").append(message.subString(0, limits::errorLength));
    if (message.size() > limits::errorLength)
        description.append("...");
    std::string out = "<ERROR CODE=\"" + std::to_string(code) + "\" DESCRIPTION=\"";
    appendEscaped(out, description);
    return out += "\"/>"; // no line feed here
}

/// What `work` does; "" or the ERROR element when it throws an exception of CIM's.
template <class Work>
std::string errorOf(const Work& work) {
    try {
        work();
        return {};
    } catch (const CIMException& exception) {
        return error(exception.getCode(), exception.getMessage());
    } catch (const Exception& exception) {
        return error(CIM_ERR_FAILED, exception.getMessage());
    }
}

InstanceFilter filterOf(const Operation& asked) {
    return {asked.includeQualifiers, asked.includeClassOrigin, asked.propertyList};
}

// Appends a thing of the answer to `call` as an element of an IRETURNVALUE: one function for each
// thing that an operation answers with.
struct ElementWriter {
    std::string& out;
    const Call& call;

    InstanceFilter filter() const { return filterOf(call.operation); }

    void operator()(const CIMClass& cimClass) const { appendClass(out, cimClass); }
    void operator()(const CIMName& name) const { appendClassName(out, name); }
    void operator()(const CIMValue& value) const { appendValue(out, value); }
    void operator()(const CIMQualifierDecl& declaration) const {
        appendQualifierDeclaration(out, declaration);
    }

    void operator()(const CIMInstance& instance) const {
        if (call.operation.kind == OperationKind::GetInstance) {
            appendInstance(out, instance, filter());
            return;
        }
        appendElement(out, "VALUE.NAMEDINSTANCE", [&] {
            appendInstanceName(out, instance.getPath());
            appendInstance(out, instance, filter());
        });
    }

    // Names of classes answer a question about a class. A client that wrote its class as an
    // INSTANCENAME without keys gets theirs in that form, too: wbemcli, for one, reads no
    // CLASSPATH.
    void operator()(const CIMObjectPath& path) const {
        switch (call.operation.kind) {
        case OperationKind::AssociatorNames:
        case OperationKind::ReferenceNames:
            appendElement(out, "OBJECTPATH", [&] {
                (call.objectIsClass ? appendClassPath : appendInstancePath)(out, path);
            });
            return;
        default:
            appendInstanceName(out, path);
        }
    }

    void operator()(const CIMObject& object) const {
        appendElement(
            out, "VALUE.OBJECTWITHPATH",
            [&] {
                (object.isClass() ? appendClassPath : appendInstancePath)(out, object.getPath());
                appendObject(out, object, filter());
            });
    }
};

// Appends one thing of the pulled answer to `operation`, with the whole path.
void appendPulled(std::string& out, const routing::Answered& answered, const Operation& operation) {
    if (const auto* path = std::get_if<CIMObjectPath>(&answered)) {
        appendInstancePath(out, *path);
        return;
    }
    const auto* instance = std::get_if<CIMInstance>(&answered);
    const CIMObject object = instance ? CIMObject(*instance) : std::get<CIMObject>(answered);
    appendElement(out, "VALUE.INSTANCEWITHPATH", [&] {
        appendInstancePath(out, object.getPath());
        appendObject(out, object, filterOf(operation));
    });
}

// There are no method providers here. Says whether the class has the method.
[[noreturn]] void answerExtrinsic(const Request& request, const routing::Caller& caller,
                                  routing::CimOperations& operations) {
    Operation get;
    get.kind = OperationKind::GetClass;
    get.caller = caller;
    get.nameSpace = request.nameSpace;
    get.className = request.className;
    get.propertyList.set(Array<CIMName>()); // methods are enough
    const auto found = routing::onlyOf<CIMClass>(operations.perform(get));
    const String method = fromUtf8(request.method);
    if (found.findMethod(CIMName(method)) == PEG_NOT_FOUND)
        throw CIMException(CIM_ERR_METHOD_NOT_FOUND, method);
    throw CIMException(CIM_ERR_METHOD_NOT_AVAILABLE,
                       String("No provider for method ") + method + String(" of class ") +
                           request.className.getString() + String("."));
}

class ReplyToRequest final : public ReplyDocument {
  public:
    ReplyToRequest(const std::string& body, const Headers& headers, const routing::Caller& caller,
                   routing::CimOperations& operations, routing::Enumerations& enumerations)
        : _memoryTrim(body.size()) {
        const Request request(body, headers);
        _messageId = request.messageId;
        _method = request.method;
        _response = request.isIntrinsic() ? "IMETHODRESPONSE" : "METHODRESPONSE";
        _error = errorOf([&] {
            if (!request.isIntrinsic())
                answerExtrinsic(request, caller, operations);
            _call = readCall(request, caller, operations);
            plan(operations, enumerations);
        });
    }

    const std::vector<const routing::Module*>& modules() const override { return _plan.modules; }
    void giveUp(const std::string& why) override {
        _plan = {};
        _enumeration = {};
        _error = errorOf([&] { throw CIMException(CIM_ERR_FAILED, fromUtf8(why)); });
    }
    bool ended() const override { return _stage == Stage::Ended; }

    bool next(std::string& out) override {
        if (_stage == Stage::Ended)
            return false;
        if (_stage == Stage::Before)
            begin(out);
        else if (!fill(out, out.size()))
            end(out);
        return true;
    }

  private:
    enum class Stage { Before, Within, Ended };

    void plan(routing::CimOperations& operations, routing::Enumerations& enumerations) {
        const Pulled& pulled = _call.pulled;
        if (pulled.step == PullStep::Open) {
            _enumeration = enumerations.open(_call.operation, pulled.timeOut);
        } else if (pulled.step == PullStep::Pull || pulled.step == PullStep::Close) {
            if (!operations.hasNameSpace(_call.operation.nameSpace))
                throw CIMException(CIM_ERR_INVALID_NAMESPACE,
                                   _call.operation.nameSpace.getString());
            if (pulled.step == PullStep::Pull)
                _enumeration = enumerations.take(pulled.context, _call.operation);
            else
                enumerations.close(pulled.context, _call.operation);
            return;
        }
        _plan = operations.plan(_enumeration ? _enumeration->operation() : _call.operation);
    }

    void begin(std::string& out) {
        const std::size_t start = out.size();
        out += "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
               "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
               "<MESSAGE";
        appendAttribute(out, "ID", fromUtf8(_messageId));
        out += " PROTOCOLVERSION=\"1.0\">\n"
               "<SIMPLERSP>\n"
               "<";
        out += _response;
        appendAttribute(out, "NAME", fromUtf8(_method));
        out += ">\n";
        const std::size_t content = out.size();
        if (_error.empty())
            _error = errorOf([&] { perform(out, start); });
        if (!_error.empty()) {
            out.resize(content);
            out += _error;
            _returns = false;
            _enumeration = {};
            end(out);
        }
    }

    void perform(std::string& out, std::size_t start) {
        routing::Answer answer;
        if (_plan.perform) {
            answer = _plan.perform();
            _plan = {};
        }
        if (_call.pulled.step == PullStep::Open) {
            _enumeration.charge(answer.held);
            _enumeration->setAnswer(std::move(answer.next));
        } else {
            _cursor = std::move(answer.next);
        }
        _stage = Stage::Within;
        const std::size_t before = out.size();
        out += "<IRETURNVALUE>\n";
        const std::size_t within = out.size();
        const bool more = fill(out, start);
        // An empty answer of one source has no IRETURNVALUE, one of several has an empty one, but
        // for one that is pulled.
        _returns = more || out.size() != within || (answer.sources > 1 && !_enumeration);
        if (!_returns)
            out.resize(before);
        if (!more)
            end(out);
    }

    /// Appends objects until the piece that began at `start` is long enough; false if that was all.
    bool fill(std::string& out, std::size_t start) {
        routing::Answered answered;
        if (_enumeration) {
            for (std::uint32_t& left = _call.pulled.maximum; out.size() - start < pieceSize;
                 --left) {
                if (left == 0 || !_enumeration->next(answered))
                    return false;
                appendPulled(out, answered, _enumeration->operation());
            }
            return true;
        }
        while (out.size() - start < pieceSize) {
            if (!_cursor || !_cursor(answered))
                return false;
            std::visit(ElementWriter{out, _call}, answered);
        }
        return true;
    }

    void end(std::string& out) {
        _cursor = nullptr;
        _stage = Stage::Ended;
        if (_returns)
            out += "</IRETURNVALUE>\n";
        if (_enumeration)
            endPull(out);
        out += "</";
        out += _response;
        out += ">\n</SIMPLERSP>\n</MESSAGE>\n</CIM>\n";
    }

    /// The output parameters of what is pulled. The context is given back, or closed at the end.
    void endPull(std::string& out) {
        const bool more = _enumeration->hasMore();
        out += "<PARAMVALUE NAME=\"EndOfSequence\" PARAMTYPE=\"boolean\">\n<VALUE>";
        out += more ? "FALSE" : "TRUE";
        out += "</VALUE>\n</PARAMVALUE>\n"
               "<PARAMVALUE NAME=\"EnumerationContext\" PARAMTYPE=\"string\">\n<VALUE>";
        if (more) {
            out += _enumeration.context();
            _enumeration.giveBack();
        }
        _enumeration = {};
        out += "</VALUE>\n</PARAMVALUE>\n";
    }

    MemoryTrim _memoryTrim; // goes last
    std::string _messageId;
    std::string _method;
    const char* _response = "";
    Call _call;                             // which plan and cursor refer to
    routing::EnumerationLease _enumeration; // so that these refer to its operation
    routing::Plan _plan;
    std::string _error;
    routing::Cursor _cursor;
    bool _returns = false; // there is an IRETURNVALUE to be closed
    Stage _stage = Stage::Before;
};

} // namespace

std::shared_ptr<ReplyDocument> replyTo(const std::string& body, const Headers& headers,
                                       const routing::Caller& caller,
                                       routing::CimOperations& operations,
                                       routing::Enumerations& enumerations) {
    return std::make_shared<ReplyToRequest>(body, headers, caller, operations, enumerations);
}

} // namespace embedded::cimxml
