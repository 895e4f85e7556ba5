"""Reads include/quorvane/quorvane.h: its sections, and the functions in each with their descriptions."""

import dataclasses
import html
import re


@dataclasses.dataclass
class Argument:
    declaration: str  # `const uint8_t* src`
    name: str
    text: str = ""


@dataclasses.dataclass
class Function:
    name: str
    section: "Section"
    declaration: str
    body: str = ""  # paragraphs, indented blocks are formulas
    returns: str = ""
    arguments: list = dataclasses.field(default_factory=list)

    @property
    def label(self):
        return "fn-" + self.name.removeprefix("QVN_").replace("_", "-")

    @property
    def summary(self):
        first = " ".join(self.body.split("\n\n")[0].split())
        return re.split(r"(?<=[.:;])\s", first, maxsplit=1)[0].rstrip(":;.") + "."


@dataclasses.dataclass
class Section:
    title: str
    text: str
    functions: list = dataclasses.field(default_factory=list)


def uncommented(comment):
    """The text of a comment without its stars."""
    lines = [re.sub(r"^\s?\*? ?", "", line) for line in comment.strip().splitlines()]
    return "\n".join(line.rstrip() for line in lines).strip("\n")


def split_tags(text):
    """Body, {parameter: text}, what it returns; a tag reaches to the next one."""
    parts = re.split(r"(?:^|\s)@(param|return)\s+", text)
    parameters, returns = {}, ""
    for tag, words in zip(parts[1::2], parts[2::2]):
        words = " ".join(words.split())
        if tag == "param":
            name, _, meaning = words.partition(" ")
            parameters[name] = meaning.strip()
        else:
            returns = words
    return parts[0].strip(), parameters, returns


def arguments_of(declaration):
    inside = declaration[declaration.index("(") + 1:declaration.rindex(")")]
    return [Argument(part.strip(), re.search(r"\w+$", part)[0]) for part in " ".join(inside.split()).split(",")]


TOKEN = re.compile(
    r"/\* -{20,}\n(?P<section>.*?)\n \* -+ \*/"
    r"|/\*\*(?P<comment>.*?)\*/\s*"
    r"(?P<declaration>QVN_API uint32_t (?P<name>QVN_\w+)\([^;]*\);)?",
    re.S)


def read(path):
    """The sections in order."""
    sections = []
    for match in TOKEN.finditer(path.read_text(encoding="utf-8")):
        if match["section"] is not None:
            title, _, text = uncommented(match["section"]).partition("\n")
            sections.append(Section(title.strip(), text.strip("\n")))
        elif match["declaration"]:
            body, parameters, returns = split_tags(uncommented(match["comment"]))
            _, shared, _ = split_tags(sections[-1].text)
            declaration = re.sub(r"\n\s+", " ", match["declaration"].removeprefix("QVN_API "))
            function = Function(match["name"], sections[-1], declaration, body, returns, arguments_of(declaration))
            for argument in function.arguments:
                argument.text = parameters.pop(argument.name, shared.get(argument.name, ""))
            if parameters:
                raise ValueError(f"{function.name} has no argument {', '.join(parameters)}")
            sections[-1].functions.append(function)
    return sections


def escaped(text):
    """Words of a comment inside Markdown; `code` stays."""
    parts = re.split(r"(`[^`]*`)", text)
    for i in range(0, len(parts), 2):
        words = html.escape(parts[i], quote=False)
        parts[i] = re.sub(r"([*_@\\#])", r"\\\1", words)
    return "".join(parts)
