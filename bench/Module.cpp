// Each read operation of the module beside its floor.
//
// The floor of an operation is what its contract cannot do without, and nothing else: it makes the
// same writes to standard output, the same calls to the same handle, delivers what these answered
// as the operation does, and of everything else that the operation delivers a fresh copy: a clone
// of an instance, a path put together from its parts. It learns that by watching the operation
// once.
//
// A clone shares the paths that are in it, while the operation has to make them: so there is a
// second floor, which puts associations together as well. Their ends are given, their properties
// and keys are made, and the library writes the text of a reference key.
#include "Handle.h"

#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/Exception.h>
#include <Pegasus/Common/OperationContext.h>
#include <Pegasus/Provider/CIMAssociationProvider.h>
#include <Pegasus/Provider/CIMInstanceProvider.h>

#include <benchmark/benchmark.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

PEGASUS_USING_PEGASUS;
using bench::ReadBack;

namespace {

const char* const requestNameSpace = "interop";

std::string text(const String& string) { return static_cast<const char*>(string.getCString()); }

// What is delivered goes nowhere, or, while an operation is watched, is kept.

template <class Base, class Item>
class Sink : public Base {
  public:
    std::vector<Item>* kept = nullptr;

    void processing() override {}
    void complete() override {}
    void deliver(const Item& item) override {
        benchmark::DoNotOptimize(&item);
        if (kept != nullptr)
            kept->push_back(item);
    }
    void deliver(const Array<Item>& items) override {
        for (Uint32 i = 0; i < items.size(); ++i)
            deliver(items[i]);
    }
};

using PathSink = Sink<ObjectPathResponseHandler, CIMObjectPath>;
using InstanceSink = Sink<InstanceResponseHandler, CIMInstance>;
using ObjectSink = Sink<ObjectResponseHandler, CIMObject>;

/// The module, called as a server calls it.
struct Module {
    CIMInstanceProvider* instances;
    CIMAssociationProvider* associations;
};

/// An operation, asked of the module with the handlers of one call.
struct Sinks {
    PathSink paths;
    InstanceSink instances;
    ObjectSink objects;
};
using Ask = std::function<void(const Module&, Sinks&)>;

/// The writes to standard output while `work` runs, each as it was made.
template <class Work>
std::vector<std::string> writesOf(Work work) {
    int ends[2];
    if (::pipe2(ends, O_DIRECT) != 0) // a packet for each write
        throw std::runtime_error("no pipe for the module's trace");
    const int output = ::dup(STDOUT_FILENO);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[1]);
    std::vector<std::string> writes;
    std::thread reader([&] {
        char buffer[4096]; // the largest packet
        for (ssize_t size; (size = ::read(ends[0], buffer, sizeof buffer)) > 0;)
            writes.emplace_back(buffer, static_cast<std::size_t>(size));
    });
    work();
    std::cout.flush();
    std::fflush(stdout);
    ::dup2(output, STDOUT_FILENO); // the last writer leaves
    ::close(output);
    reader.join();
    ::close(ends[0]);
    return writes;
}

/// Which of both.
enum class Kind { Copies, Makes };

/// A path in its parts, for a path made anew.
class PathParts {
  public:
    explicit PathParts(const CIMObjectPath& path)
        : _host(path.getHost()), _nameSpace(path.getNameSpace()), _className(path.getClassName()) {
        const Array<CIMKeyBinding> keys = path.getKeyBindings();
        for (Uint32 i = 0; i < keys.size(); ++i) {
            const bool isReference = keys[i].getType() == CIMKeyBinding::REFERENCE;
            _keys.push_back({keys[i].getName(), keys[i].getValue(), keys[i].getType(),
                             isReference ? CIMObjectPath(keys[i].getValue()) : CIMObjectPath()});
        }
    }

    CIMObjectPath made(Kind kind) const {
        Array<CIMKeyBinding> keys;
        for (const Key& key : _keys)
            if (kind == Kind::Makes && key.type == CIMKeyBinding::REFERENCE)
                keys.append(CIMKeyBinding(key.name, CIMValue(key.end)));
            else
                keys.append(CIMKeyBinding(key.name, key.value, key.type));
        return CIMObjectPath(_host, _nameSpace, _className, keys);
    }

  private:
    struct Key {
        CIMName name;
        String value;
        CIMKeyBinding::Type type;
        CIMObjectPath end; ///< of a reference
    };

    String _host;
    CIMNamespaceName _nameSpace;
    CIMName _className;
    std::vector<Key> _keys;
};

/// An instance, for one made anew: an association from its parts, another as a clone.
class InstanceParts {
  public:
    explicit InstanceParts(const CIMInstance& instance)
        : _whole(instance.clone()), _path(instance.getPath()),
          _isAt(!instance.getPath().getClassName().isNull()) {
        const CIMConstInstance readable = instance;
        for (Uint32 i = 0; i < readable.getPropertyCount(); ++i) {
            const CIMConstProperty property = readable.getProperty(i);
            _properties.push_back(
                {property.getName(), property.getValue(), property.getReferenceClassName()});
            _isAssociation = _isAssociation || property.getType() == CIMTYPE_REFERENCE;
        }
    }

    CIMInstance made(Kind kind) const {
        if (kind == Kind::Copies || !_isAssociation)
            return _whole.clone();
        CIMInstance instance(_whole.getClassName());
        for (const Property& property : _properties)
            instance.addProperty(
                CIMProperty(property.name, property.value, 0, property.referenceClass));
        if (_isAt)
            instance.setPath(_path.made(kind));
        return instance;
    }

  private:
    struct Property {
        CIMName name;
        CIMValue value;
        CIMName referenceClass;
    };

    CIMInstance _whole;
    PathParts _path;
    bool _isAt;
    bool _isAssociation = false;
    std::vector<Property> _properties;
};

/// See the head of the file.
class Floor {
  public:
    Floor(const Module& module, const Ask& ask) {
        std::vector<CIMObjectPath> paths;
        std::vector<CIMInstance> instances;
        std::vector<CIMObject> objects;
        Sinks sinks;
        sinks.paths.kept = &paths;
        sinks.instances.kept = &instances;
        sinks.objects.kept = &objects;
        std::vector<ReadBack> calls;
        _writes = writesOf([&] {
            bench::readBacks = &calls;
            ask(module, sinks);
            bench::readBacks = nullptr;
        });
        for (const ReadBack& call : calls)
            _calls.push_back({call, {}});
        for (const CIMObjectPath& path : paths)
            if (!wasRead(path, ReadBack::Names))
                _paths.emplace_back(path);
        for (const CIMInstance& instance : instances)
            _instances.emplace_back(instance);
        for (const CIMObject& object : objects)
            if (!wasRead(object.getPath(), ReadBack::Instances))
                _objects.emplace_back(CIMInstance(object));
        _delivered = paths.size() + instances.size() + objects.size();
    }

    std::size_t writes() const { return _writes.size(); }
    std::size_t calls() const { return _calls.size(); }
    std::size_t delivered() const { return _delivered; }

    void run(Kind kind, CIMOMHandle& handle, Sinks& sinks) const {
        for (const std::string& line : _writes)
            benchmark::DoNotOptimize(::write(STDOUT_FILENO, line.data(), line.size()));
        for (const Call& call : _calls)
            repeat(handle, call, sinks);
        for (const PathParts& path : _paths)
            sinks.paths.deliver(path.made(kind));
        for (const InstanceParts& instance : _instances)
            sinks.instances.deliver(instance.made(kind));
        for (const InstanceParts& object : _objects)
            sinks.objects.deliver(CIMObject(object.made(kind)));
    }

  private:
    struct Call {
        ReadBack what;
        std::vector<Uint32> delivered; ///< of its answer, unchanged
    };

    /// Whether a read-back answered this; then it is delivered from there.
    bool wasRead(const CIMObjectPath& path, ReadBack::Kind kind) {
        for (Call& call : _calls) {
            if (call.what.kind != kind)
                continue;
            const Array<CIMObjectPath> names = CIMOMHandle().enumerateInstanceNames(
                OperationContext(), call.what.nameSpace, call.what.className);
            const Array<CIMObjectPath>& read = names;
            for (Uint32 i = 0; i < read.size(); ++i) {
                if (read[i].identical(path)) {
                    call.delivered.push_back(i);
                    return true;
                }
            }
        }
        return false;
    }

    static void repeat(CIMOMHandle& handle, const Call& call, Sinks& sinks) {
        const ReadBack& what = call.what;
        switch (what.kind) {
        case ReadBack::Class:
            benchmark::DoNotOptimize(handle.getClass(OperationContext(), what.nameSpace,
                                                     what.className, false, true, false,
                                                     CIMPropertyList()));
            break;
        case ReadBack::Instance:
            benchmark::DoNotOptimize(handle.getInstance(OperationContext(), what.nameSpace,
                                                        what.path, false, true, true,
                                                        CIMPropertyList()));
            break;
        case ReadBack::Instances: {
            const Array<CIMInstance> read =
                handle.enumerateInstances(OperationContext(), what.nameSpace, what.className, true,
                                          false, true, true, CIMPropertyList());
            for (const Uint32 i : call.delivered)
                sinks.objects.deliver(CIMObject(read[i]));
            break;
        }
        case ReadBack::Names: {
            const Array<CIMObjectPath> read =
                handle.enumerateInstanceNames(OperationContext(), what.nameSpace, what.className);
            for (const Uint32 i : call.delivered)
                sinks.paths.deliver(read[i]);
            break;
        }
        }
    }

    std::vector<std::string> _writes;
    std::vector<Call> _calls;
    std::vector<PathParts> _paths;
    std::vector<InstanceParts> _instances;
    std::vector<InstanceParts> _objects;
    std::size_t _delivered = 0;
};

// What is asked.

const char* const publishedClasses[] = {"CIM_RegisteredProfile",
                                        "CIM_RegisteredSubProfile",
                                        "CIM_SubProfileRequiresProfile",
                                        "CIM_ElementConformsToProfile",
                                        "ORVEX_ObjectManagerHost",
                                        "ORVEX_SoftwareIdentity",
                                        "CIM_HostedService",
                                        "CIM_HostedAccessPoint",
                                        "ORVEX_ElementSoftwareIdentity",
                                        "CIM_NamespaceInManager",
                                        "CIM_CommMechanismForManager"};

/// A class from which associations lead, and the class whose first object is taken: one of the
/// module's or one of the server's.
const struct {
    const char* className;
    const char* objectOf;
} sources[] = {
    {"CIM_RegisteredProfile", "CIM_RegisteredProfile"},
    {"CIM_RegisteredSubProfile", "CIM_RegisteredSubProfile"},
    {"ORVEX_ObjectManagerHost", "ORVEX_ObjectManagerHost"},
    {"ORVEX_SoftwareIdentity", "ORVEX_SoftwareIdentity"},
    {"CIM_ObjectManager", "CIM_ObjectManager"},
    {"PG_CIMXMLCommunicationMechanism", "CIM_CIMXMLCommunicationMechanism"},
    {"PG_Namespace", "CIM_Namespace"},
};

CIMObjectPath classPath(const char* className) {
    return CIMObjectPath(String(), CIMNamespaceName(requestNameSpace), CIMName(className));
}

void enumerateNames(const Module& module, const char* className, PathSink& to) {
    module.instances->enumerateInstanceNames(OperationContext(), classPath(className), to);
}

/// The first object of a class, as a client names it.
CIMObjectPath firstObject(const Module& module, const char* className) {
    for (const bench::World::Published& one : bench::world().published) {
        if (one.className == className && one.names.size() > 0) {
            const Array<CIMObjectPath>& names = one.names;
            return names[0];
        }
    }
    std::vector<CIMObjectPath> names;
    PathSink to;
    to.kept = &names;
    enumerateNames(module, className, to);
    if (names.empty())
        throw std::runtime_error(std::string("the module has no object of ") + className);
    return names[0];
}

CIMObjectPath named(const CIMObjectPath& object, const char* className) {
    return CIMObjectPath(String(), CIMNamespaceName(requestNameSpace), CIMName(className),
                         object.getKeyBindings());
}

struct Question {
    std::string name;
    Ask ask;
};

std::vector<Question> questions(const Module& module) {
    const OperationContext context;
    const CIMPropertyList all;
    std::vector<Question> list;
    for (const char* className : publishedClasses) {
        const CIMObjectPath path = classPath(className);
        const CIMObjectPath first = named(firstObject(module, className), className);
        list.push_back({std::string("enumerateInstanceNames ") + className,
                        [=](const Module& m, Sinks& to) {
                            m.instances->enumerateInstanceNames(context, path, to.paths);
                        }});
        list.push_back({std::string("enumerateInstances ") + className,
                        [=](const Module& m, Sinks& to) {
                            m.instances->enumerateInstances(context, path, false, false, all,
                                                            to.instances);
                        }});
        list.push_back({std::string("getInstance ") + className, [=](const Module& m, Sinks& to) {
                            m.instances->getInstance(context, first, false, false, all,
                                                     to.instances);
                        }});
    }
    for (const auto& source : sources) {
        const CIMObjectPath from = named(firstObject(module, source.objectOf), source.className);
        const CIMName any;
        const String role;
        const std::string name = std::string(" ") + source.className;
        list.push_back({"associatorNames" + name,
                        [=](const Module& m, Sinks& to) {
                            m.associations->associatorNames(context, from, any, any, role, role,
                                                            to.paths);
                        }});
        list.push_back({"associators" + name,
                        [=](const Module& m, Sinks& to) {
                            m.associations->associators(context, from, any, any, role, role, false,
                                                        false, all, to.objects);
                        }});
        list.push_back({"referenceNames" + name,
                        [=](const Module& m, Sinks& to) {
                            m.associations->referenceNames(context, from, any, role, to.paths);
                        }});
        list.push_back({"references" + name, [=](const Module& m, Sinks& to) {
                            m.associations->references(context, from, any, role, false, false, all,
                                                       to.objects);
                        }});
    }
    return list;
}

void add(const Module& module, const Question& question) {
    const auto floor = std::make_shared<Floor>(module, question.ask);
    if (floor->writes() == 0)
        throw std::runtime_error(question.name + ": the module traced nothing");
    const auto counters = [floor](benchmark::State& state) {
        state.counters["writes"] = static_cast<double>(floor->writes());
        state.counters["calls"] = static_cast<double>(floor->calls());
        state.counters["delivered"] = static_cast<double>(floor->delivered());
    };
    benchmark::RegisterBenchmark(("module " + question.name).c_str(), [=](benchmark::State& state) {
        Sinks sinks;
        for (auto _ : state)
            question.ask(module, sinks);
        counters(state);
    });
    for (const Kind kind : {Kind::Copies, Kind::Makes}) {
        const std::string name = kind == Kind::Copies ? "floor " : "made ";
        benchmark::RegisterBenchmark((name + question.name).c_str(), [=](benchmark::State& state) {
            Sinks sinks;
            CIMOMHandle handle;
            for (auto _ : state)
                floor->run(kind, handle, sinks);
            counters(state);
        });
    }
}

Module loaded(const std::string& library) {
    void* const handle = ::dlopen(library.c_str(), RTLD_NOW);
    if (handle == nullptr)
        throw std::runtime_error(std::string("the module cannot be loaded: ") + ::dlerror());
    using Create = CIMProvider* (*)(const String&);
    const auto create = reinterpret_cast<Create>(::dlsym(handle, "PegasusCreateProvider"));
    CIMProvider* const provider = create != nullptr ? create("ServerProfileProvider") : nullptr;
    const Module module{dynamic_cast<CIMInstanceProvider*>(provider),
                        dynamic_cast<CIMAssociationProvider*>(provider)};
    if (module.instances == nullptr || module.associations == nullptr)
        throw std::runtime_error(library + ": no provider of instances and associations");
    return module;
}

int run(int count, char** arguments) {
    if (count < 3) {
        std::cerr
            << "usage: " << arguments[0] << " MODULE WORLD [options of google-benchmark]\n"
            << "  MODULE  the module's library\n"
            << "  WORLD   what the server has, a file of world.py\n"
            << "Results go to the file of --benchmark_out; standard output takes the trace.\n";
        return 2;
    }
    const std::string library = arguments[1];
    const std::string world = arguments[2];
    arguments[2] = arguments[0];
    arguments += 2;
    count -= 2;
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments))
        return 2;
    const int null = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (null < 0 || ::dup2(null, STDOUT_FILENO) < 0)
        throw std::runtime_error("/dev/null cannot be opened");
    bench::readWorld(world);
    const Module module = loaded(library);
    CIMOMHandle handle;
    module.instances->initialize(handle);
    for (const Question& question : questions(module))
        add(module, question);
    benchmark::ConsoleReporter silent;
    std::ostream none(nullptr);
    silent.SetOutputStream(&none);
    silent.SetErrorStream(&std::cerr);
    return benchmark::RunSpecifiedBenchmarks(&silent) > 0 ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    try {
        return run(count, arguments);
    } catch (const Exception& exception) {
        std::cerr << arguments[0] << ": " << text(exception.getMessage()) << "\n";
    } catch (const std::exception& exception) {
        std::cerr << arguments[0] << ": " << exception.what() << "\n";
    }
    return 1;
}
