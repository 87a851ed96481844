#include "repository/Loader.h"

#include "repository/ClassBuilder.h"
#include "repository/InstanceLoader.h"
#include "repository/Types.h"

#include <Pegasus/Common/Exception.h>

#include <utility>

namespace embedded::repository {

using namespace Pegasus;

namespace {

template <class T>
struct Placed {
    const T* declaration;
    CIMNamespaceName nameSpace;
};

const mof::Location& placeOf(const mof::Declaration& declaration) {
    return std::visit([](const auto& what) -> const mof::Location& { return what.where; },
                      declaration.what);
}

CIMNamespaceName nameSpaceOf(const mof::Declaration& declaration,
                             const CIMNamespaceName& otherwise) {
    if (!declaration.nameSpace)
        return otherwise;
    try {
        return CIMNamespaceName(String(declaration.nameSpace->c_str()));
    } catch (const Exception&) {
        refuse(placeOf(declaration), "\"", *declaration.nameSpace,
               "\" is not the name of a namespace");
    }
}

class Loader {
  public:
    explicit Loader(NameSpaceList& nameSpaces) : _nameSpaces(nameSpaces) {}

    void take(const mof::QualifierDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        _nameSpaces.change(nameSpace).qualifiers().declare(declaration);
    }

    void take(const mof::ClassDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        NameSpace& home = _nameSpaces.change(nameSpace);
        Ref<ClassNode> built = buildClass(declaration, home);
        const ClassNode* known = home.find(built->name());
        if (!known) {
            home.add(std::move(built));
        } else if (!sameClass(*known, *built)) {
            refuse(declaration.where, "class ", declaration.name,
                   " is declared already, in other words");
        }
        _classes.push_back({&declaration, nameSpace});
    }

    void take(const mof::InstanceDeclaration& declaration, const CIMNamespaceName& nameSpace) {
        _nameSpaces.change(nameSpace);
        _instances.push_back({&declaration, nameSpace});
    }

    void finish() {
        for (const auto& each : _classes)
            checkReferenceClasses(*each.declaration, *_nameSpaces.find(each.nameSpace));
        InstanceLoader loader(_nameSpaces);
        for (const auto& each : _instances)
            loader.declare(*each.declaration, each.nameSpace);
        loader.addAll();
    }

  private:
    NameSpaceList& _nameSpaces;
    std::vector<Placed<mof::ClassDeclaration>> _classes;
    std::vector<Placed<mof::InstanceDeclaration>> _instances;
};

} // namespace

void loadInto(NameSpaceList& nameSpaces, const mof::Specification& specification,
              const CIMNamespaceName& nameSpace) {
    Loader loader(nameSpaces);
    nameSpaces.change(nameSpace);
    for (const mof::Declaration& declaration : specification) {
        const CIMNamespaceName home = nameSpaceOf(declaration, nameSpace);
        std::visit([&](const auto& what) { loader.take(what, home); }, declaration.what);
    }
    loader.finish();
}

} // namespace embedded::repository
