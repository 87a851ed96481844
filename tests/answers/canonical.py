"""XML in canonical form, for people to read and programs to compare."""

import json


def text(element, depth=0):
    """One line an element: attributes in order of their names, blanks between elements dropped."""
    indent = "  " * depth
    attributes = "".join(f" {k}={json.dumps(v, ensure_ascii=False)}"
                         for k, v in sorted(element.attrib.items()))
    lines = [f"{indent}{element.tag}{attributes}"]
    if element.text and element.text.strip():
        lines[0] += " " + json.dumps(element.text, ensure_ascii=False)
    lines += [text(child, depth + 1) for child in element]
    return "\n".join(lines)
