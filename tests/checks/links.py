#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Follows every relative link of the documentation: the file, the heading or the picture must be there. Each page
of docs/ must be reached from the contents page, and each picture be shown.

    links.py ROOT
"""
import pathlib
import re
import sys
import urllib.parse

LINK = re.compile(r"\]\(([^()\s]+)\)")
INDENTED = re.compile(r"(?:^|\n\n)(?:    .*\n|\n)+")


def prose(text):
    """The text without what stands in it as code."""
    text = re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)
    return re.sub(r"`[^`\n]*`", "", INDENTED.sub("\n\n", text))


def slug(heading):
    """"Two commands" is "two-commands": letters, digits and "_" stay, blanks become "-", the rest goes."""
    kept = (c for c in heading.lower() if c.isalnum() or c in "_- ")
    return "".join(kept).strip().replace(" ", "-")


def headings(text):
    fenceless = re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)
    return {slug(found) for found in re.findall(r"^#+ (.+)$", fenceless, flags=re.MULTILINE)}


def main(root):
    root = root.resolve()
    pages = [root / "README.md", root / "CHANGELOG.md", root / "CONTRIBUTING.md", root / "bench/README.md",
             *sorted((root / "docs").glob("*.md"))]
    faults = [f"{page.relative_to(root)} is missing" for page in pages if not page.is_file()]
    pages = [page for page in pages if page.is_file()]
    targets = {}
    for page in pages:
        targets[page] = set()
        for link in LINK.findall(prose(page.read_text())):
            parts = urllib.parse.urlsplit(link)
            if parts.scheme:
                continue
            target = (page.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else page
            targets[page].add(target)
            if not target.exists():
                faults.append(f"{page.relative_to(root)}: {link} leads nowhere")
            elif parts.fragment and parts.fragment not in headings(target.read_text()):
                faults.append(f"{page.relative_to(root)}: {link} leads to no heading")
    listed = targets.get(root / "docs/guide.md", set())
    faults += [f"docs/guide.md does not lead to {page.name}" for page in pages
               if page.parent == root / "docs" and page.name != "guide.md" and page not in listed]
    shown = set().union(*targets.values())
    pictures = [file for kind in ("png", "svg") for file in (root / "docs").rglob("*." + kind)]
    faults += [f"{file.relative_to(root)} is shown nowhere" for file in pictures if file not in shown]
    count = sum(map(len, targets.values()))
    print(*faults, f"{count} links of {len(pages)} pages", sep="\n")
    return 1 if faults or count < 80 else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
