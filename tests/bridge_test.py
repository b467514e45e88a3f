#!/usr/bin/python3
"""What the documents for those who write the page say of the bridge: the requests that there are, all of them, once.
Usage: bridge_test.py SOURCES"""

import collections
import pathlib
import re
import sys


def found(pattern, text):
    """All that the pattern's group matches; a page that reads like none is not one without requests."""
    names = re.findall(pattern, text, re.MULTILINE)
    if not names:
        sys.exit(f"nothing matches {pattern}")
    return names


def part(text, begin, end):
    """What stands between two words."""
    return text.partition(begin)[2].partition(end)[0]


def main():
    root = pathlib.Path(sys.argv[1])
    table = part((root / "web/request_table.cpp").read_text(encoding="utf-8"), "kTable[] = {", "\n};")
    page = part((root / "docs/bridge.md").read_text(encoding="utf-8"), "\n|---|---|---|\n", "\n\n")
    types = (root / "docs/bridge.d.ts").read_text(encoding="utf-8")
    row = r"^\| `([a-z-]+)` \|"
    member = r"^  '([a-z-]+)':"
    silent, answered = (part(types, f"interface {name} {{", "\n}") for name in ("OrvalleOneWay", "OrvalleAnswered"))
    handled = found(r'^ {4}\{"([a-z-]+)",', table)
    wrong = []

    def compare(name, names, expected, where):
        for request, times in collections.Counter(names).items():
            if times > 1:
                wrong.append(f"{name} has {request} {times} times")
        for request in sorted(set(names) ^ set(expected)):
            wrong.append(f"{request} is in {name if request in names else where} alone")

    compare("docs/bridge.md", found(row, page), handled, "web/request_table.cpp")
    compare("docs/bridge.d.ts", found(member, silent) + found(member, answered), handled, "web/request_table.cpp")
    compare("OrvalleOneWay", found(member, silent), found(row + r".*\| none\.", page),
            "docs/bridge.md without an answer")
    if wrong:
        sys.exit("\n".join(wrong))
    print(f"{len(handled)} requests, all of them described.")


if __name__ == "__main__":
    main()
