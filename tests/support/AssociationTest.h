// Associations as comparable texts, and a server that knows the objects at their ends.
#pragma once

#include "support/ModuleTest.h"
#include "support/RecordingHandlers.h"

#include <Pegasus/Provider/ProviderException.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

namespace testsupport {

/// The namespace of the requests, which is neither that of the catalogue nor of the server's
/// objects.
inline const std::string requestNameSpace = "root/request";

/// A path of the module's own, with the host of the moment.
inline std::string ownPath(const std::string& nameSpace, const std::string& rest) {
    return "//paths.example.net/" + nameSpace + ":" + rest;
}

inline std::string profilePath(const std::string& id,
                               const std::string& nameSpace = requestNameSpace) {
    return ownPath(nameSpace, "CIM_RegisteredProfile.InstanceID=\"" + id + "\"");
}

inline std::string subProfilePath(const std::string& id,
                                  const std::string& nameSpace = requestNameSpace) {
    return ownPath(nameSpace, "CIM_RegisteredSubProfile.InstanceID=\"" + id + "\"");
}

inline const std::string identityPath =
    ownPath("root/cimv2", "ORVEX_SoftwareIdentity.InstanceID=\"OrvexSI1\"");
inline const std::string hostPath =
    ownPath("root/cimv2", "ORVEX_ObjectManagerHost.CreationClassName=\"ORVEX_ObjectManagerHost\","
                          "Name=\"switch1.example.net\"");

// What the server holds, as it names it: hosts and namespaces differ from the request's, and may be
// missing.
inline const Lines objectManagers = {
    "//server.example.net/root/interop:PG_ObjectManager.Name=\"manager1\"",
    "PG_ObjectManager.Name=\"manager2\""};
inline const Lines mechanisms = {
    "//server.example.net/root/interop:PG_CIMXMLCommunicationMechanism.Name=\"mechanism1\"",
    "root/interop:PG_CIMXMLCommunicationMechanism.Name=\"mechanism2\""};
inline const Lines nameSpaces = {
    "//server.example.net/root/interop:PG_Namespace.Name=\"root/cimv2\"",
    "PG_Namespace.Name=\"root/interop\""};
inline const Lines fabrics = {"//switch9.example.net/root/fabric:ORVEX_Vsan.Name=\"vsan1\"",
                              "ORVEX_Vsan.Name=\"vsan2\""};
inline const Lines switches = {
    "//switch9.example.net/root/fabric:ORVEX_ComputerSystem.Name=\"chassis\""};
inline const Lines localSwitches = {
    "//switch9.example.net/root/fabric:ORVEX_PhysicalComputerSystem.Name=\"localswitch\""};

// Texts of what is delivered

/// The text of the path; says so when the types of its keys are not those that the text has.
inline std::string describePath(const Pegasus::CIMObjectPath& path) {
    const std::string asText = text(path);
    const bool saysAll = asText.empty() || Pegasus::CIMObjectPath(path.toString()).identical(path);
    return asText + (saysAll ? "" : " (with other types of keys)");
}

/// References as "Name -> ReferenceClass: path", others as by describe(); then what an
/// association's property should not have.
inline std::string describeProperty(const Pegasus::CIMConstProperty& property) {
    std::string all;
    if (property.getType() == Pegasus::CIMTYPE_REFERENCE) {
        Pegasus::CIMObjectPath end;
        property.getValue().get(end);
        all = text(property.getName().getString()) + " -> " +
              text(property.getReferenceClassName().getString()) + ": " + describePath(end);
    } else {
        all = describe(property);
    }
    all += property.getArraySize() != 0 ? " (of a size)" : "";
    all += property.getClassOrigin().isNull() ? "" : " (with a class origin)";
    all += property.getPropagated() ? " (propagated)" : "";
    return all;
}

/// Class, path, properties and number of qualifiers, if any, a line each.
inline std::string describeObject(const Pegasus::CIMInstance& instance) {
    const Pegasus::CIMConstInstance readable = instance;
    std::string all = text(readable.getClassName().getString()) + "\n  " +
                      describePath(readable.getPath()) + "\n";
    for (Pegasus::Uint32 i = 0; i < readable.getPropertyCount(); ++i)
        all += "  " + describeProperty(readable.getProperty(i)) + "\n";
    if (readable.getQualifierCount() != 0)
        all += "  qualifiers: " + std::to_string(readable.getQualifierCount()) + "\n";
    return all;
}

inline Lines describeAll(const std::vector<Pegasus::CIMObjectPath>& paths) {
    Lines all;
    for (const Pegasus::CIMObjectPath& path : paths)
        all.push_back(describePath(path));
    return all;
}

template <class Object>
Lines describeAll(const std::vector<Object>& objects) {
    Lines all;
    for (const Object& object : objects)
        all.push_back(object.isUninitialized() ? "uninitialised"
                                               : describeObject(Pegasus::CIMInstance(object)));
    return all;
}

// Texts of what should be delivered

/// One of the two references of an association, as its property says it.
struct End {
    std::string role;
    std::string referenceClass;
    std::string path;
};

/// An association and the order of its properties; its keys are always in that of their names.
struct Association {
    std::string className;
    End first;
    End second;
    std::string nameSpace = requestNameSpace;

    std::string path() const {
        const End& one = first.role < second.role ? first : second;
        const End& other = first.role < second.role ? second : first;
        return ownPath(nameSpace, className + "." + key(one) + "," + key(other));
    }
    std::string instance() const {
        return className + "\n  " + path() + "\n" + property(first) + property(second);
    }
    /// As the enumeration or traversal delivers it that is asked for names or for instances.
    std::string as(bool name) const { return name ? path() : instance(); }

  private:
    static std::string key(const End& end) {
        std::string escaped;
        for (const char c : end.path)
            escaped += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
        return end.role + "=\"" + escaped + "\"";
    }
    static std::string property(const End& end) {
        return "  " + end.role + " -> " + end.referenceClass + ": " + end.path + "\n";
    }
};

/// The associations as they are delivered.
inline Lines asNamesOr(bool names, const std::vector<Association>& associations) {
    Lines all;
    for (const Association& association : associations)
        all.push_back(association.as(names));
    return all;
}

// Exceptions

/// What left `work`, as a text; empty for nothing.
template <class Work>
std::string thrownBy(Work work) {
    try {
        work();
        return "";
    } catch (const Pegasus::CIMException& exception) {
        return "CIMException " + std::to_string(exception.getCode()) + " " +
               text(exception.getMessage());
    } catch (const Pegasus::Exception& exception) {
        return "Exception " + text(exception.getMessage());
    } catch (const std::bad_cast&) {
        return "std::bad_cast";
    } catch (const std::exception& exception) {
        return std::string("std::exception ") + exception.what();
    }
}

/// One kind of exception, and what thrownBy() says of it.
struct Failure {
    std::string thrown;
    std::function<void()> raise;
    std::string message; ///< of a Pegasus::Exception
};

inline std::vector<Failure> joined(std::vector<Failure> one, const std::vector<Failure>& other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

/// How a server refuses ...
inline const std::vector<Failure>& serverFailures() {
    static const std::vector<Failure> all = {
        {"CIMException 7 no provider",
         [] { throw Pegasus::CIMException(Pegasus::CIM_ERR_NOT_SUPPORTED, "no provider"); },
         "no provider"},
        {"CIMException 2 not yours", [] { throw Pegasus::CIMAccessDeniedException("not yours"); },
         "not yours"}};
    return all;
}

/// ... what else the provider library throws ...
inline const std::vector<Failure>& libraryFailures() {
    static const std::vector<Failure> all = {
        {"Exception connection lost",
         [] { throw Pegasus::Exception(Pegasus::String("connection lost")); }, "connection lost"}};
    return all;
}

/// ... and what passes through every read-back.
inline const std::vector<Failure>& otherFailures() {
    static const std::vector<Failure> all = {
        {"std::exception out of range", [] { throw std::out_of_range("out of range"); }, ""},
        {"std::exception std::bad_alloc", [] { throw std::bad_alloc(); }, ""}};
    return all;
}

/// What a function did.
struct Outcome {
    Lines delivered;
    Lines trace;
    Lines calls; ///< to the server
    std::string thrown;
    unsigned processingCalls = 0;
    unsigned completeCalls = 0;
};

/// A provider with its catalogue before a server with the objects above. The host was renamed since
/// the catalogue was built, so that its paths and those made for a request differ.
class AssociationTest : public ModuleTest {
  protected:
    AssociationTest() {
        buildCatalogue();
        _hostName = Pegasus::String("paths.example.net");
        publish("CIM_ObjectManager", objectManagers);
        publish("CIM_CIMXMLCommunicationMechanism", mechanisms);
        publish("CIM_Namespace", nameSpaces);
        publish("ORVEX_Vsan", fabrics);
        publish("ORVEX_ComputerSystem", switches);
        publish("ORVEX_PhysicalComputerSystem", localSwitches);
        server->calls.clear();
    }

    /// Objects that have a property besides their path.
    void publish(const std::string& className, const Lines& paths) {
        std::vector<Pegasus::CIMInstance> objects;
        for (const std::string& path : paths) {
            const Pegasus::CIMObjectPath name{Pegasus::String(path.c_str())};
            Pegasus::CIMInstance object(name.getClassName());
            object.addProperty(Pegasus::CIMProperty(
                Pegasus::CIMName("Caption"), Pegasus::CIMValue(Pegasus::String("of the server"))));
            object.setPath(name);
            objects.push_back(object);
        }
        server->publish(className, objects);
    }

    /// The texts of such objects.
    static Lines serverObjects(const Lines& paths) {
        Lines all;
        for (const std::string& path : paths) {
            const Pegasus::CIMObjectPath name{Pegasus::String(path.c_str())};
            all.push_back(text(name.getClassName().getString()) + "\n  " + path +
                          "\n  Caption: string of the server\n");
        }
        return all;
    }

    /// An enumeration that delivers instances or, without them, names.
    using Helper = void (ServerProfileProvider::*)(Pegasus::String, Pegasus::ResponseHandler&,
                                                   const Pegasus::String&, bool instances);

    Outcome enumerate(Helper helper, bool names, std::size_t accepted = ~std::size_t(0)) {
        const auto call = [&](Pegasus::ResponseHandler& handler) {
            (provider.*helper)("ignored", handler, requestNameSpace.c_str(), !names);
        };
        return names ? observe<PathRecorder>(call, accepted)
                     : observe<InstanceRecorder>(call, accepted);
    }

    /// Does the same with a handler of another kind.
    template <class Recorder>
    Outcome enumerateInto(Helper helper, bool names) {
        return observe<Recorder>([&](Recorder& handler) {
            (provider.*helper)("ignored", handler, requestNameSpace.c_str(), !names);
        });
    }

    /// Expects std::bad_cast from every kind of handler that does not take what is delivered, after
    /// the lines and calls before the first delivery.
    void expectOnlyItsKindOfHandler(Helper helper, const Lines& messages, std::size_t calls) {
        for (const Outcome& outcome : {enumerateInto<InstanceRecorder>(helper, true),
                                       enumerateInto<ObjectRecorder>(helper, true),
                                       enumerateInto<PathRecorder>(helper, false),
                                       enumerateInto<ObjectRecorder>(helper, false)}) {
            EXPECT_EQ(outcome.thrown, "std::bad_cast");
            EXPECT_EQ(outcome.delivered, Lines());
            EXPECT_EQ(outcome.trace, traceLines(messages));
            EXPECT_EQ(outcome.calls.size(), calls);
        }
    }

    /// What `call(handler)` does; delivered things beyond `accepted` are refused with an exception.
    template <class Recorder, class Call>
    Outcome observe(Call call, std::size_t accepted = ~std::size_t(0)) {
        Recorder handler;
        handler.onDeliver = [accepted](std::size_t before) {
            if (before == accepted)
                throw Pegasus::CIMException(Pegasus::CIM_ERR_FAILED, "enough");
        };
        Outcome outcome;
        server->calls.clear();
        outcome.trace = tracedBy([&] { outcome.thrown = thrownBy([&] { call(handler); }); });
        outcome.delivered = describeAll(handler.delivered);
        outcome.calls = server->calls;
        outcome.processingCalls = handler.processingCalls;
        outcome.completeCalls = handler.completeCalls;
        return outcome;
    }
};

/// What leaves a handler that refuses a delivery.
inline const std::string refusal = "CIMException 1 enough";

/// Expects the results, the trace and no more of `outcome`.
inline void expectOutcome(const Outcome& outcome, const Lines& delivered, const Lines& messages) {
    EXPECT_EQ(outcome.thrown, "");
    EXPECT_EQ(outcome.delivered, delivered);
    EXPECT_EQ(outcome.trace, traceLines(messages));
    EXPECT_EQ(outcome.processingCalls + outcome.completeCalls, 0U);
}

} // namespace testsupport
