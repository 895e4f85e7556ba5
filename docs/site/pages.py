#!/usr/bin/env python3
"""Writes the Markdown and the pictures that Doxygen makes the documentation of.

    pages.py QVN LIBRARY OUT        the built tool, the built shared library, a folder for pages and pictures
    pages.py --drawings FOLDER      the drawings that docs/ keeps
"""

import ctypes
import html
import pathlib
import re
import sys

import drawings
import edges
import header
import pictures
import rearranged
from book import FRONT, ROOT, Book, figures, label_of, slug

# Arguments that mean the same wherever no description says more.
USUAL = {
    "width": "pixels a line",
    "height": "lines",
    "count": "pixels; 0 is good and writes nothing",
    "pattern": "which colours lie at the top left: [pattern code](docs/patterns.md), 0 to 3",
    "target": "what comes out, of those that are drawn above: [TransformTarget](include/quorvane/quorvane.h)",
    "shift": "low bits of a sample that do not count",
    "cc": "a colour correction, or null for none",
    "dstR": "plane of red, 1 byte a pixel; width * height bytes",
    "dstG": "plane of green, 1 byte a pixel; width * height bytes",
    "dstB": "plane of blue, 1 byte a pixel; width * height bytes",
    "dstY": "plane of luma, 1 byte a pixel; width * height bytes",
}
# Whose formula a function uses: a function, told whole, or the first paragraph of a section.
BORROWED = (
    (r"QVN_YUV4\d\dImageTransform", r"QVN_YUV444ToBGR"),
    (r"QVN_Raw8ImageTransform_(3x3|Int\w+)", r"QVN_Raw8ToBGR_\1"),
    (r"QVN_IRaw8CYGMImageTransform(|_Bin|_3x3)", r"QVN_IRaw8CYGMToBGR\1"),
    (r"QVN_Y16ToY8Ex", r"QVN_Y16ToBGREx"),
    (r"QVN_Raw\w+_CC|QVN_Raw8ImageTransform|QVN_Raw1[26]\w+", "Bayer demosaics by the 2x2 window"),
    (r"QVN_Raw\w+_CC", "Colour correction"),
)


class Site(Book):
    def arguments(self, function):
        rows = ["| argument | |", "| --- | --- |"]
        for argument in function.arguments:
            text = argument.text
            if text:
                text = self.words(text, function.name)
            elif argument.name in USUAL:
                text = self.line(USUAL[argument.name], "README.md")
            else:
                raise ValueError(f"{function.name}: nothing is told of {argument.name}")
            rows.append(f"| <code>{html.escape(argument.declaration)}</code> | {text} |")
        return "\n".join(rows)

    def described(self, text, own):
        blocks = []
        for block in re.split(r"\n\s*\n", text.strip("\n")):
            lines = block.split("\n")
            if all(line.startswith("    ") for line in lines):
                blocks.append("```{.unparsed}\n" + "\n".join(line[4:] for line in lines) + "\n```")
            else:
                blocks.append(self.words(" ".join(block.split()), own))
        return "\n\n".join(blocks)

    def borrowed(self, function):
        """What is told at another place and holds here."""
        parts = []
        for names, lender in BORROWED:
            match = re.fullmatch(names, function.name)
            if not match:
                continue
            lender = match.expand(lender)
            if lender in self.functions:
                other = self.functions[lender]
                parts += [f"## From {lender}", self.described(other.body, function.name)]
                section = other.section
            else:
                section = next(section for section in self.sections if section.title == lender)
                parts.append(f"## From {lender}")
            if section is not function.section:
                shared = header.split_tags(section.text)[0]
                if lender == "Bayer demosaics by the 2x2 window":
                    shared = shared.split("\n\n")[0]
                shared = re.split(r"Statuses\s+in\s+order", shared)[0]
                parts.append(self.described(shared, function.name))
        return parts

    def statuses(self, function):
        shared = header.split_tags(function.section.text)[0]
        told = re.search(r"Statuses\s+in\s+order[^:]*:\s+(.*?)(?:\n\n|$)", shared, re.S)
        parts = []
        if told and not (function.returns and not function.returns.startswith(("also", "after", "QVN_E_PARAM3, after",
                                                                               "QVN_E_NOT"))):
            parts.append(self.words(" ".join(told[1].split()), function.name).rstrip(".") + ".")
        if function.returns:
            words = self.words(function.returns, function.name)
            parts.append((words[0].upper() + words[1:] if words[0].islower() else words).rstrip(".") + ".")
        if not parts:
            raise ValueError(f"{function.name}: no statuses are told")
        return "\n\n".join(parts)

    def function(self, function, library, shown, told_edges):
        name, text = function.name, []
        text.append("```{.c}\n" + function.declaration + "\n```")
        text.append(f'<p class="section">{html.escape(function.section.title.split(":")[0])} · '
                    f'<a href="functions.html">all functions</a></p>')
        text.append(self.described(function.body, name))
        drawn = drawings.layout(function)
        if drawn:
            text += ["## Bytes", self.drawing(f"{name}-layout.svg", drawn, f"bytes of {name}")]
        shared = header.split_tags(function.section.text)[0]
        if shared.strip():
            text += ["## All functions of this kind", self.described(shared, name)]
        text += self.borrowed(function)
        text += ["## Arguments", self.arguments(function)]
        if name in told_edges:
            svg, _ = edges.draw(library, function, self.functions)
            text.append("## Edges")
            columns, lines = told_edges[name]
            text.append(f"Not computed, and filled by `--edges fill`: columns: {columns}; lines: {lines}.")
            if svg:
                text.append(self.drawing(f"{name}-edges.svg", svg, f"edges of {name}"))
        text += ["## Statuses, in order", self.statuses(function)]
        command, made, printed = shown[name]
        text += ["## By the tool", f"```{{.sh}}\n{command}\n```"]
        if made:
            text.append(figures(self.out, [(picture, picture[len(name) + 1:-4]) for picture in made]))
        if printed.strip():
            text.append(f"```{{.unparsed}}\n{printed.rstrip()}\n```")
        headed = []
        for part in text:
            heading = re.match(r"(## )(.*)", part)
            headed.append(f"{part} {{#{function.label}-{slug(heading[2])}}}" if heading else part)
        self.page(function.label, name, "\n\n".join(headed))

    def drawing(self, name, svg, words):
        (self.out / "pictures" / name).write_text(svg, encoding="utf-8")
        return f'<img src="pictures/{name}" alt="{html.escape(words)}"/>'

    def index_of_functions(self):
        parts = ["What each function makes, in the order of the header. [Which one do I need?](docs/choose.md)"]
        parts[0] = self.line(parts[0], "README.md")
        for section in self.sections:
            if section.functions:
                parts.append(f"## {section.title.split(':')[0]} {{#functions-{slug(section.title)}}}")
                rows = [f"| {self.function_link(function.name)} | {self.words(function.summary, function.name)} |"
                        for function in section.functions]
                parts.append("| function | |\n| --- | --- |\n" + "\n".join(rows))
        self.page("functions", "Functions", "\n\n".join(parts))

    def gallery(self, shown):
        parts = ["The chart, sampled as a camera sends it, by each function. A picture leads to its function; the "
                 "command on that page made it when these pages were built."]
        for section in self.sections:
            cells = []
            for function in section.functions:
                _, made, _ = shown[function.name]
                if made:
                    cells.append(f'<a class="cell" href="{function.label}.html"><img src="pictures/{made[0]}" '
                                 f'alt="{function.name}"/><br/>{function.name.removeprefix("QVN_")}</a>')
            if cells:
                parts.append(f"## {section.title.split(':')[0]} {{#gallery-{slug(section.title)}}}")
                parts.append('<div class="gallery">' + "\n".join(cells) + "</div>")
        self.page("gallery", "Gallery", "\n\n".join(parts))

    def navigation(self):
        def tab(label, title):
            return f'<tab type="user" visible="yes" url="@ref {label}" title="{html.escape(title)}"/>'
        groups = []
        for section in self.sections:
            if section.functions:
                inner = "".join(tab(f.label, f.name) for f in section.functions)
                groups.append(f'<tab type="usergroup" visible="yes" url="@ref functions-{slug(section.title)}" '
                              f'title="{html.escape(section.title.split(":")[0])}">{inner}</tab>')
        pages = [tab(label_of(path), title) for path, title in self.written.items()]
        own = [tab("gallery", "Gallery"),
               f'<tab type="usergroup" visible="yes" url="@ref functions" title="Functions">{"".join(groups)}</tab>',
               '<tab type="user" visible="yes" url="quorvane_8h.html" title="The header"/>']
        tabs = ['<tab type="mainpage" visible="yes" title="Quorvane"/>', *pages[:2], *own, *pages[2:]]
        (self.out / "layout.xml").write_text(
            '<?xml version="1.0" encoding="UTF-8"?>\n<doxygenlayout version="1.0">\n<navindex>\n' + "\n".join(tabs) +
            "\n</navindex>\n</doxygenlayout>\n", encoding="utf-8")


def table_of_edges(document):
    section = document.split("## Edges")[1].split("\n## ")[0]
    found = {}
    for row in re.findall(r"^\| (`QVN_.*) \| (.*) \| (.*) \| (.*) \|$", section, re.M):
        for name in re.findall(r"`(QVN_\w+)`", row[0]):
            found[name] = row[1:3]
    return found


def main():
    if sys.argv[1] == "--drawings":
        folder = pathlib.Path(sys.argv[2])
        (folder / "patterns.svg").write_text(rearranged.patterns(), encoding="utf-8")
        (folder / "packings.svg").write_text(rearranged.packings(), encoding="utf-8")
        return
    tool, library, out = str(pathlib.Path(sys.argv[1]).resolve()), ctypes.CDLL(sys.argv[2]), pathlib.Path(sys.argv[3])
    site = Site(out)
    document = (ROOT / "docs/tool.md").read_text(encoding="utf-8")
    shown = pictures.gallery(tool, document, out / "pictures")
    told_edges = table_of_edges(document)
    for function in site.functions.values():
        site.function(function, library, shown, told_edges)
    for path in site.written:
        title, text = site.markdown(path, tool)
        site.page(label_of(path), title, text)
    choices = (ROOT / "docs/choose.md").read_text(encoding="utf-8")
    if missing := set(site.functions) - set(re.findall(r"`(QVN_\w+)`", choices)):
        raise ValueError(f"docs/choose.md leads to no {', '.join(sorted(missing))}")
    _, front = site.markdown(FRONT, tool)
    chart = site.line("![The chart, a mosaic converted back by each method](pictures/methods.png)", FRONT)
    more = ('<a href="functions.html">A page for every function</a>, with its layout, formula, edges and statuses; '
            '<a href="gallery.html">a gallery</a> with a picture by each of them.')
    (out / "pages" / "front.md").write_text(f"# Quorvane\n\n{chart}\n\n{more}\n\n{front}\n", encoding="utf-8")
    site.index_of_functions()
    site.gallery(shown)
    site.navigation()


if __name__ == "__main__":
    main()
