#!/usr/bin/env python3
"""Checks the links of finished HTML pages: links.py FOLDER

Every local address leads to a file, and to a place in it where it names one. Pictures count as links.
"""

import html.parser
import pathlib
import sys
import urllib.parse


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.places, self.links = set(), []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name == "id" or (tag == "a" and name == "name"):
                self.places.add(value)
            elif name in ("href", "src", "data") and value:
                self.links.append(value)


def main():
    folder = pathlib.Path(sys.argv[1]).resolve()
    pages = {path: Page(path) for path in sorted(folder.rglob("*.html"))}
    broken = []
    for path, page in pages.items():
        for link in page.links:
            parts = urllib.parse.urlsplit(link)
            if parts.scheme or parts.netloc:
                continue
            target = (path.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else path
            place = urllib.parse.unquote(parts.fragment)
            if not target.exists():
                broken.append(f"{path.name}: {link}: no such file")
            elif place and target in pages and place not in pages[target].places:
                broken.append(f"{path.name}: {link}: no such place")
    for line in broken:
        print(line)
    print(f"{len(pages)} pages, {sum(len(page.links) for page in pages.values())} links, {len(broken)} broken")
    return 1 if broken or not pages else 0


if __name__ == "__main__":
    sys.exit(main())
