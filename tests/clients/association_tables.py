"""The tables of docs/associations.md: what the four association operations answer from each source of
the served sample switch, by association class. Host and port are replaced."""

import re

from serverprofile_walk import connection
from serverprofile_walk.client import Client, Question
from serverprofile_walk.objects import Key, Path
from serverprofile_walk.world import telling

# In the order in which the server asks for them.
ASSOCIATIONS = (
    "CIM_HostedService", "CIM_HostedAccessPoint", "CIM_NamespaceInManager",
    "CIM_CommMechanismForManager", "CIM_ReferencedProfile", "CIM_SubProfileRequiresProfile",
    "CIM_ElementConformsToProfile", "ORVEX_ElementSoftwareIdentity")

# Each operation, and what the page calls it.
OPERATIONS = (("AssociatorNames", "associator names"), ("Associators", "associators"),
              ("ReferenceNames", "reference names"), ("References", "references"))

# The classes of the sources.
SOURCES = ("CIM_RegisteredProfile", "CIM_RegisteredSubProfile", "ORVEX_ObjectManagerHost",
           "CIM_ObjectManager", "PG_CIMXMLCommunicationMechanism", "PG_Namespace",
           "ORVEX_SoftwareIdentity")

# Sources with a key that names nothing, or whose key is not looked at: class, key and title.
STRANGERS = (("CIM_RegisteredProfile", Key("InstanceID", "Orvex9"), "no such profile"),
             ("CIM_RegisteredSubProfile", Key("InstanceID", "Orvex9"), "no such subprofile"),
             ("ORVEX_ObjectManagerHost", Key("Name", "elsewhere"), "another host"),
             ("CIM_ObjectManager", Key("Name", "any"), "any key"),
             ("PG_CIMXMLCommunicationMechanism", Key("Name", "any"), "any key"),
             ("PG_Namespace", Key("Name", "any"), "any key"),
             ("ORVEX_SoftwareIdentity", Key("InstanceID", "OrvexSI9"), "no such firmware"))

# Classes of objects that stand at far ends, or are as good, and from which nothing leads on.
DEAD_ENDS = ("CIM_CIMXMLCommunicationMechanism", "CIM_Namespace", "ORVEX_Vsan",
             "ORVEX_ComputerSystem", "ORVEX_PhysicalComputerSystem")

INTEROP, OTHER = "interop", "root/cimv2"


class Tables:
    """Asks in one namespace, and keeps in `seen` what each source answered by association class.
    Answers are texts for people; associations are (class, ((role, text), (role, text)))."""

    def __init__(self, client, namespace):
        self.client = client
        self.namespace = namespace
        self.seen = {}
        host = telling(self.names("ORVEX_ObjectManagerHost")[0])[1]
        self.hosts = {host, self.names("CIM_ObjectManager")[0].key("SystemName")}
        self.port = client.at.port

    def ask(self, operation, target, association=None):
        return self.client.ask(Question(operation, self.namespace, target, association))

    def names(self, class_name):
        """The paths of the instances of just that class."""
        found = [path._replace(namespace=self.namespace)
                 for path in self.ask("EnumerateInstanceNames", Path(class_name))]
        return [path for path in found if path.class_name == class_name] or found

    def place(self, path):
        namespace = path.namespace or "no namespace"
        if path.host and path.host not in self.hosts:
            namespace = f"{path.host}/{namespace}"
        return "" if namespace == self.namespace else f" ({namespace})"

    def object(self, path):
        value = telling(path)[1]
        value = "switch" if value in self.hosts else re.sub(f":{self.port}$", ":5988", value)
        return f'{path.class_name} "{value}"{self.place(path)}'

    def answer(self, operation, source, association):
        """The answer of one operation, as a list."""
        found = self.ask(operation, source, association)
        if operation.startswith("Associator"):
            return [self.object(each if isinstance(each, Path) else each.path) for each in found]
        # A path has its keys in the order of their names, an object its properties in its own.
        return [(each.class_name, tuple(
            (end.name, self.object(end.value))
            for end in (each.keys if isinstance(each, Path) else each.properties))) for each in found]

    def answers(self, source, association):
        """The answers of the four operations. That of the reference names takes the order of the
        ends from the references where they name the same."""
        ain, ai, rin, ri = (self.answer(operation, source, association)
                            for operation, _ in OPERATIONS)
        if [(name, sorted(ends)) for name, ends in rin] == [
                (name, sorted(ends)) for name, ends in ri]:
            rin = ri
        self.seen[source, association] = ain, ai, rin, ri
        return ain, ai, rin, ri

    def tables(self):
        """The sections of the page, in `namespace`."""
        lines = []
        for class_name in SOURCES:
            lines += ["", f"## From {class_name}"]
            for path in self.names(class_name):
                lines += self.table(path.local, self.object(path).removesuffix(self.place(path)))
            for stranger, key, title in STRANGERS:
                if stranger == class_name:
                    lines += self.table(Path(class_name, (key,)),
                                        f'{class_name} "{key.value}": {title}')
        lines += ["", "## Sources from which nothing leads on", ""]
        for class_name in DEAD_ENDS:
            path = self.names(class_name)[0].local._replace(class_name=class_name)
            if any(self.answers(path, None)):
                raise SystemExit(f"association_tables: {class_name} leads on, see DEAD_ENDS")
            lines.append(f"* {class_name}")
        return lines

    def table(self, source, title):
        by_answers = {}  # the answers -> the association classes that gave them
        for association in ASSOCIATIONS:
            answers = self.answers(source, association)
            by_answers.setdefault(repr(answers), (answers, []))[1].append(association)
        rows, nothing, together = [], [], ([], [], [], [])
        for answers, associations in by_answers.values():
            if not any(answers):
                nothing += associations
                continue
            rows += self.rows("<br>".join(associations), answers)
            for whole, part in zip(together, answers):
                whole += part
        lines = ["", f"### {title}", ""]
        if rows:
            lines += ["| association class | operation | answer |", "| --- | --- | --- |", *rows, ""]
            every = self.answers(source, None)
            if list(every) == list(together):
                lines.append("Without an association class: all of these, in this order.")
            else:
                lines += ["Without an association class:", "", "| | operation | answer |",
                          "| --- | --- | --- |", *self.rows("", every)]
        else:
            lines.append("Nothing, whatever the association class.")
        if rows and nothing:
            lines += ["", "Nothing by " + ", ".join(nothing) + "."]
        return lines

    @staticmethod
    def rows(first, answers):
        rows = []
        previous = None
        for (_, operation), answer in zip(OPERATIONS, answers):
            text = "<br>".join(
                item if isinstance(item, str) else
                ", ".join(f"*{role}* {end}" for role, end in item[1]) for item in answer)
            if rows and text == previous:
                rows[-1][1] += f", {operation}"
            else:
                rows.append([first if not rows else "", operation, text or "nothing"])
            previous = text
        return [f"| {' | '.join(row)} |" for row in rows]


def tables(address):
    """The tables as a text. Ends the program if the two namespaces tell different stories."""
    with Client(connection.server(f"http://{address}", patience=300)) as client:
        interop, other = Tables(client, INTEROP), Tables(client, OTHER)
        lines = interop.tables()
        other.tables()
    for asked, answers in interop.seen.items():
        # What is bracketed in the one namespace is the very namespace that is asked in the other.
        if repr(answers).replace(f" ({OTHER})", "") != repr(other.seen.get(asked)):
            raise SystemExit(f"association_tables: {' '.join(map(str, asked))} answers differently in "
                             f"{OTHER}")
    return "\n".join(lines) + "\n"
