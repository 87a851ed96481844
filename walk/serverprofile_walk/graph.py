"""What a walk found in a namespace, as a graph: objects as boxes, grouped by who publishes them, and
associations as edges. Drawn by Graphviz."""

import html
import re
import subprocess
import xml.etree.ElementTree as ElementTree

from .text import printable
from .walk import Form
from .world import Thing, telling

FONT = "DejaVu Sans,Verdana,sans-serif"
PATIENCE = 60  # seconds for drawing
LONGEST = 80  # characters of a name in a box
MOST = 300  # boxes, and edges: more is no picture

# Who publishes an object: caption, and the colours of boxes and group.
PUBLISHERS = {"module": ("libServerProfileProvider", "#dbe9f6", "#f4f8fc"),
              "server": ("the CIM server", "#e3efdc", "#f6faf3"),
              "switch": ("the switch", "#fbe6cf", "#fdf6ee")}

COLOURS = {"CIM_ElementConformsToProfile": "#a8480f", "CIM_SubProfileRequiresProfile": "#1f5fa8",
           "ORVEX_ElementSoftwareIdentity": "#6b4d9e", "CIM_HostedService": "#2f7d32",
           "CIM_HostedAccessPoint": "#2f7d32", "CIM_NamespaceInManager": "#00707a",
           "CIM_CommMechanismForManager": "#8a6d00"}


def publisher(thing):
    if thing.kind.own:
        return "module"
    return "server" if thing.kind.settled else "switch"


class Graph:
    """The graph of a Section of a Walk."""

    def __init__(self, walk, section):
        self._walk = walk
        self._namespace = section.namespace
        self._paths = {}  # Thing -> its path, in the order in which they were met
        edges, ways = {}, {}
        for step in section.steps:
            if step.namespace.lower() != section.namespace.lower():
                continue
            for form in step.met:
                if isinstance(form, Form) and isinstance(form.what, Thing):
                    self._paths.setdefault(form.what, form.path)
            edges.update(((tie.association.name, *tie.ends), None) for tie in step.ties)
            ways.update(dict.fromkeys(step.ways))
        # A way that no association tells of; each association can be followed both ways, and by the
        # name of its superclass.
        told = {frozenset(ends) for _, *ends in edges}
        more = {}
        for name, *ends in ways:
            if frozenset(ends) not in told:
                more.setdefault((name, frozenset(ends)), (name, *ends))
        self._edges = self._drawable(edges)
        self._more = self._drawable(more.values())

    def _drawable(self, edges):
        return [edge for edge in edges if set(edge[1:]) <= self._paths.keys()][:MOST]

    def dot(self, replace=str):
        """The graph in the dot language. `replace` is applied to the value of each telling key."""
        numbers = {thing: f"object{number}" for number, thing in
                   enumerate(list(self._paths)[:MOST], 1)}
        lines = ["digraph walk {", "  rankdir=LR; newrank=true; ranksep=0.35; nodesep=0.3;",
                 f'  fontname="{FONT}"; fontsize=13; bgcolor="white";',
                 f'  node [shape=box, style="filled,rounded", fontname="{FONT}", fontsize=11,'
                 ' margin="0.15,0.08"];',
                 f'  edge [fontname="{FONT}", fontsize=10, arrowsize=0.7];']
        drawn = [*_draw(self._edges, numbers, "solid", ""),
                 *_draw(self._more, numbers, "dashed", "\\n(associators only)")]
        for cluster, (caption, fill, ground) in PUBLISHERS.items():
            lines += [f"  subgraph cluster_{cluster} {{",
                      f'    label="published by {caption}"; labeljust=l; style=rounded;'
                      f' color="#b0b0b0"; bgcolor="{ground}";']
            lines += [f'    {name} [fillcolor="{fill}", label=<{self._label(thing, replace)}>];'
                      for thing, name in numbers.items() if publisher(thing) == cluster]
            lines += [f"    {line}" for where, line in drawn if where == cluster]
            lines.append("  }")
        lines += [f"  {line}" for where, line in drawn if where is None]
        return "\n".join(lines + ["}", ""])

    def _label(self, thing, replace):
        path = self._paths[thing]
        key, value = telling(path)
        told = self._walk.told(self._namespace, thing)
        names = ("registeredname", "elementname", *(("name",) if thing.kind.name == "firmware" else ()))
        title = next((str(told[name].value) for name in reversed(names)
                      if name in told and told[name].value), "")
        parts = [f"<b>{_text(path.class_name)}</b>", _text(f'{key}="{replace(value)}"')]
        if title not in ("", value):
            parts.insert(1, _text(title))
        return "<br/>".join(parts)


def _text(text):
    text = printable(text)
    return html.escape(text if len(text) <= LONGEST else text[:LONGEST - 3] + "...")


def _draw(edges, numbers, style, more):
    """Edges with the group that they lie in, or None. Those of one class from one object share their
    beginning and their label."""
    shared = {}
    for class_name, near, far in edges:
        if near in numbers and far in numbers:
            shared.setdefault((class_name, near), []).append(far)
    for (class_name, near), fars in shared.items():
        # An edge stays out of a group that it only leads to; a fork belongs where it leads.
        groups = {publisher(thing) for thing in fars}
        fork_group = groups.pop() if len(groups) == 1 else None
        group = fork_group if publisher(near) == fork_group else None
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


class CannotDraw(Exception):
    """Says why there is no picture."""


def svg(dot):
    """The picture of a graph in the dot language. Throws CannotDraw."""
    try:
        drawn = subprocess.run(["dot", "-Tsvg"], input=dot.encode(), capture_output=True,
                               timeout=PATIENCE, check=True)
    except FileNotFoundError as error:
        raise CannotDraw("the program dot is not there: install Graphviz") from error
    except subprocess.CalledProcessError as error:
        raise CannotDraw(f"dot: {error.stderr.decode(errors='replace').strip()}") from error
    except (OSError, subprocess.TimeoutExpired) as error:
        raise CannotDraw(f"dot: {error}") from error
    return drawn.stdout.decode()


# What a picture consists of; nothing in it leads anywhere or does anything.
_ELEMENTS = {"svg", "g", "title", "polygon", "path", "text", "ellipse", "polyline", "rect"}


def inlined(picture):
    """The picture as an element for a page. Throws CannotDraw if it is more than a picture."""
    element = picture[picture.index("<svg"):]
    for each in ElementTree.fromstring(element).iter():
        tag = re.sub(r"^\{http://www\.w3\.org/2000/svg\}", "", each.tag)
        if tag not in _ELEMENTS or any(
                name.startswith("on") or "href" in name or "url(" in value
                for name, value in each.attrib.items()):
            raise CannotDraw(f"there is a <{tag}> in the picture that does not belong there")
    return element


def write(dot, base):
    """Writes BASE.dot and BASE.svg. Throws CannotDraw, OSError."""
    base.with_name(base.name + ".dot").write_text(dot, encoding="utf-8")
    base.with_name(base.name + ".svg").write_text(svg(dot), encoding="utf-8")
