"""A plot of what a question costs, as an SVG for light and dark pages."""
import math

WIDTH, HEIGHT = 360, 260  # of one panel's inside
STYLE = """<style>
  text { font: 12px sans-serif; fill: #6e7781 } .axis { stroke: #8c959f; fill: none }
  polyline { fill: none; stroke-width: 2 }
  .c0 { stroke: #0969da } .c1 { stroke: #cf222e } .c2 { stroke: #1a7f37 } .c3 { stroke: #8250df } .c4 { stroke: #9a6700 }
  text.n { font-size: 11px }
  @media (prefers-color-scheme: dark) {
    text { fill: #e6edf3 }
    .c0 { stroke: #58a6ff } .c1 { stroke: #ff7b72 } .c2 { stroke: #3fb950 } .c3 { stroke: #bc8cff } .c4 { stroke: #d29922 }
  }
</style>"""


def panel(left, title, lines, colours):
    xs = sorted({x for points in lines.values() for x, _ in points})
    low = 10 ** math.floor(math.log10(min(y for points in lines.values() for _, y in points)))
    high = 10 ** math.ceil(math.log10(max(y for points in lines.values() for _, y in points)))

    def place(x, y):
        across = (math.log(x) - math.log(xs[0])) / ((math.log(xs[-1]) - math.log(xs[0])) or 1)
        up = (math.log(y) - math.log(low)) / (math.log(high) - math.log(low))
        return left + across * WIDTH, 40 + HEIGHT - up * HEIGHT

    parts = [f'<text x="{left}" y="24">{title}</text>',
             f'<rect class="axis" x="{left}" y="40" width="{WIDTH}" height="{HEIGHT}"/>']
    for x in xs:
        parts.append(f'<text x="{place(x, low)[0]:.0f}" y="{HEIGHT + 58}" text-anchor="middle">{x:,}</text>')
    y = low
    while y <= high:
        at = place(xs[0], y)[1]
        parts.append(f'<text x="{left - 8}" y="{at + 4:.0f}" text-anchor="end">{y / 1000:g} ms</text>')
        parts.append(f'<path class="axis" stroke-dasharray="2 4" d="M{left} {at:.0f}h{WIDTH}"/>')
        y *= 10
    for number, (name, points) in enumerate(lines.items()):
        places = [place(*point) for point in points]
        line = " ".join(f"{x:.0f},{y:.0f}" for x, y in places)
        key = HEIGHT + 82 + 18 * number
        parts.append(f'<polyline class="c{colours[name]}" points="{line}"/>')
        parts.append(f'<path class="c{colours[name]}" stroke-width="2" d="M{left} {key}h22"/>')
        parts.append(f'<text class="n" x="{left + 30}" y="{key + 4}">{name}</text>')
    return parts


def svg(points):
    """`points`: by axis, by the name of a line, its (x, microseconds)."""
    colours = {name: number % 5 for number, name in enumerate(points["M"] | points["N"])}
    parts = panel(80, "one name in a fresh process, by folders (M)", points["M"], colours)
    parts += panel(80 + WIDTH + 90, "the same by support records (N)", points["N"], colours)
    height = HEIGHT + 82 + 18 * max(len(lines) for lines in points.values())
    size = f'viewBox="0 0 {WIDTH * 2 + 210} {height}" width="{WIDTH * 2 + 210}" height="{height}"'
    return f'<svg xmlns="http://www.w3.org/2000/svg" {size}>\n{STYLE}\n' + "\n".join(parts) + "\n</svg>\n"
