"""The tables of a run, in Markdown."""
import statistics

from benching import goals


def figures_of(run):
    return {(f["work"], f["opponent"]): f for f in run["figures"]}


def shown(value, unit):
    if unit == "bytes":
        return f"{value / 1e6:.1f} MB" if value >= 1e5 else f"{value:,.0f} B"
    if unit == "us" and value >= 10000:
        return f"{value / 1000:,.1f} ms"
    return f"{value:,.2f} µs" if unit == "us" else f"{value:,.2f}"


def ratios(ours, theirs):
    """Median over the rounds, of the fastest blocks, and of what the processors spent in all rounds."""
    pairs = [a / b for a, b in zip(ours["rounds"], theirs["rounds"])]
    spent = f"{sum(ours['cpu']) / sum(theirs['cpu']):.3g}" if sum(theirs["cpu"]) > 0 else "-"
    return statistics.median(pairs), min(ours["rounds"]) / min(theirs["rounds"]), spent


def verdict(reached):
    return "reached" if reached else "**not reached**"


def goal_rows(run):
    figures = figures_of(run)
    for work, bounds in goals.RATIOS.items():
        for opponent, bound in bounds.items():
            if (work, opponent) not in figures:
                continue  # an earlier run, before there was such a work
            median, fastest, spent = ratios(figures[work, "store"], figures[work, opponent])
            yield (f"| {work} | {opponent} | {median:.3g} | {fastest:.3g} | {spent} | <= {bound:g} | "
                   f"{verdict(median <= bound)} |")


def bound_rows(run):
    figures = figures_of(run)
    for work, bound in goals.FIGURES.items():
        figure = figures[work, "store"]
        median = statistics.median(figure["rounds"])
        unit = figure["unit"]
        yield f"| {work} | {shown(median, unit)} | <= {shown(bound, unit)} | {verdict(median <= bound)} |"
    for name, (bound, greatest, unit) in goals.PROGRAMS.items():
        median = run["programs"][name]["median"]
        yield (f"| `xvcr` {name} | {shown(median, unit)} {'' if unit == 'bytes' else unit} | "
               f"{'<=' if greatest else '>='} {shown(bound, unit)} | "
               f"{verdict(median <= bound if greatest else median >= bound)} |")


def figure_rows(run):
    figures, opponents = figures_of(run), list(run["opponents"])
    for work in dict.fromkeys(f["work"] for f in run["figures"]):
        cells = [figures.get((work, opponent)) for opponent in opponents]
        yield "| " + work + " | " + " | ".join(
            f"{shown(statistics.median(c['rounds']), c['unit'])} ({shown(min(c['rounds']), c['unit'])})" if c else "-"
            for c in cells) + " |"


def table(head, rows):
    return "\n".join(["| " + " | ".join(head) + " |", "|" + "---|" * len(head), *rows, ""])


def markdown(results):
    run = results["runs"][-1]
    parts = ["## Machine", table(["", ""], (f"| {k} | {v} |" for k, v in results["machine"].items())),
             f"{run['integrations']:,} integrations over {run['days']} days in the large store, "
             f"{run['recordings']:,} recorded a round, {run['rounds']} rounds.\n",
             "## Ratios",
             table(["work", "to", "rounds", "fastest", "processor", "goal", ""], goal_rows(run)),
             "## Bounds", table(["figure", "median", "goal", ""], bound_rows(run))]
    for run in results["runs"]:
        parts += [f"## Figures with {run['integrations']:,} integrations", "Median (minimum) of an operation.\n",
                  table(["work", *run["opponents"]], figure_rows(run))]
    return "\n".join(parts)
