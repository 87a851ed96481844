// The rules of getting an association, which all classes of associations share: the wanted ends
// come back, whatever they are.
#pragma once

#include "support/AssociationTest.h"

namespace testsupport {

/// An association class and how it is got.
struct EchoClass {
    std::string name;
    End first;  ///< its reference class empty when it is that of the wanted end
    End second; ///< likewise; the paths are such as a client may want
    Lines startLines;
    Lines exitLines;
    /// One of those around the object manager: the instance has the wanted path, and what is no
    /// path is an empty end. Else the instance has the path that its class gives it, and what is no
    /// path is an error.
    bool isAroundManager;
    std::function<Pegasus::CIMInstance(ServerProfileProvider&, const Pegasus::CIMObjectPath&,
                                       Pegasus::InstanceResponseHandler&)>
        get;
};

class EchoTest : public AssociationTest {
  protected:
    struct Got {
        Outcome outcome;
        Pegasus::CIMInstance result;
    };

    Got get(const EchoClass& wanted, const Keys& keys, std::size_t accepted = ~std::size_t(0)) {
        Got got;
        got.outcome = observe<InstanceRecorder>(
            [&](InstanceRecorder& handler) {
                got.result =
                    wanted.get(provider, pathOf(wanted.name, keys, requestNameSpace), handler);
            },
            accepted);
        return got;
    }

    /// Expects the ends `first` and `second` (empty: no end) back for `keys`, from nowhere else.
    void expectBack(const EchoClass& wanted, const Keys& keys, const std::string& first,
                    const std::string& second) {
        const Got got = get(wanted, keys);
        const std::string path = wanted.isAroundManager
                                     ? text(pathOf(wanted.name, keys, requestNameSpace))
                                     : wanted.name;
        const std::string instance = wanted.name + "\n  " + path + "\n" +
                                     property(wanted.first, first) +
                                     property(wanted.second, second);
        Lines delivered;
        for (const std::string& one : got.outcome.delivered) {
            // The keys have the types that the client gave them.
            delivered.push_back(withoutTypes(one));
        }
        EXPECT_EQ(got.outcome.thrown, "");
        EXPECT_EQ(delivered, Lines{instance});
        EXPECT_EQ(withoutTypes(describeObject(got.result)), instance);
        EXPECT_EQ(got.outcome.trace, traceLines(joined({wanted.startLines, wanted.exitLines})));
        EXPECT_EQ(got.outcome.calls, Lines());
        EXPECT_EQ(got.outcome.processingCalls + got.outcome.completeCalls, 0U);
    }

    void expectAllRules(const EchoClass& wanted) {
        SCOPED_TRACE(wanted.name);
        const std::string first = "//elsewhere.example.net/root/other:" + wanted.first.path;
        const std::string second = wanted.second.path;
        const std::string ownFirst = ownPath(requestNameSpace, wanted.first.path);
        const std::string ownSecond = ownPath(requestNameSpace, wanted.second.path);
        const std::string& one = wanted.first.role;
        const std::string& two = wanted.second.role;
        {
            SCOPED_TRACE("host and namespace of the ends are the module's and the request's");
            expectBack(wanted, {{one, first}, {two, second}}, ownFirst, ownSecond);
            expectBack(wanted, {{two, first}, {one, second}}, ownSecond, ownFirst);
        }
        {
            SCOPED_TRACE("names of keys in any case");
            expectBack(wanted, {{inCase(one, false), first}, {inCase(two, true), second}}, ownFirst,
                       ownSecond);
            expectBack(wanted, {{inCase(one, true), first}, {inCase(two, false), second}}, ownFirst,
                       ownSecond);
        }
        {
            SCOPED_TRACE("a missing key leaves an empty end");
            expectBack(wanted, {{two, second}}, "", ownSecond);
            expectBack(wanted, {{one, first}}, ownFirst, "");
            expectBack(wanted, {}, "", "");
        }
        {
            SCOPED_TRACE("other keys are ignored, whatever they hold");
            expectBack(wanted,
                       {{one + "s", "no path"}, {one, first}, {two, second}, {"Zone", "no path"}},
                       ownFirst, ownSecond);
        }
        {
            SCOPED_TRACE("the later of two keys of one name counts");
            expectBack(wanted,
                       {{one, second}, {inCase(one, true), first}, {two, first}, {two, second}},
                       ownFirst, ownSecond);
        }
        {
            SCOPED_TRACE("ends that no server holds");
            expectBack(wanted, {{one, "CIM_Any.Id=\"1\""}, {two, "Other_Thing.A=\"x\",B=2"}},
                       ownPath(requestNameSpace, "CIM_Any.Id=\"1\""),
                       ownPath(requestNameSpace, "Other_Thing.A=\"x\",B=2"));
        }
        if (wanted.isAroundManager) {
            expectEmptyEnds(wanted);
        } else {
            SCOPED_TRACE("what is no path is an error of the parser");
            for (const Keys& keys :
                 {Keys{{one, "no path"}, {two, second}}, Keys{{one, first}, {two, ""}}}) {
                const Got got = get(wanted, keys);
                EXPECT_NE(got.outcome.thrown.find("Exception malformed object name: "),
                          std::string::npos)
                    << got.outcome.thrown;
                EXPECT_EQ(got.outcome.delivered, Lines());
                EXPECT_EQ(got.outcome.trace, traceLines(wanted.startLines));
            }
        }
        {
            SCOPED_TRACE("an exception of the handler passes");
            const Got got = get(wanted, {{one, first}, {two, second}}, 0);
            EXPECT_EQ(got.outcome.thrown, refusal);
            EXPECT_EQ(got.outcome.trace, traceLines(wanted.startLines));
        }
    }

    /// Expects an empty end for each key whose value is no path, and the instance all the same.
    void expectEmptyEnds(const EchoClass& wanted) {
        const std::string& one = wanted.first.role;
        const std::string& two = wanted.second.role;
        const std::string first = ownPath(requestNameSpace, wanted.first.path);
        const std::string second = ownPath(requestNameSpace, wanted.second.path);
        for (const char* noPath : {"", " ", "no path", "5", "\"", "CIM_X.Id", "CIM_X.Id=\"1",
                                   "root/cimv2:", "//host/CIM_X.Id=\"1\"",
                                   "//no host/root/cimv2:CIM_X.Id=\"1\"", "Z\xC3\xBCrich!"}) {
            SCOPED_TRACE(std::string("no path: ") + noPath);
            expectBack(wanted, {{one, noPath}, {two, second}}, "", second);
            expectBack(wanted, {{one, first}, {two, noPath}}, first, "");
            expectBack(wanted, {{one, noPath}, {two, noPath}}, "", "");
            {
                SCOPED_TRACE("the later of two keys of one name counts");
                expectBack(
                    wanted,
                    {{one, first}, {inCase(one, true), noPath}, {two, noPath}, {two, second}}, "",
                    second);
                expectBack(
                    wanted,
                    {{one, noPath}, {one, first}, {two, second}, {inCase(two, false), noPath}},
                    first, "");
            }
        }
    }

    /// Expects the association of `path`, one that the module gave out, with the ends `first` and
    /// `second`, by the operation that a server calls.
    void expectGotAgain(const EchoClass& wanted, const Pegasus::CIMObjectPath& path,
                        const std::string& first, const std::string& second) {
        const Outcome got = observe<InstanceRecorder>([&](InstanceRecorder& handler) {
            provider.getInstance(Pegasus::OperationContext(), path, false, false,
                                 Pegasus::CIMPropertyList(), handler);
        });
        EXPECT_EQ(got.delivered,
                  Lines{wanted.name + "\n  " + describePath(path) + "\n" +
                        property(wanted.first, first) + property(wanted.second, second)});
        EXPECT_EQ(got.completeCalls, 1U);
    }

  private:
    static std::string inCase(std::string name, bool upper) {
        for (char& c : name)
            c = static_cast<char>(upper ? std::toupper(static_cast<unsigned char>(c))
                                        : std::tolower(static_cast<unsigned char>(c)));
        return name;
    }
    static std::string withoutTypes(std::string described) {
        const std::string note = " (with other types of keys)";
        const std::size_t at = described.find(note);
        return at == std::string::npos ? described : described.erase(at, note.size());
    }
    static std::string property(const End& end, const std::string& path) {
        std::string referenceClass = end.referenceClass;
        if (referenceClass.empty() && !path.empty())
            referenceClass = text(
                Pegasus::CIMObjectPath(Pegasus::String(path.c_str())).getClassName().getString());
        return "  " + end.role + " -> " + referenceClass + ": " + path + "\n";
    }
};

} // namespace testsupport
