"""What the JSON of the benchmarks says, as rows and as Markdown: used by charts.py.

Goals are ratios to memcpy, beyond the caches (4096x3072) and in cache (640x480), at the level x86-64-v3.
"""

import re

SIZES = ["640x480", "1920x1080", "4096x3072"]
BEST_LEVEL = "x86-64-v3"

# The first that matches counts: rows, kind, goal beyond the caches, goal in cache.
GOALS = [
    (r"_scalar$", "yardstick", None, None),
    (r"_CC_.*gamma", "gamma", None, None),
    (r"_CC_", "matrices and tables", 3, 10),
    (r"Int(YUV422|LCAAV?)|CYGM.*_3x3", "interpolations, CYGM 3x3", 3, 10),
    (r"_3x3|CYGM", "3x3, CYGM 2x2 and binned", 2, 6),
    (r"^Raw", "2x2 demosaics", 1.3, 3.5),
    (r"^Resample.*_linear", "linear resampling", None, None),
    (r"", "copies, swaps, widenings, YUV, mono, planes, flips, unpacking", 1.2, 3),
]


def size_of(row):
    return "%dx%d" % (row["width"], row["height"])


def function_of(name):
    """The function of a row: its name without what was chosen of it. Corrections stay rows of their own."""
    if "_CC_" in name:
        return re.sub(r"_shift\d", "", name)
    name = re.sub(r"_(rggb|grbg|gbrg|bggr|shift\d)$", "", name)
    name = re.sub(r"_(be|top)(?=_|$)", "", name)
    name = re.sub(r"(ImageTransform\w*?)_(Y8|Y8Rounded|BGRA?|YUV422|Y16|Y16Rounded|BGR16)$", r"\1", name)
    return re.sub(r"_(swapped_top|swapped|no_luma|in_place)$|(?<=^Flip)_.*|(?<=Scanlines)_(nearest|linear).*|"
                  r"(?<=ScanlinesEx)_.*", lambda match: "_" + match.group(2) if match.group(2) else "", name)


def slowest_by_function(levels):
    """[(function, {(level, size): ratio to memcpy of its slowest row})], in the benchmark's order."""
    lines = {}
    for level, rows in levels.items():
        for row in rows:
            if "width" not in row or row["name"].endswith("_scalar"):
                continue
            values = lines.setdefault(function_of(row["name"]), {})
            key = level, size_of(row)
            values[key] = max(values.get(key, 0), row["memcpy_ratio"])
    return list(lines.items())


def goal(name):
    for pattern, kind, beyond, cached in GOALS:
        if re.search(pattern, name):
            return kind, {SIZES[2]: beyond, SIZES[0]: cached}
    raise AssertionError


def missed(row):
    """Whether a row is over its goal."""
    limit = goal(row["name"])[1].get(size_of(row))
    return limit is not None and row["memcpy_ratio"] > limit


def table(levels):
    """A line a row: the best level at all sizes, the others in cache."""
    cells = {(level, row["name"], size_of(row)): row for level, rows in levels.items() for row in rows
             if "width" in row}
    best = BEST_LEVEL if BEST_LEVEL in levels else list(levels)[-1]
    names = list(dict.fromkeys(name for level, name, _ in cells if level == best))
    others = [level for level in levels if level != best]
    lines = ["| row | %s | %s |" % (" | ".join(SIZES), " | ".join("%s, %s" % (level, SIZES[0]) for level in others)),
             "| --- |" + " ---: |" * (len(SIZES) + len(others))]

    def cell(level, name, size):
        row = cells.get((level, name, size))
        if row is None:
            return ""
        ratio = "%.2f" % row["memcpy_ratio"]
        if level == best and missed(row):
            ratio = "**%s**" % ratio
        return "%.3f · %s" % (row["ns_per_pixel"], ratio)

    for name in names:
        columns = [cell(best, name, size) for size in SIZES] + [cell(level, name, SIZES[0]) for level in others]
        lines.append("| `%s` | %s |" % (name, " | ".join(columns)))
    return "\n".join(lines) + "\n"


def calls(rows):
    lines = ["| call | ns |", "| --- | ---: |"]
    lines += ["| `%s` | %.1f |" % (row["name"], row["ns_per_call"]) for row in rows if "ns_per_call" in row]
    return "\n".join(lines) + "\n"


def goals(rows):
    """How many rows are at goal, by kind, and those that are not, the farthest first."""
    kinds, far = {}, []
    for row in rows:
        if "width" not in row:
            continue
        kind, limits = goal(row["name"])
        limit = limits.get(size_of(row))
        if limit is None:
            continue
        counts = kinds.setdefault((kind, size_of(row)), [limit, 0, 0])
        counts[1] += not missed(row)
        counts[2] += 1
        if missed(row):
            far.append((row["memcpy_ratio"] / limit, row, limit))
    order = list(dict.fromkeys(kind for _, kind, _, _ in GOALS))
    lines = ["| kind | size | goal | rows at goal |", "| --- | --- | ---: | ---: |"]
    for (kind, size), (limit, good, every) in sorted(
            kinds.items(), key=lambda item: (order.index(item[0][0]), SIZES.index(item[0][1]))):
        lines.append("| %s | %s | %g | %d of %d |" % (kind, size, limit, good, every))
    if far:
        lines += ["", "Rows that are not, the farthest first:", "", "| row | size | ratio | goal |",
                  "| --- | --- | ---: | ---: |"]
        lines += ["| `%s` | %s | %.2f | %g |" % (row["name"], size_of(row), row["memcpy_ratio"], limit)
                  for _, row, limit in sorted(far, key=lambda item: -item[0])]
    return "\n".join(lines) + "\n"


def peers(rows):
    lines = ["| row | size | ours, ns a pixel | fastest peer, ns a pixel | ours / fastest |",
             "| --- | --- | ---: | --- | ---: |"]
    for row in rows:
        fastest = next(peer for peer in row["peers"] if peer["name"] == row["fastest"])
        ratio = "%.2f" % row["ratio"]
        lines.append("| `%s` | %s | %.3f | %s %.3f | %s |" % (
            row["name"], size_of(row), row["ns_per_pixel"], row["fastest"], fastest["ns_per_pixel"],
            "**%s**" % ratio if row["ratio"] > 1 else ratio))
    return "\n".join(lines) + "\n"


def run(reports):
    """The circumstances, of the best level's run."""
    context = next(reports[name]["context"] for name in (BEST_LEVEL, "baseline", *reports) if name in reports)
    names = ["L%d %s" % (place, "%d KiB" % (size >> 10) if size < 1 << 20 else "%d MiB" % (size >> 20))
             for place, size in enumerate(context["caches"], 1)]
    return ("| | |\n| --- | --- |\n| date | %s |\n| processor | %s, one core |\n| caches | %s |\n| compiler | %s |\n"
            "| flags | `%s` |\n" % (context["date"], context["processor"], ", ".join(names), context["compiler"],
                                    context["flags"]))


def parts(reports, levels):
    """Markdown by name, of what the reports have."""
    found = {"run": run(reports)} if reports else {}
    if levels:
        best = levels.get(BEST_LEVEL) or list(levels.values())[-1]
        found.update(table=table(levels), calls=calls(best), goals=goals(best))
    if "peers" in reports:
        found["peers"] = peers(reports["peers"]["rows"])
    return found
