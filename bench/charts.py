#!/usr/bin/env python3
"""Charts and tables from the benchmarks' JSON.

    charts.py RESULTS PICTURES [DOCUMENT]

RESULTS is a directory with any of baseline.json, x86-64-v2.json, x86-64-v3.json (entries_bench), peers.json,
sweep.json and threads.json. Each chart whose data is there becomes an SVG in PICTURES. In DOCUMENT, what stands
between <!-- NAME --> and <!-- /NAME --> is replaced by the part of that name: run, table, calls, peers, goals.
The same data gives the same bytes.
"""

import argparse
import json
import pathlib
import re
import sys

import report_tables

LEVELS = ["baseline", "x86-64-v2", "x86-64-v3"]
SIZES = ["640x480", "1920x1080", "4096x3072"]
LEVEL_COLOURS = {"baseline": "#b8860b", "x86-64-v2": "#3a86c8", "x86-64-v3": "#c8412f"}
LINE_COLOURS = ["#c8412f", "#3a86c8", "#2e9e5b", "#b8860b", "#8a5bc8", "#c85b9b", "#5b8a8a"]
PEER_MARKS = {"OpenCV": ("s", "#3a86c8"), "libyuv": ("^", "#2e9e5b"), "swscale": ("D", "#8a5bc8"),
              "libdc1394": ("v", "#b8860b")}
OURS = "#c8412f"
# Ink and grid are replaced by the page's own colours when a picture is saved.
INK, GRID = "#010203", "#040506"
STYLE = """<style>
svg{--ink:#1f2328;--grid:#d0d7de}
@media(prefers-color-scheme:dark){svg{--ink:#e6edf3;--grid:#3d444d}}
text{font-family:sans-serif}
</style>"""


def plotting():
    """Matplotlib, set up for small pictures of the same bytes each time, text as text."""
    import matplotlib
    matplotlib.use("svg")
    matplotlib.rcParams.update({
        "svg.hashsalt": "quorvane", "svg.fonttype": "none", "path.simplify": True, "font.size": 9,
        "text.color": INK, "axes.labelcolor": INK, "axes.edgecolor": GRID, "xtick.color": INK,
        "ytick.color": INK, "grid.color": GRID, "grid.linewidth": 0.6, "axes.axisbelow": True,
        "legend.frameon": False, "axes.spines.top": False, "axes.spines.right": False,
        "savefig.transparent": True})
    import matplotlib.pyplot
    return matplotlib.pyplot


def save(figure, path):
    figure.savefig(path, format="svg", bbox_inches="tight", metadata={"Date": None, "Creator": None})
    plotting().close(figure)
    path.write_text(shrunk(path.read_text().replace(INK, "var(--ink)").replace(GRID, "var(--grid)")))


def shrunk(text):
    """The picture without what no viewer needs, and with the page's colours."""
    text = text[text.index("<svg"):]
    text = re.sub(r"<metadata>.*?</metadata>|<!--.*?-->", "", text, flags=re.S)
    text = re.sub(r"<defs>\s*<style type=\"text/css\">.*?</style>\s*</defs>", STYLE, text, count=1, flags=re.S)
    # Text is laid out for the drawing program's font; any other sans-serif one will do.
    text = re.sub(r"font: ([0-9.]+)px '[^;\"]*'[^;\"]*", r"font: \1px sans-serif", text)
    text = re.sub(r" transform=\"rotate\(-0 [^\"]*\"", "", text)
    text = re.sub(r"(\d+\.\d\d)\d+", r"\1", text)
    text = re.sub(r"(<g) id=\"[^\"]*\"", r"\1", text)
    text = re.sub(r"\s*\n\s*", " ", text)
    # One colour for the markers of a line rather than one each.
    text = re.sub(r"<g[^>]*> ((?:<use [^>]*/> ?)+)</g>", lambda match: "<g style=\"%s\">%s</g>" % (
        re.search(r"style=\"([^\"]*)\"", match.group(1)).group(1),
        re.sub(r" style=\"[^\"]*\"", "", match.group(1))), text)
    text = re.sub(r" clip-path=\"[^\"]*\"|; stroke-linecap: \w+", "", text)
    text = re.sub(r"<clipPath.*?</clipPath>", "", text)
    while True:
        text, count = re.subn(r"<g> ?</g>|<g/>|<defs> ?</defs>", "", text)
        if count == 0:
            return re.sub(r"> +<", ">\n<", text).strip() + "\n"


def lean(axes):
    axes.grid(True)
    axes.minorticks_off()
    axes.tick_params(length=0)


def plain_numbers(axis, ticks):
    from matplotlib.ticker import FixedLocator, FuncFormatter, NullLocator
    axis.set_major_locator(FixedLocator(ticks))
    axis.set_minor_locator(NullLocator())
    axis.set_major_formatter(FuncFormatter(lambda value, _: "%g" % value))


def draw_entries(levels, path):
    """Each function at its slowest selector, a dot a level; a panel in cache and one beyond."""
    lines = report_tables.slowest_by_function(levels)
    figure, panels = plotting().subplots(1, 2, figsize=(9.5, 0.158 * len(lines) + 1), sharey=True)
    for axes, size, title in zip(panels, (SIZES[0], SIZES[2]), ("in cache", "beyond the caches")):
        for level in reversed(LEVELS):
            if level not in levels:
                continue
            dots = [(values[level, size], place) for place, (_, values) in enumerate(lines)
                    if (level, size) in values]
            axes.plot([x for x, _ in dots], [y for _, y in dots], "o", markersize=3.5,
                      color=LEVEL_COLOURS[level], label=level, markeredgewidth=0)
        axes.set_xscale("log")
        plain_numbers(axes.xaxis, [1, 2, 5, 10, 20, 50, 100])
        axes.set_title("%s, %s" % (size, title), color=INK, fontsize=10)
        axes.set_xlabel("time as a multiple of memcpy's for as many bytes")
        lean(axes)
    panels[0].set_yticks(range(len(lines)), [name for name, _ in lines], fontsize=7)
    panels[0].set_ylim(len(lines) - 0.5, -0.5)
    panels[0].legend(loc="lower right", bbox_to_anchor=(0, 1), fontsize=8)
    figure.subplots_adjust(wspace=0.05)
    save(figure, path)


def draw_peers(rows, path, size=SIZES[1]):
    """Ours and the others, a line a conversion, ordered by how far ahead ours is."""
    rows = [row for row in rows if report_tables.size_of(row) == size]
    rows.sort(key=lambda row: row["ratio"])
    figure, axes = plotting().subplots(figsize=(8, 0.165 * len(rows) + 1))
    for place, row in enumerate(rows):
        fastest = min(peer["ns_per_pixel"] for peer in row["peers"])
        axes.plot([row["ns_per_pixel"], fastest], [place, place], color=GRID, linewidth=2.5, zorder=1)
    for library, (mark, colour) in PEER_MARKS.items():
        dots = [(peer["ns_per_pixel"], place) for place, row in enumerate(rows) for peer in row["peers"]
                if peer["name"].startswith(library)]
        if dots:
            axes.plot(*zip(*dots), mark, color=colour, markersize=3.5, label=library, markeredgewidth=0, zorder=4)
    # Beneath the others, and larger: who is as fast is seen on ours.
    axes.plot([row["ns_per_pixel"] for row in rows], range(len(rows)), "o", color=OURS, markersize=6.5,
              label="Quorvane", markeredgewidth=0, zorder=3)
    axes.set_xscale("log")
    plain_numbers(axes.xaxis, [0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10])
    axes.set_xlabel("nanoseconds a pixel at %s, one thread: less is better" % size)
    axes.set_yticks(range(len(rows)), [row["name"] for row in rows], fontsize=7)
    axes.set_ylim(len(rows) - 0.5, -0.5)
    lean(axes)
    axes.legend(loc="lower left", bbox_to_anchor=(0, 1), ncol=5, columnspacing=1, handletextpad=0.2)
    save(figure, path)


def draw_sweep(rows, caches, path):
    """Time a frame over its pixels, and cost a pixel over the bytes that a frame moves."""
    names = list(dict.fromkeys(row["name"] for row in rows))
    figure, (times, costs) = plotting().subplots(1, 2, figsize=(9.5, 4))
    for name, colour in zip(names, LINE_COLOURS):
        some = sorted((row for row in rows if row["name"] == name), key=lambda row: row["width"])
        pixels = [row["width"] * row["height"] for row in some]
        look = {"color": colour, "linewidth": 1.4, "marker": "o", "markersize": 2.5, "label": name}
        times.plot(pixels, [row["ns_per_pixel"] * count / 1e6 for row, count in zip(some, pixels)], **look)
        costs.plot([row["bytes_moved"] for row in some], [row["ns_per_pixel"] for row in some], **look)
    for axes in (times, costs):
        axes.set_xscale("log")
        axes.set_yscale("log")
        lean(axes)
    times.set_xlabel("pixels of a frame")
    times.set_ylabel("milliseconds a frame")
    costs.set_xlabel("bytes that a frame moves, read and written")
    costs.set_ylabel("nanoseconds a pixel")
    plain_numbers(costs.yaxis, [0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5])
    for place, size in enumerate(caches, 1):
        if costs.get_xlim()[0] < size < costs.get_xlim()[1]:
            costs.axvline(size, color=INK, linewidth=0.8, linestyle=":")
            costs.text(size, costs.get_ylim()[1], " L%d" % place, va="top", fontsize=8)
    times.legend(loc="upper left", fontsize=7.5)
    figure.subplots_adjust(wspace=0.22)
    save(figure, path)


def draw_threads(rows, path):
    names = list(dict.fromkeys(row["name"] for row in rows))
    sizes = list(dict.fromkeys(report_tables.size_of(row) for row in rows))
    figure, axes = plotting().subplots(figsize=(7, 0.3 * len(names) + 1))
    for size, colour, mark in zip(sizes, LINE_COLOURS, "os^Dv"):
        dots = [(row["speed_up"], names.index(row["name"])) for row in rows if report_tables.size_of(row) == size]
        axes.plot(*zip(*dots), mark, color=colour, markersize=6, label=size, markeredgewidth=0)
    axes.set_xlim(min([0.95] + [row["speed_up"] for row in rows]) - 0.05, 2.1)
    axes.axvline(1, color=INK, linewidth=0.8)
    axes.axvline(2, color=INK, linewidth=0.8, linestyle=":")
    axes.set_xlabel("frames a second of two threads, as a multiple of one thread's")
    axes.set_yticks(range(len(names)), names)
    axes.set_ylim(len(names) - 0.5, -0.5)
    lean(axes)
    axes.legend(loc="upper left", bbox_to_anchor=(1, 1))
    save(figure, path)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results", type=pathlib.Path)
    parser.add_argument("pictures", type=pathlib.Path)
    parser.add_argument("document", type=pathlib.Path, nargs="?")
    options = parser.parse_args()
    reports = {path.stem: json.loads(path.read_text()) for path in sorted(options.results.glob("*.json"))}
    levels = {level: reports[level]["rows"] for level in LEVELS if level in reports}
    options.pictures.mkdir(parents=True, exist_ok=True)
    if levels:
        draw_entries(levels, options.pictures / "entries.svg")
    if "peers" in reports:
        draw_peers(reports["peers"]["rows"], options.pictures / "peers.svg")
    if "sweep" in reports:
        draw_sweep(reports["sweep"]["rows"], reports["sweep"]["context"]["caches"],
                   options.pictures / "sizes.svg")
    if "threads" in reports:
        draw_threads(reports["threads"]["rows"], options.pictures / "threads.svg")
    if options.document:
        text = options.document.read_text()
        for name, part in report_tables.parts(reports, levels).items():
            text, count = re.subn(r"(<!-- %s -->\n).*?(<!-- /%s -->)" % (name, name),
                                  lambda match: match.group(1) + part + match.group(2), text, flags=re.S)
            if count != 1:
                sys.exit("%s has no place for %s" % (options.document, name))
        options.document.write_text(text)


if __name__ == "__main__":
    main()
