#include "cimxml/Operations.h"

#include "cimxml/Parameters.h"
#include "embedding/Text.h"
#include "embedding/XmlWriter.h"

#include <string_view>

namespace embedded::cimxml {

using namespace Pegasus;
using namespace Pegasus::embedding;

namespace {

InstanceFilter filterOf(const Operation& asked) {
    return {asked.includeQualifiers, asked.includeClassOrigin, asked.propertyList};
}

// In the order of the statuses in DSP0200 1.4, clause 5.3.2.24.
void checkOpening(const Call& call) {
    const Pulled& pulled = call.pulled;
    const CIMObjectPath& source = call.operation.objectName;
    if (!source.getClassName().isNull() && source.getKeyBindings().size() == 0)
        throw CIMException(CIM_ERR_INVALID_PARAMETER,
                           "InstanceName needs the keys of an instance.");
    if (pulled.timeOut.count() == 0 || pulled.timeOut > limits::enumerationLongest)
        throw CIMException(CIM_ERR_INVALID_OPERATION_TIMEOUT,
                           fromUtf8("OperationTimeout is from 1 to " +
                                    std::to_string(limits::enumerationLongest.count()) +
                                    " seconds."));
    if (pulled.continuesOnError)
        throw CIMException(CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED,
                           "This server does not continue an enumeration after an error.");
    if (pulled.isFiltered)
        throw CIMException(CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED,
                           "This server does not filter enumerations by queries.");
}

// One function for each thing that an operation answers with.
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

} // namespace

Call readCall(const Request& request, const routing::Caller& caller,
              routing::CimOperations& operations) {
    const Signature& signature = signatureOf(request.method);
    const SoleKey soleKey = [&](const CIMName& className) {
        const std::vector<CIMName> keys = operations.keyNames(request.nameSpace, className);
        if (keys.size() != 1)
            throw CIMException(CIM_ERR_INVALID_PARAMETER,
                               String("A key value of class ") + className.getString() +
                                   String(" needs its name: the class has not exactly one key."));
        return keys[0];
    };
    Call call;
    call.operation.kind = signature.kind;
    call.operation.caller = caller;
    call.operation.nameSpace = request.nameSpace;
    call.operation.fullPaths = signature.step == PullStep::Open;
    call.pulled.step = signature.step;
    readParameters(request.call, signature.parameters, soleKey, call);
    if (signature.step == PullStep::Open)
        checkOpening(call);
    return call;
}

void appendAnswered(std::string& out, const routing::Answered& answered, const Call& call) {
    std::visit(ElementWriter{out, call}, answered);
}

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

void answerExtrinsic(const Request& request, const routing::Caller& caller,
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

} // namespace embedded::cimxml
