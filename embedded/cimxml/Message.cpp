#include "cimxml/Message.h"

#include "cimxml/Operations.h"
#include "cimxml/Request.h"
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
std::string error(Pegasus::CIMStatusCode code, const Pegasus::String& message) {
    Pegasus::String description(Pegasus::cimStatusCodeToString(code));
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
    } catch (const Pegasus::CIMException& exception) {
        return error(exception.getCode(), exception.getMessage());
    } catch (const Pegasus::Exception& exception) {
        return error(Pegasus::CIM_ERR_FAILED, exception.getMessage());
    }
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
        _error =
            errorOf([&] { throw Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, fromUtf8(why)); });
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
                throw Pegasus::CIMException(Pegasus::CIM_ERR_INVALID_NAMESPACE,
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
            appendAnswered(out, answered, _call);
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
