"""What is to be reached. A ratio is the store's figure divided by the opponent's of the same round."""

# Work -> the greatest ratio to each opponent.
RATIOS = {
    "record": {"sqlite": 0.30, "bare": 2.0},
    "status in a day": {"sqlite": 0.35, "bare": 2.0},
    "status over 10 days": {"sqlite": 0.35, "bare": 2.0},
    "status over 100 days": {"sqlite": 1.0},
    "read in a day": {"sqlite": 0.15, "lmdb": 1.0, "bare": 4.0},
    "read over 100 days": {"sqlite": 1.0},
    "search (a)": {"sqlite": 0.03, "bare": 3.0},
    "search (b)": {"sqlite": 0.05},
    "search (c)": {"sqlite": 0.06},
    "search (d)": {"sqlite": 0.08},
    "search (a), shuffled index": {"sqlite": 0.15, "bare": 1.5},
    "start": {"bare": 1.5},
    "bytes on disk": {"sqlite": 0.6},
    "durable record": {"sqlite": 0.65, "bare": 1.5},
    "durable record, 8 callers": {"sqlite": 0.33},
}

# Work of the comparison whose figure of the store itself has a bound.
FIGURES = {
    "bytes on disk": 2310,
    "memory after the start": 80e6,
    "memory after reading over 100 days": 256e6,
}

# Figures of xvcr: name -> (bound, whether it is the greatest, unit). The bounds hold for a million.
PROGRAMS = {
    "carrega, 2 KB a line": (60000, False, "lines a CPU second"),
    "busca --json, to sqlite3 -json": (2.0, True, "times"),
    "busca --json, memory": (100e6 + 80e6, True, "bytes"),
    "exporta | importa, to sqlite3 .dump | sqlite3": (2.0, True, "times"),
    "exporta | importa, memory": (100e6 + 80e6, True, "bytes"),
    "converte from version 0, CPU": (0.5, True, "s"),
    "converte from version 0, memory": (8e6, True, "bytes"),
}
