"""Lines over sizes as a picture (SVG), both axes logarithmic."""

import math
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 640, 360
LEFT, RIGHT, TOP, BOTTOM = 80, 150, 40, 50
COLOURS = ("#b2182b", "#2166ac", "#1b7837", "#762a83")
STYLE = "font: 12px sans-serif; fill: #222"


def decades(values):
    return math.floor(math.log10(min(values))), max(math.ceil(math.log10(max(values))),
                                                    math.floor(math.log10(min(values))) + 1)


def tick(value):
    return f"{value:,}" if value >= 1 else f"{value:.10f}".rstrip("0")


class Axis:
    def __init__(self, values, start, end):
        self.low, self.high = decades(values)
        self._start, self._end = start, end

    def at(self, value):
        share = (math.log10(value) - self.low) / (self.high - self.low)
        return self._start + share * (self._end - self._start)

    def ticks(self):
        return [10 ** n for n in range(self.low, self.high + 1)]


def svg(title, x_label, lines):
    """`lines` is {name: [(x, y)]}; points that are not above zero have no place on it."""
    lines = {name: [(x, y) for x, y in points if x > 0 and y is not None and y > 0]
             for name, points in lines.items()}
    lines = {name: points for name, points in lines.items() if points}
    points = [point for line in lines.values() for point in line]
    if not points:
        return None
    across = Axis([x for x, _ in points], LEFT, WIDTH - RIGHT)
    up = Axis([y for _, y in points], HEIGHT - BOTTOM, TOP)
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" role="img">',
           f"<title>{escape(title)}</title>",
           f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#fff"/>',
           f'<text x="{LEFT}" y="20" style="{STYLE}; font-weight: bold">{escape(title)}</text>']
    for value in across.ticks():
        x = across.at(value)
        out.append(f'<path d="M{x:.1f} {TOP}V{HEIGHT - BOTTOM}" stroke="#ddd"/>'
                   f'<text x="{x:.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle" '
                   f'style="{STYLE}">{tick(value)}</text>')
    for value in up.ticks():
        y = up.at(value)
        out.append(f'<path d="M{LEFT} {y:.1f}H{WIDTH - RIGHT}" stroke="#ddd"/>'
                   f'<text x="{LEFT - 8}" y="{y + 4:.1f}" text-anchor="end" '
                   f'style="{STYLE}">{tick(value)}</text>')
    out.append(f'<text x="{(LEFT + WIDTH - RIGHT) / 2}" y="{HEIGHT - 12}" text-anchor="middle" '
               f'style="{STYLE}">{escape(x_label)}</text>')
    for (name, line), colour in zip(lines.items(), COLOURS):
        path = " ".join(f"{across.at(x):.1f},{up.at(y):.1f}" for x, y in line)
        x, y = across.at(line[-1][0]), up.at(line[-1][1])
        out.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
        out += [f'<circle cx="{across.at(x):.1f}" cy="{up.at(y):.1f}" r="3" fill="{colour}"/>'
                for x, y in line]
    # The names stand beside the ends of their lines, apart from each other.
    last = TOP - 16.0
    for y, name, colour in sorted((up.at(line[-1][1]), name, colour) for (name, line), colour in
                                  zip(lines.items(), COLOURS)):
        last = max(y + 4, last + 16)
        out.append(f'<text x="{WIDTH - RIGHT + 10}" y="{last:.1f}" '
                   f'style="{STYLE}; fill: {colour}">{escape(name)}</text>')
    return "\n".join([*out, "</svg>", ""])
