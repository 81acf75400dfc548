"""Growth as a picture: one field for each work, both scales logarithmic."""
import html
import math
import statistics

WORKS = ["record", "status over 100 days", "read in a day", "read over 100 days", "search (a)", "search (b)",
         "search (c)", "search (d)", "start"]
COLOURS = {"store": "#1b6ca8", "sqlite": "#c0392b", "sqlite-tuned": "#e39a8f", "lmdb": "#2e8b57", "bare": "#888888"}
COLUMNS, WIDTH, HEIGHT, LEFT, TOP = 3, 300, 210, 54, 30
INNER_W, INNER_H = WIDTH - LEFT - 16, HEIGHT - TOP - 34


def medians(runs, work, opponent):
    points = []
    for run in runs:
        for figure in run["figures"]:
            if figure["work"] == work and figure["opponent"] == opponent:
                points.append((run["integrations"], statistics.median(figure["rounds"])))
    return points


def span(values):
    """Whole powers of ten around the values."""
    low, high = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    return low, max(high, low + 1)


def text(x, y, content, size=11, anchor="middle", colour="#333"):
    return (f'<text x="{x:.1f}" y="{y:.1f}" font-size="{size}" text-anchor="{anchor}" fill="{colour}">'
            f"{html.escape(content)}</text>")


def time_of(microseconds):
    for unit, factor in (("s", 1e6), ("ms", 1e3), ("µs", 1)):
        if microseconds >= factor:
            return f"{microseconds / factor:g} {unit}"
    return f"{microseconds * 1000:g} ns"


def field(runs, work, x0, y0):
    series = {o: medians(runs, work, o) for o in runs[0]["opponents"]}
    (xlow, xhigh), (low, high) = (span([p[k] for s in series.values() for p in s]) for k in (0, 1))

    def place(point):
        return (x0 + LEFT + INNER_W * (math.log10(point[0]) - xlow) / (xhigh - xlow),
                y0 + TOP + INNER_H * (1 - (math.log10(point[1]) - low) / (high - low)))

    parts = [text(x0 + LEFT + INNER_W / 2, y0 + TOP - 10, work, 13)]
    for power in range(low, high + 1):
        y = place((10 ** xlow, 10.0 ** power))[1]
        parts.append(f'<line x1="{x0 + LEFT}" x2="{x0 + LEFT + INNER_W}" y1="{y:.1f}" y2="{y:.1f}" stroke="#ddd"/>')
        parts.append(text(x0 + LEFT - 4, y + 4, time_of(10.0 ** power), 10, "end"))
    for power in range(xlow, xhigh + 1):
        x = place((10.0 ** power, 10.0 ** low))[0]
        parts.append(text(x, y0 + TOP + INNER_H + 14, f"{10 ** power:,}", 10))
    for opponent, points in series.items():
        places = [place(p) for p in points]
        colour = COLOURS[opponent]
        parts.append(f'<polyline fill="none" stroke="{colour}" stroke-width="2" points="'
                     + " ".join(f"{x:.1f},{y:.1f}" for x, y in places) + '"/>')
        parts += [f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{colour}"/>' for x, y in places]
    return parts


def growth(runs):
    rows = math.ceil(len(WORKS) / COLUMNS)
    width, height = COLUMNS * WIDTH, rows * HEIGHT + 30
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" font-family="sans-serif">',
             f'<rect width="{width}" height="{height}" fill="white"/>']
    for number, work in enumerate(WORKS):
        parts += field(runs, work, number % COLUMNS * WIDTH, number // COLUMNS * HEIGHT)
    for number, opponent in enumerate(runs[0]["opponents"]):
        parts.append(text(60 + number * 150, height - 10, "● " + opponent, 13, "start", COLOURS[opponent]))
    return "\n".join([*parts, "</svg>", ""])
