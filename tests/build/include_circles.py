#!/usr/bin/env python3
"""Finds circles among the modules, a header and its source counting as one.

Prints each with the includes that make it, and ends with 1 where there is any.
"""

import pathlib
import re
import sys

INCLUDE = re.compile(r'^#include "([^"]+)\.h"', re.MULTILINE)
FOLDERS = ("support", "mp4", "media", "conversion", "app", "platform", "cli", "ui")


def graph(root):
    modules = {}
    for folder in FOLDERS:
        for file in (root / folder).rglob("*"):
            if file.suffix in (".h", ".cpp"):
                module = str(file.relative_to(root).with_suffix(""))
                wanted = modules.setdefault(module, set())
                wanted.update(INCLUDE.findall(file.read_text(encoding="utf-8")))
                wanted.discard(module)
    return modules


def reachable(modules, start):
    found, waiting = set(), [start]
    while waiting:
        for other in modules.get(waiting.pop(), ()):
            if other not in found:
                found.add(other)
                waiting.append(other)
    return found


def circles(modules):
    reach = {module: reachable(modules, module) for module in modules}
    return {frozenset(other for other in reach[module] if module in reach.get(other, ()))
            for module in modules if module in reach[module]}


def main():
    modules = graph(pathlib.Path(sys.argv[1]))
    if not modules:
        sys.exit("there are no modules here")
    found = circles(modules)
    for circle in found:
        print("circle:")
        for module in sorted(circle):
            print(f"    {module} -> {', '.join(sorted(modules[module] & circle))}")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
