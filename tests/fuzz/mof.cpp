// MOF text into a repository: it is loaded whole or refused at a place in it, and what was loaded
// can be found and written.
#include "fuzz/Fuzz.h"

#include "mof/Mof.h"
#include "repository/Repository.h"

#include <embedding/Text.h>
#include <embedding/XmlWriter.h>

#include <algorithm>
#include <optional>
#include <string>

namespace {

using namespace Pegasus;
using embedded::repository::InstanceList;
using embedded::repository::Repository;
using embedded::repository::View;
namespace mof = embedded::mof;

const CIMNamespaceName home("root/fuzz");

const char* const base = R"(
Qualifier Abstract : boolean = false, Scope(class, association, indication), Flavor(Restricted);
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride);
Qualifier Override : string = null, Scope(property, reference, method), Flavor(Restricted);
Qualifier Description : string = null, Scope(any), Flavor(Translatable);
Qualifier Version : string = null, Scope(class, association), Flavor(EnableOverride, Restricted);
Qualifier MaxLen : uint32 = null, Scope(property, method, parameter);
Qualifier Values : string[], Scope(property, method, parameter), Flavor(Translatable);
class Thing { [Key] string Id; uint16 Speed; };
class Gadget : Thing { [Key] uint32 Number; };
[Association] class Link { [Key] Thing REF From; [Key] Thing REF To; };
[Association, Abstract] class Idea : Link { datetime Made; };
class Aside { [Key] string Id; };
class Base { [Key] string Id; uint16 Speed = 5; uint8 Codes[]; uint8 Four[4]; uint32 Start(string how[]); };
class Other { [Key] string Id; };
class OtherBelow : Other {};
[Association] class Pair { [Key] Base REF Left; [Key] Other REF Right; };
instance of Thing { Id = "taken"; };
)";

// What is there: a line for each namespace, class and instance.
std::string listed(const View& view) {
    std::string lines;
    for (const CIMNamespaceName& nameSpace : view.nameSpaces()) {
        lines += embedding::utf8(nameSpace.getString()) + "\n";
        for (const CIMName& className : view.subClassNames(nameSpace, CIMName(), true)) {
            lines += embedding::utf8(className) + "\n";
            const InstanceList instances = view.instances(nameSpace, className);
            for (std::size_t i = 0; i < instances.size(); ++i)
                lines += embedding::utf8(instances[i].path().toString()) + "\n";
        }
    }
    return lines;
}

void requireDocument(const std::string& xml) {
    fuzz::require(fuzz::isWellFormed(xml), "what was loaded is written as XML", xml);
}

void checkInstances(const View& view, const CIMNamespaceName& nameSpace, const CIMName& className) {
    const InstanceList instances = view.instances(nameSpace, className);
    for (std::size_t i = 0; i < instances.size(); ++i) {
        const CIMObjectPath path = instances[i].path();
        fuzz::require(view.getInstance(nameSpace, path).path().identical(path),
                      "an instance is found by its path", embedding::utf8(path.toString()));
        std::string xml;
        embedding::appendInstance(xml, instances[i].instance(), {});
        requireDocument(xml);
        xml.clear();
        embedding::appendInstancePath(xml, path);
        requireDocument(xml);
        for (const auto& reference : instances[i].references()) {
            const CIMObjectPath& target = reference.second;
            xml.clear();
            embedding::appendReference(xml, target);
            requireDocument(xml);
            if (!target.getNameSpace().isNull() && !target.getNameSpace().equal(nameSpace))
                continue;
            const auto found = view.referrers(nameSpace, className, target);
            fuzz::require(
                std::any_of(found.begin(), found.end(),
                            [&](const auto& each) { return each.path().identical(path); }),
                "an instance is found from what it refers to", embedding::utf8(path.toString()));
        }
    }
}

void checkContent(const View& view) {
    for (const CIMNamespaceName& nameSpace : view.nameSpaces()) {
        for (const CIMQualifierDecl& declaration : view.enumerateQualifiers(nameSpace)) {
            std::string xml;
            embedding::appendQualifierDeclaration(xml, declaration);
            requireDocument(xml);
        }
        for (const CIMName& className : view.subClassNames(nameSpace, CIMName(), true)) {
            std::string xml;
            embedding::appendClass(xml, view.getClass(nameSpace, className));
            requireDocument(xml);
            checkInstances(view, nameSpace, className);
        }
    }
}

// Whether `text` was loaded; if not, everything is as before.
bool load(Repository& repository, const std::string& text) {
    const std::string before = listed(repository.view());
    try {
        repository.load(mof::readText(text, "fuzz.mof", {SOURCE_DIRECTORY "/tests/wire"}), home);
        return true;
    } catch (const mof::MofError& error) {
        const auto lines = static_cast<unsigned>(std::count(text.begin(), text.end(), '\n') + 1);
        fuzz::require(*error.where().file != "fuzz.mof" || error.where().line <= lines,
                      "an error has its place in the text", error.what());
        fuzz::require(listed(repository.view()) == before, "all is loaded, or nothing",
                      error.what());
        return false;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::optional<Repository> repository; // as it was at the beginning, or none
    if (!repository)
        repository.emplace().load(mof::readText(base, "base.mof"), home);
    const std::string text(data, data + size);
    if (!load(*repository, text))
        return 0;
    const View view = repository->view();
    checkContent(view);
    load(*repository, text);
    fuzz::require(listed(repository->view()) == listed(view), "a second time adds nothing");
    repository.reset();
    return 0;
}
