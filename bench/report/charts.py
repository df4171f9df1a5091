"""Line charts on logarithmic axes, as SVG."""
import math
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 640, 360
LEFT, RIGHT, TOP, BOTTOM = 64, 150, 36, 48
COLOURS = ("#0b6bcb", "#c4320a", "#18794e", "#8e4ec6", "#8b6d00", "#555555")
DECADE = 10


class _Axis:
    """Maps values to places on an axis, decade by decade."""

    def __init__(self, values, start, end):
        self.low = math.floor(math.log10(min(values)))
        self.high = max(math.ceil(math.log10(max(values))), self.low + 1)
        self.start, self.end = start, end

    def at(self, value):
        part = (math.log10(value) - self.low) / (self.high - self.low)
        return round(self.start + part * (self.end - self.start), 1)

    def ticks(self):
        return [float(DECADE) ** power for power in range(self.low, self.high + 1)]


def _text(x, y, content, anchor="middle", more=""):
    return f'<text x="{x}" y="{y}" text-anchor="{anchor}"{more}>{escape(content)}</text>'


def _line(x1, y1, x2, y2, colour):
    return f'<line x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}" stroke="{colour}"/>'


def _grid(horizontal, vertical):
    parts = []
    for tick in horizontal.ticks():
        x = horizontal.at(tick)
        parts += [_line(x, TOP, x, HEIGHT - BOTTOM, "#e0e0e0"), _text(x, HEIGHT - BOTTOM + 16, f"{tick:,.10g}")]
    for tick in vertical.ticks():
        y = vertical.at(tick)
        parts += [_line(LEFT, y, WIDTH - RIGHT, y, "#e0e0e0"), _text(LEFT - 6, y + 4, f"{tick:,.10g}", "end")]
    return parts


def _curve(points, horizontal, vertical, colour):
    places = [(horizontal.at(x), vertical.at(y)) for x, y in points]
    path = " ".join(f"{x},{y}" for x, y in places)
    dots = [f'<circle cx="{x}" cy="{y}" r="3" fill="{colour}"/>' for x, y in places]
    return [f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>', *dots]


def _legend(names):
    parts = []
    for number, name in enumerate(names):
        y = TOP + 8 + number * 18
        x = WIDTH - RIGHT + 12
        parts += [_line(x, y, x + 16, y, COLOURS[number]), _text(x + 22, y + 4, name, "start")]
    return parts


def chart(title, x_label, y_label, curves):
    """An SVG text; `curves` maps names to (x, y) points, all above zero."""
    points = [point for curve in curves.values() for point in curve]
    horizontal = _Axis([x for x, _ in points], LEFT, WIDTH - RIGHT)
    vertical = _Axis([y for _, y in points], HEIGHT - BOTTOM, TOP)
    middle = (LEFT + WIDTH - RIGHT) / 2
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" width="{WIDTH}" height="{HEIGHT}" '
        'font-family="sans-serif" font-size="12">',
        f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
        _text(middle, 20, title, more=' font-size="14" font-weight="bold"'),
        _text(middle, HEIGHT - 10, x_label),
        f'<g transform="rotate(-90 14 {HEIGHT / 2})">{_text(14, HEIGHT / 2, y_label)}</g>',
        *_grid(horizontal, vertical),
    ]
    for colour, curve in zip(COLOURS, curves.values()):
        parts += _curve(curve, horizontal, vertical, colour)
    return "\n".join([*parts, *_legend(curves), "</svg>", ""])
