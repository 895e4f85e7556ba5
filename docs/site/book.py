"""The written pages: their links turned to those of the finished ones, pictures beside the blocks that make some."""

import html
import pathlib
import re

import header
import pictures

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Pages in the order of the navigation, and how it calls them.
WRITTEN = {
    "docs/choose.md": "Which function do I need?",
    "docs/symptoms.md": "What is wrong with my picture?",
    "docs/patterns.md": "Pattern codes",
    "docs/recipes.md": "Recipes for camera buffers",
    "docs/tool.md": "The tool",
    "bindings/README.md": "Bindings",
    "bindings/python/README.md": "Python",
    "bindings/gstreamer/README.md": "GStreamer",
    "examples/archive/README.md": "Archives",
    "examples/aravis/README.md": "A camera without hardware",
    "packaging/README.md": "Packages",
    "docs/versions.md": "Versions",
    "docs/performance.md": "Performance",
    "docs/platforms.md": "Platforms",
    "docs/testing.md": "Testing",
    "CONTRIBUTING.md": "Contributing",
    "SECURITY.md": "Security",
    "CHANGELOG.md": "Changelog",
}
FRONT = "docs/README.md"


def slug(words):
    return re.sub(r"[^a-z0-9]+", "-", re.sub(r"[`*]", "", words).lower()).strip("-")


def label_of(path):
    stem = path.removeprefix("docs/").removesuffix(".md").removesuffix("/README")
    return "page-" + slug(stem)


def figures(out, names):
    """Pictures in a row; one that is much wider than a frame has a row of its own."""
    cells = []
    for name, words in names:
        head = (out / "pictures" / name).read_bytes()[16:20]  # the width, in a PNG's first block
        kind = "cell wide" if int.from_bytes(head, "big") > 600 else "cell"
        caption = f"<br/>{html.escape(words)}" if words else ""
        image = f'<img src="pictures/{name}" alt="{html.escape(words or name)}"/>'
        cells.append(f'<span class="{kind}">{image}{caption}</span>')
    return '<div class="gallery">' + "\n".join(cells) + "</div>"


class Book:
    def __init__(self, out):
        self.out = out
        self.sections = header.read(ROOT / "include/quorvane/quorvane.h")
        self.functions = {f.name: f for section in self.sections for f in section.functions}
        self.written = {path: title for path, title in WRITTEN.items() if (ROOT / path).exists()}
        (out / "pages").mkdir(parents=True, exist_ok=True)
        (out / "pictures").mkdir(parents=True, exist_ok=True)

    # ---- links ----

    def function_link(self, name):
        return f'<a href="{self.functions[name].label}.html"><code>{name}</code></a>'

    def words(self, text, own=""):
        """Names of functions in a description become links, other names code."""
        def replace(match):
            name = match[0].strip("`")
            if name in self.functions and name != own:
                return self.function_link(name)
            return f"<code>{html.escape(name)}</code>"
        parts = re.split(r"(`[^`]*`|\bQVN_\w+\b)", text)
        for i, part in enumerate(parts):
            parts[i] = re.sub(r".+", replace, part, flags=re.S) if i % 2 else header.escaped(part)
        return "".join(parts)

    def address(self, target, source):
        """Where a link of a file leads in the pages; None where it leads to nothing that is a page."""
        if re.match(r"\w+://|mailto:", target):
            return target
        path, _, place = target.partition("#")
        if path:
            path = str((ROOT / source).parent.joinpath(path).resolve().relative_to(ROOT))
        else:
            path = source
        if path == FRONT or path == "README.md":
            return "index.html"
        if path.endswith("quorvane.h"):
            return "quorvane_8h.html"
        if path in self.written:
            label = label_of(path)
            return f"{label}.html#{label}-{slug(place)}" if place else f"{label}.html"
        return None

    def line(self, line, source):
        def link(match):
            mark, words, target = match.groups()
            if mark:
                name = self.kept_picture(target, source)
                return f'<img src="pictures/{name}" alt="{html.escape(words)}"/>'
            address = self.address(target, source)
            return f'<a href="{html.escape(address)}">{self.spans(words)}</a>' if address else self.spans(words)
        parts = re.split(r"(!?\[(?:[^\]`]|`[^`]*`)*\]\([^)\s]+\))", line)
        for i, part in enumerate(parts):
            if i % 2:
                parts[i] = re.sub(r"(!?)\[(.*)\]\(([^)]+)\)", link, part)
            else:
                parts[i] = self.spans(part)
        return "".join(parts)

    def spans(self, text):
        parts = re.split(r"(`[^`]*`)", text)
        for i, part in enumerate(parts):
            if i % 2 and part.strip("`") in self.functions:
                parts[i] = self.function_link(part.strip("`"))
            elif i % 2:
                parts[i] = part
            else:
                parts[i] = re.sub(r"([@\\])", r"\\\1", part)
        return "".join(parts)

    def kept_picture(self, target, source):
        path = (ROOT / source).parent.joinpath(target).resolve()
        (self.out / "pictures" / path.name).write_bytes(path.read_bytes())
        return path.name

    # ---- pages ----

    def page(self, label, title, text):
        (self.out / "pages" / f"{label}.md").write_text(f"# {title} {{#{label}}}\n\n{text.strip()}\n", encoding="utf-8")

    def markdown(self, path, tool):
        """A written page with its links turned to the pages', and pictures beside blocks that make some."""
        label = label_of(path)
        out, block, fenced, number = [], [], False, 0
        lines = (ROOT / path).read_text(encoding="utf-8").splitlines()
        title = lines[0].removeprefix("# ")
        for line in lines[1:]:
            if line.startswith("```"):
                fenced = not fenced
                out.append(re.sub(r"^```(\w+)", r"```{.\1}", line))
                if fenced:
                    block = []
                elif path.endswith("symptoms.md"):
                    number += 1
                    made = pictures.of_block(tool, "\n".join(block), f"symptom-{number}", self.out / "pictures")
                    out += ["", figures(self.out, made), ""]
            elif fenced:
                block.append(line)
                out.append(line)
            elif heading := re.match(r"(#+) (.*)", line):
                out.append(f"{heading[1]} {self.spans(heading[2])} {{#{label}-{slug(heading[2])}}}")
            elif not line.startswith("<!--"):
                out.append(self.line(line, path))
        return title, "\n".join(out)
