"""A server that is a dictionary, and its tools: enough of them for serverprofile-register, with the
words and exit codes of the real ones.

It is like one that is built as usual: its interop namespace is root/PG_InterOp, where it has an object
manager of its own, and it answers for PG_Namespace everywhere.

The state is {"namespaces": {NAME: {CLASS: {"super", "version", "refs", "keys"}}},
"qualifiers": {NAME: [QUALIFIER...]}, "registered": [INSTANCE...], "stored": [[NAMESPACE, CLASS]...],
"configured": {PROPERTY: VALUE}}, an INSTANCE being {"class", "properties": {NAME: VALUE}}.
"""

import functools
import json
import pathlib
import subprocess

READER = ""  # MofReader.cpp as a program
KEYS = {"PG_ProviderModule": ["Name"], "PG_Provider": ["ProviderModuleName", "Name"],
        "PG_ProviderCapabilities": ["ProviderModuleName", "ProviderName", "CapabilityID"]}


class Refused(Exception):
    """Ends the tool with this exit code, having said this."""

    def __init__(self, code, text):
        super().__init__(text)
        self.code = code


def status(code, name, text, command):
    return Refused(code, f"cimcli CIMException:  Cmd= {command} Object= {text} Code= {code}\n"
                         f"CIM_ERR_{name}: {text}\n")


def chain(classes, name):
    """A class and its superclasses."""
    while name in classes:
        yield name
        name = classes[name]["super"]


def mof(value):
    if isinstance(value, list):
        return "{" + ", ".join(map(mof, value)) + "}"
    return json.dumps(value)


@functools.lru_cache(maxsize=None)
def read_mof(file, versions):
    """What a MOF file declares; it is read once, as long as those beside it are of these versions."""
    return subprocess.run([READER, file], capture_output=True, text=True, check=False)


class Tool:
    """A call of a tool; `out` and `err` are what it says."""

    def __init__(self, state):
        self.state = state
        self.out = ""
        self.err = ""

    def say(self, line=""):
        self.out += line + "\n"


class Cimmof(Tool):
    def __init__(self, state, arguments):
        super().__init__(state)
        self.update = "-uc" in arguments
        namespace = arguments[arguments.index("-n") + 1]
        self.classes = state["namespaces"].setdefault(namespace, {})
        self.qualifiers = state["qualifiers"].setdefault(namespace, [])
        self.file = pathlib.Path(arguments[-1])

    def run(self):
        read = read_mof(self.file, tuple((other.name, other.stat().st_mtime_ns)
                                         for other in sorted(self.file.parent.glob("*.mof"))))
        if read.returncode != 0:
            raise Refused(250, read.stderr)
        declared = json.loads(read.stdout)
        self.qualifiers += [q for q in declared["qualifiers"] if q not in self.qualifiers]
        for one in declared["classes"]:
            self.add_class(one.pop("name"), one)
        for one in declared["instances"]:
            self.add_instance(one["class"], one["properties"])

    def add_class(self, name, declared):
        above = declared["super"]
        if above and above not in self.classes:
            raise Refused(250, f"Parsing error: parse error: Error adding class {name} to the "
                               f"repository: CIM_ERR_INVALID_SUPERCLASS: {above}\n")
        if name in self.classes and not self.update:
            self.err += (f"Warning:  Class {name} already exists in the repository\n")
            return
        if declared["version"] and "Version" not in self.qualifiers:
            raise Refused(250, "Parsing error: Could not find declaration for Qualifier named "
                               "Version\n")
        self.classes[name] = declared

    def add_instance(self, name, properties):
        keys = [properties.get(key) for key in KEYS[name]]
        for other in self.state["registered"]:
            if other["class"] != name:
                continue
            if [other["properties"].get(key) for key in KEYS[name]] == keys:
                self.err += ("Warning: the instance already exists.\n"
                                 "In this implementation, that means it cannot be changed.\n")
                return
            if "ClassName" in properties and self.rivals(properties, other["properties"]):
                raise Refused(250, "Parsing error: parse error: Error adding an instance: "
                                   "CIM_ERR_FAILED: A provider is already registered for the "
                                   "specified capability.\n")
        if name == "PG_ProviderModule":
            properties.setdefault("OperationalStatus", [2])
        self.state["registered"].append({"class": name, "properties": properties})

    @staticmethod
    def rivals(one, other):
        return one["ClassName"] == other["ClassName"] and bool(
            set(one["Namespaces"]) & set(other["Namespaces"]))


class Cimprovider(Tool):
    def __init__(self, state, arguments):
        super().__init__(state)
        self.action = arguments[0]
        self.module = arguments[-1]

    def run(self):
        modules = {i["properties"]["Name"]: i["properties"]
                   for i in self.state["registered"] if i["class"] == "PG_ProviderModule"}
        if self.action == "-l":
            width = max(map(len, modules), default=6) + 5
            self.say("MODULE".ljust(width) + "STATUS")
            for name, properties in modules.items():
                ok = properties["OperationalStatus"] == [2]
                self.say(name.ljust(width) + ("OK " if ok else "Stopped "))
            return
        if self.module not in modules:
            raise Refused(1, "Specified provider module was not registered.\n")
        if self.action == "-r":
            self.say("Deleting provider module...")
            self.state["registered"] = [
                i for i in self.state["registered"] if self.module not in
                (i["properties"].get("ProviderModuleName"), i["properties"]["Name"]
                 if i["class"] == "PG_ProviderModule" else None)]
            self.say("Provider module deleted successfully.")
        else:
            enable = self.action == "-e"
            self.say(f"{'En' if enable else 'Dis'}abling provider module...")
            modules[self.module]["OperationalStatus"] = [2 if enable else 10]
            self.say(f"Provider module {'en' if enable else 'dis'}abled successfully.")


class Cimcli(Tool):
    def __init__(self, state, arguments):
        super().__init__(state)
        self.command = arguments[0]
        self.name = arguments[1] if not arguments[1].startswith("-") else ""
        self.namespace = arguments[arguments.index("-n") + 1]
        self.whole = "-nlo" in arguments

    def run(self):
        if self.namespace not in self.state["namespaces"]:
            raise status(3, "INVALID_NAMESPACE", self.namespace, self.command)
        self.classes = self.state["namespaces"][self.namespace]
        self.qualifiers = self.state["qualifiers"][self.namespace]
        if (self.name and self.command not in ("dq", "di") and
                self.name not in self.classes):
            raise (status(6, "NOT_FOUND", self.name, self.command)
                   if self.command in ("gc", "dc") else
                   status(5, "INVALID_CLASS", self.name, self.command))
        getattr(self, self.command)()

    def below(self, name):
        return [other for other in self.classes if name in chain(self.classes, other)]

    def nc(self):
        for name in self.below(self.name) if self.name else self.classes:
            if name != self.name:
                self.say(name)

    def gc(self):
        line = "// " + "=" * 51
        one = self.classes[self.name]
        keys = [key for name in (chain(self.classes, self.name) if self.whole else [self.name])
                for key in self.classes[name]["keys"]]
        self.say(f"\n{line}\n// {self.name}\n{line}\n")
        if one["version"]:
            self.say(f'[Version("{one["version"]}")]')
        self.say(f"class {self.name}{' : ' + one['super'] if one['super'] else ''}\n{{")
        for key in keys:
            self.say(f"    [Key] string {key};")
        for number, name in enumerate(one["refs"]):
            self.say(f"    {name} REF r{number};")
        self.say("};")

    def ec(self):
        for self.name in self.classes:
            self.gc()

    def eq(self):
        for name in self.qualifiers:
            self.say(f"\nQualifier {name} : boolean = FALSE, Scope(property method),\n"
                     "    Flavor(DisableOverride, ToSubclass);")

    def dq(self):
        if self.name not in self.qualifiers:
            raise status(6, "NOT_FOUND", self.name, "dq")
        self.qualifiers.remove(self.name)

    def di(self):
        if self.name != '__Namespace.Name=""':
            raise status(6, "NOT_FOUND", self.name, "di")
        if self.classes or self.qualifiers:
            raise status(1, "FAILED",
                         f"Attempt to delete a non-empty namespace: {self.namespace}", "di")
        del self.state["namespaces"][self.namespace], self.state["qualifiers"][self.namespace]

    def dc(self):
        if len(self.below(self.name)) > 1:
            raise status(8, "CLASS_HAS_CHILDREN", self.name, "dc")
        if [self.namespace, self.name] in self.state["stored"]:
            raise status(9, "CLASS_HAS_INSTANCES", self.name, "dc")
        for reference in self.classes[self.name]["refs"]:
            if reference not in self.classes:
                raise status(4, "INVALID_PARAMETER", reference, "dc")
        del self.classes[self.name]

    def rn(self):
        wanted = set(chain(self.classes, self.name))
        found = [n for n, c in self.classes.items() if wanted & set(c["refs"])]
        self.say(f"{len(found)} referenceNames")
        for name in found:
            self.say(f"//vm/{self.namespace}:{name}")

    def ni(self):
        for name in self.below(self.name):
            if ([self.namespace, name] in self.state["stored"] or self.served(name)
                    or name == "PG_Namespace"
                    or (name, self.namespace) == ("PG_ObjectManager", "root/PG_InterOp")):
                self.say(f'{name}.InstanceID="x"')

    def served(self, name):
        ok = [i["properties"]["Name"] for i in self.state["registered"]
              if i["properties"].get("OperationalStatus") == [2]]
        return any(i["properties"].get("ClassName") == name
                   and i["properties"]["ProviderModuleName"] in ok
                   and self.namespace in i["properties"]["Namespaces"]
                   for i in self.state["registered"])

    def ei(self):
        for instance in self.state["registered"]:
            if instance["class"] == self.name:
                self.say(f"\n// path= {self.name}\n\ninstance of {self.name}\n{{\n"
                      "    InstanceID = NULL;")
                for name, value in instance["properties"].items():
                    self.say(f"    {name} = {mof(value)};")
                self.say("};")


class Cimconfig(Tool):
    def __init__(self, state, arguments):
        super().__init__(state)
        self.arguments = arguments

    def run(self):
        get, name, current = self.arguments
        if (get, current) != ("-g", "-c") or name not in self.state["configured"]:
            raise Refused(1, "Invalid property name\n")
        self.say("Current value: " + self.state["configured"][name])


class Cimserver(Tool):
    def __init__(self, state, arguments):
        super().__init__(state)
        self.arguments = arguments

    def run(self):
        if self.arguments != ["--version"]:
            raise Refused(1, "the server runs already\n")
        self.say("2.14.4\n")


TOOLS = {"cimmof": Cimmof, "cimprovider": Cimprovider, "cimcli": Cimcli, "cimconfig": Cimconfig,
         "cimserver": Cimserver}


def call(state, name, arguments):
    """Calls a tool; returns its exit code, its output and its errors. What it did before it was
    refused stays, as it does with the real ones."""
    tool = TOOLS[name](state, arguments)
    try:
        tool.run()
        return 0, tool.out, tool.err
    except Refused as refused:
        return refused.code, tool.out, tool.err + str(refused)
