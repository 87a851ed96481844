// The four operations of a traversal asked alike, and the rules that all traversals share.
#pragma once

#include "support/AssociationTest.h"

#include <map>
#include <optional>
#include <set>
#include <type_traits>

namespace testsupport {

inline const Lines& traversalOperations() {
    static const Lines names = {"associatorNames", "associators", "referenceNames", "references"};
    return names;
}

inline bool isAssociators(const std::string& operation) { return operation[0] == 'a'; }
inline bool deliversNames(const std::string& operation) {
    return operation == "associatorNames" || operation == "referenceNames";
}

/// What a client asks from a source.
struct Question {
    std::string key;
    std::optional<std::string> filter = "";      ///< chooses the associations; none: a null pointer
    std::optional<std::string> resultClass = ""; ///< of associators only; none: a null pointer
    std::string role{};
    std::string resultRole{};
    bool flags = false;
    Pegasus::CIMPropertyList propertyList{};
    Pegasus::CIMObjectPath source{};
};

inline const char* pointer(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

/// The functions of one source class.
struct Source {
    using Provider = ServerProfileProvider;
    template <class Handler>
    using Ask = std::function<void(Provider&, const Question&, Handler&)>;

    Ask<Pegasus::ObjectPathResponseHandler> associatorNames;
    Ask<Pegasus::ObjectResponseHandler> associators;
    Ask<Pegasus::ObjectPathResponseHandler> referenceNames;
    Ask<Pegasus::ObjectResponseHandler> references;
};

/// `source...` of the functions of references is the path of the source, for the classes that take
/// it.
template <class AssociatorNames, class Associators, class... SourcePath>
Source
sourceOf(AssociatorNames associatorNames, Associators associators,
         void (ServerProfileProvider::*referenceNames)(Pegasus::String, const char*, const char*,
                                                       Pegasus::ObjectPathResponseHandler&,
                                                       const Pegasus::String&, SourcePath...),
         void (ServerProfileProvider::*references)(Pegasus::String, const char*, const char*, bool,
                                                   bool, const Pegasus::CIMPropertyList&,
                                                   Pegasus::ObjectResponseHandler&,
                                                   const Pegasus::String&, SourcePath...)) {
    using Provider = ServerProfileProvider;
    Source source;
    source.associatorNames = [associatorNames](Provider& provider, const Question& q, auto& to) {
        (provider.*associatorNames)(q.key.c_str(), pointer(q.filter), pointer(q.resultClass),
                                    q.role.c_str(), q.resultRole.c_str(), to,
                                    requestNameSpace.c_str());
    };
    source.associators = [associators](Provider& provider, const Question& q, auto& to) {
        (provider.*associators)(q.key.c_str(), pointer(q.filter), pointer(q.resultClass),
                                q.role.c_str(), q.resultRole.c_str(), q.flags, q.flags,
                                q.propertyList, to, requestNameSpace.c_str());
    };
    source.referenceNames = [referenceNames](Provider& provider, const Question& q, auto& to) {
        if constexpr (sizeof...(SourcePath) == 0) {
            (provider.*referenceNames)(q.key.c_str(), pointer(q.filter), q.role.c_str(), to,
                                       requestNameSpace.c_str());
        } else {
            (provider.*referenceNames)(q.key.c_str(), pointer(q.filter), q.role.c_str(), to,
                                       requestNameSpace.c_str(), q.source);
        }
    };
    source.references = [references](Provider& provider, const Question& q, auto& to) {
        if constexpr (sizeof...(SourcePath) == 0) {
            (provider.*references)(q.key.c_str(), pointer(q.filter), q.role.c_str(), q.flags,
                                   q.flags, q.propertyList, to, requestNameSpace.c_str());
        } else {
            (provider.*references)(q.key.c_str(), pointer(q.filter), q.role.c_str(), q.flags,
                                   q.flags, q.propertyList, to, requestNameSpace.c_str(), q.source);
        }
    };
    return source;
}

/// What one part of a traversal does.
struct Block {
    Lines messages;
    Lines delivered;
    Lines calls{};
};

/// The blocks one after the other.
inline Block joined(const std::vector<Block>& blocks) {
    Block all;
    for (const Block& block : blocks) {
        all = {joined({all.messages, block.messages}), joined({all.delivered, block.delivered}),
               joined({all.calls, block.calls})};
    }
    return all;
}

/// A text in upper and in lower case letters by turns.
inline std::string mixedCase(std::string name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        name[i] = static_cast<char>(i % 2 == 0 ? std::tolower(c) : std::toupper(c));
    }
    return name;
}

/// Every class that is served, and one that is not: filters.
inline const Lines& anyClass() {
    static const Lines names = {"CIM_SubProfileRequiresProfile",
                                "CIM_ReferencedProfile",
                                "CIM_ElementConformsToProfile",
                                "ORVEX_ElementSoftwareIdentity",
                                "CIM_HostedService",
                                "CIM_HostedAccessPoint",
                                "CIM_NamespaceInManager",
                                "CIM_CommMechanismForManager",
                                "CIM_RegisteredProfile",
                                "CIM_RegisteredSubProfile",
                                "ORVEX_ObjectManagerHost",
                                "ORVEX_SoftwareIdentity",
                                "CIM_ObjectManager",
                                "CIM_CIMXMLCommunicationMechanism",
                                "PG_CIMXMLCommunicationMechanism",
                                "CIM_Namespace",
                                "PG_Namespace",
                                "CIM_Dependency",
                                "CIM_HostedServic",
                                "CIM_HostedServices",
                                " ",
                                "no class"};
    return names;
}

class TraversalTest : public AssociationTest {
  protected:
    Outcome ask(const Source& source, const std::string& operation, const Question& question,
                std::size_t accepted = ~std::size_t(0)) {
        const auto names = [&](const auto& function) {
            return observe<PathRecorder>(
                [&](PathRecorder& to) { function(provider, question, to); }, accepted);
        };
        const auto objects = [&](const auto& function) {
            return observe<ObjectRecorder>(
                [&](ObjectRecorder& to) { function(provider, question, to); }, accepted);
        };
        if (operation == "associatorNames")
            return names(source.associatorNames);
        if (operation == "referenceNames")
            return names(source.referenceNames);
        return objects(operation == "associators" ? source.associators : source.references);
    }

    void expectBlock(const Outcome& outcome, const Block& expected) {
        expectOutcome(outcome, expected.delivered, expected.messages);
        EXPECT_EQ(outcome.calls, expected.calls);
    }

    /// Expects every operation to answer `question` with `expected(operation)`, whatever the
    /// roles, the flags and the property list say. Whichever role the source has, some of these
    /// are not its own or not the far end's.
    void expectAnswers(const Source& source, const Question& question,
                       const std::function<Block(const std::string& operation)>& expected) {
        for (const std::string& operation : traversalOperations()) {
            SCOPED_TRACE(operation + " from " + question.key + ", filter " +
                         question.filter.value_or("null") + ", result class " +
                         question.resultClass.value_or("null"));
            const Block block = expected(operation);
            expectBlock(ask(source, operation, question), block);
            Question narrowed = question;
            narrowed.flags = true;
            narrowed.propertyList = Pegasus::CIMPropertyList(Pegasus::Array<Pegasus::CIMName>());
            for (const char* role :
                 {"Antecedent", "Dependent", "ConformantStandard", "ManagedElement", "no role"}) {
                SCOPED_TRACE(role);
                narrowed.role = role;
                narrowed.resultRole = "";
                expectBlock(ask(source, operation, narrowed), block);
                std::swap(narrowed.role, narrowed.resultRole);
                expectBlock(ask(source, operation, narrowed), block);
            }
        }
    }

    using Opening = std::function<Lines(const std::string& operation, const Question& question)>;
    using Chosen =
        std::function<Block(const std::string& operation, const Question& question, int mask)>;

    /// Expects the filter to choose the association classes: one of `bits` by its name in any
    /// letter case, all, as `all`, when it is empty or a null pointer, and none when it is another,
    /// after the opening lines.
    void expectFilterToChoose(const Source& source, Question question,
                              const std::map<std::string, int>& bits, int all,
                              const Opening& opening, const Chosen& chosen) {
        const auto expectMask = [&](const std::string& filter, int mask) {
            question.filter = filter;
            expectAnswers(source, question, [&](const std::string& operation) {
                return chosen(operation, question, mask);
            });
        };
        expectMask("", all);
        for (const auto& [name, bit] : bits) {
            expectMask(name, bit);
            expectMask(mixedCase(name), bit);
        }
        for (const std::string& filter : anyClass()) {
            if (bits.count(filter) == 0) {
                question.filter = filter;
                expectAnswers(source, question, [&](const std::string& operation) {
                    return Block{opening(operation, question), {}, {}};
                });
            }
        }
        question.filter.reset();
        for (const std::string& operation : traversalOperations())
            expectBlock(ask(source, operation, question), chosen(operation, question, all));
    }

    /// Expects the same answers whatever the result class.
    void expectNoNarrowing(const Source& source, Question question, int all, const Chosen& chosen) {
        for (const std::string& resultClass : anyClass()) {
            question.resultClass = resultClass;
            expectAnswers(source, question, [&](const std::string& operation) {
                return chosen(operation, question, all);
            });
        }
    }

    /// Expects what a handler throws that takes `accepted` things to pass after these.
    void expectRefusalToPass(const Source& source, const std::string& operation,
                             const Question& question, std::size_t deliveries) {
        for (std::size_t accepted = 0; accepted < deliveries; ++accepted) {
            const Outcome outcome = ask(source, operation, question, accepted);
            EXPECT_EQ(outcome.thrown, refusal);
            EXPECT_EQ(outcome.delivered.size(), accepted);
        }
    }

    /// Lets both ways of enumerating `className` fail.
    void setFailing(const std::string& className, const std::function<void()>& how) {
        server->fail("enumerateInstanceNames", className, how);
        server->fail("enumerateInstances", className, how);
    }

    /// The far ends as associators deliver them.
    static Lines asFarEnds(const std::string& operation, const Lines& ends) {
        return deliversNames(operation) ? ends : serverObjects(ends);
    }

    /// The module's instances, as its builders make them now.
    std::string hostObject() {
        return built([&] {
            return provider.buildOrvexOMHostInstance("ORVEX_ObjectManagerHost", OrvexOMHost());
        });
    }
    std::string identityObject() {
        return built(
            [&] { return provider.buildOrvexSIInstance("ORVEX_SoftwareIdentity", OrvexSI()); });
    }
    std::string profileObject(Pegasus::Uint32 index) {
        return describeObject(provider.registeredProfiles()[index]);
    }
    std::string subProfileObject(Pegasus::Uint32 index) {
        return describeObject(provider.registeredSubProfiles()[index]);
    }

  private:
    template <class Build>
    static std::string built(Build build) {
        std::string described;
        tracedBy([&] { described = describeObject(build()); });
        return described;
    }
};

/// The flags with which whole instances are read back, whatever the request says.
inline const std::string readFlags = " deep=1 localOnly=0 qualifiers=1 origin=1 properties=all";

inline const Lines hostInstanceLines = {"_getClassFromCIMOM(): className ORVEX_ObjectManagerHost",
                                        "Quil - temp msg", "Quil: temp msg 23",
                                        "OrvexOMHost - destructor(): Start "};
inline const Lines identityInstanceLines = {
    "_getClassFromCIMOM(): className ORVEX_SoftwareIdentity", "Quil: temp msg 23"};
inline const std::string destructorLine = "OrvexOMHost - destructor(): Start ";
inline const std::string profileReferenceLine = "Quil regProfRef() Start";

/// The first lines of most traversals; `startOf` tells by what name each operation goes in them.
inline Lines openingLines(const std::map<std::string, std::string>& startOf,
                          const std::string& operation, const Question& question) {
    const std::string start = " Quil " + startOf.at(operation) + "(): ";
    if (isAssociators(operation)) {
        return {start + "assoc class is " + question.filter.value_or(""),
                start + "result class is " + question.resultClass.value_or("")};
    }
    return {start + "result class is " + question.filter.value_or("")};
}

/// The lines of most traversals once the associations are chosen.
inline Lines chosenLines(int mask, const Question& question) {
    return {" Quil flag is " + std::to_string(mask), " Quil keyValue is " + question.key};
}

/// How the far ends of `className` are read for `operation`.
inline std::string enumeration(const std::string& operation, const std::string& className) {
    return operation == "associators" ? "enumerateInstances root/request " + className + readFlags
                                      : "enumerateInstanceNames root/request " + className;
}

/// The read of a class of the module's own.
inline std::string classCall(const std::string& name) {
    return "getClass root/cimv2 " + name + " localOnly=0 qualifiers=1 origin=0 properties=all";
}

} // namespace testsupport
