"""What a walk saw, as a graph: objects as boxes, grouped by who publishes them, and associations as
edges. Drawn with Graphviz."""

import html
import subprocess

FONT = "DejaVu Sans,Verdana,sans-serif"

# Who publishes an object: the beginnings of the names of its classes, the caption, and the colours
# of boxes and group. The first that fits counts.
PUBLISHERS = (
    ("module", ("CIM_Registered", "ORVEX_ObjectManagerHost", "ORVEX_SoftwareIdentity"),
     "libServerProfileProvider", "#dbe9f6", "#f4f8fc"),
    ("server", ("PG_", "CIM_"), "the CIM server", "#e3efdc", "#f6faf3"),
    ("switch", ("",), "the switch", "#fbe6cf", "#fdf6ee"),
)

COLOURS = {
    "CIM_ElementConformsToProfile": "#a8480f",
    "CIM_SubProfileRequiresProfile": "#1f5fa8",
    "ORVEX_ElementSoftwareIdentity": "#6b4d9e",
    "CIM_HostedService": "#2f7d32",
    "CIM_HostedAccessPoint": "#2f7d32",
    "CIM_NamespaceInManager": "#00707a",
    "CIM_CommMechanismForManager": "#8a6d00",
}

# The end from which an edge is drawn; the other comes from it.
FROM = ("Antecedent", "ConformantStandard")


class Graph:
    def __init__(self):
        self._objects = {}  # str(Path) -> Path, in the order in which they were met
        self._titles = {}
        self._edges = {}  # (association class, str(Path), str(Path)), in order
        self._ways = {}  # what following an association told, in either direction

    def title(self, path, properties):
        """Takes the name that people know the object by from its properties."""
        self._meet(path)
        for name in ("RegisteredName", "ElementName"):
            if properties.get(name, "").strip('"'):
                self._titles[str(path)] = properties[name].strip('"')
        if path.class_name == "ORVEX_SoftwareIdentity" and "Name" in properties:
            self._titles[str(path)] = properties["Name"].strip('"')

    def association(self, association):
        """Takes an association that an answer named."""
        ends = dict(association.ends)
        near = next((ends[role] for role in FROM if role in ends), None)
        far = [path for role, path in association.ends if role not in FROM]
        if near is not None and len(far) == 1:
            self._edges[association.class_name, self._meet(near), self._meet(far[0])] = None

    def far_end(self, association_class, source, far):
        """Takes what came at the far end of an association from `source`."""
        self._ways[association_class, self._meet(source), self._meet(far)] = None

    def _meet(self, path):
        self._objects.setdefault(str(path), path)
        return str(path)

    def dot(self, replace):
        """The graph in the dot language. `replace` is applied to the value of each telling key."""
        numbers = {name: f"object{number}" for number, name in enumerate(self._objects, 1)}
        lines = ["digraph walk {", "  rankdir=LR; newrank=true; ranksep=0.35; nodesep=0.3;",
                 f'  fontname="{FONT}"; fontsize=13; bgcolor="white";',
                 f'  node [shape=box, style="filled,rounded", fontname="{FONT}", fontsize=11,'
                 ' margin="0.15,0.08"];',
                 f'  edge [fontname="{FONT}", fontsize=10, arrowsize=0.7];']
        # A way that no association tells of; each association can be followed both ways.
        told = {(class_name, frozenset(ends)) for class_name, *ends in self._edges}
        more = [way for way in self._ways if (way[0], frozenset(way[1:])) not in told]
        drawn = [*self._draw(self._edges, numbers, "solid", ""),
                 *self._draw(more, numbers, "dashed", "\\n(associators only)")]
        for cluster, _, caption, fill, ground in PUBLISHERS:
            lines += [f"  subgraph cluster_{cluster} {{",
                      f'    label="published by {caption}"; labeljust=l; style=rounded;'
                      f' color="#b0b0b0"; bgcolor="{ground}";']
            for name, path in self._objects.items():
                if publisher(path) == cluster:
                    lines.append(f'    {numbers[name]} [fillcolor="{fill}",'
                                 f" label=<{self._label(name, path, replace)}>];")
            lines += [f"    {line}" for where, line in drawn if where == cluster]
            lines.append("  }")
        lines += [f"  {line}" for where, line in drawn if where is None]
        return "\n".join(lines + ["}", ""])

    def _label(self, name, path, replace):
        key, value = path.telling
        parts = [f"<b>{html.escape(path.class_name)}</b>"]
        if name in self._titles:
            parts.append(html.escape(self._titles[name]))
        parts.append(html.escape(f'{key}="{replace(value)}"'))
        return "<br/>".join(parts)

    def _draw(self, edges, numbers, style, more):
        """Edges with the group that they lie in, or None. Those of one class from one object share
        their beginning and their label."""
        shared = {}
        for class_name, near, far in edges:
            shared.setdefault((class_name, near), []).append(far)
        for (class_name, near), fars in shared.items():
            # An edge stays out of a group that it only leads to; a fork belongs where it leads.
            groups = {publisher(self._objects[name]) for name in fars}
            fork_group = groups.pop() if len(groups) == 1 else None
            group = fork_group if publisher(self._objects[near]) == fork_group else None
            colour = COLOURS.get(class_name, "black")
            look = f'color="{colour}", style={style}'
            label = f'label="{class_name}{more}", fontcolor="{colour}"'
            if len(fars) == 1:
                yield group, f"{numbers[near]} -> {numbers[fars[0]]} [{look}, {label}];"
                continue
            fork = f"{class_name}_{numbers[near]}"
            yield fork_group, f'{fork} [shape=point, width=0.05, color="{colour}", label=""];'
            yield group, f"{numbers[near]} -> {fork} [{look}, {label}, dir=none];"
            for far in fars:
                yield fork_group, f"{fork} -> {numbers[far]} [{look}];"


def publisher(path):
    return next(cluster for cluster, beginnings, *_ in PUBLISHERS
                if path.class_name.startswith(beginnings))


def write(dot, base):
    """Writes BASE.dot and BASE.svg."""
    base.with_name(base.name + ".dot").write_text(dot, encoding="utf-8")
    subprocess.run(["dot", "-Tsvg", "-o", base.with_name(base.name + ".svg")], input=dot, text=True,
                   check=True)
