#!/usr/bin/env python3
"""Makes a home with a large preference domain, in the shape of the demo's, for benchmarks.

APPS applications with ITEMS shortcut records each, the same at every run. With --bundles each
application also gets a bundle in Applications, so that it can be found and named.
"""

import argparse
import pathlib
import random

from demo import applications, domain, shortcuts

GROUP_SIZE = 12
MENUS = ["File", "Edit", "View", "Insert", "Format", "Tools", "Window", "Ansicht", "Файл", "編集"]
VERBS = ["Open", "Close", "Arrange", "Rotate", "Export", "Align", "Hide", "Show", "Merge", "Split"]
THINGS = ["Page", "Layer", "Column", "Palette", "Guide", "Selection", "Outline", "Chapter", "Маска"]
PLAIN_KEYS = [key for key in shortcuts.KEYS if len(key) == 1]
OTHER_KEYS = [key for key in shortcuts.KEYS if len(key) > 1]


def random_shortcut(random_source):
    modifiers = "".join(glyph for glyph in "⇧⌃⌥" if random_source.random() < 0.4)
    return modifiers + "⌘" + random_source.choice(
        OTHER_KEYS if random_source.random() < 0.2 else PLAIN_KEYS)


def groups(items, random_source):
    result = []
    for first in range(0, items, GROUP_SIZE):
        menus = [random_source.choice(MENUS)]
        if random_source.random() < 0.5:
            menus.append(random_source.choice(THINGS))
        keys = []
        for number in range(first, min(first + GROUP_SIZE, items)):
            title = f"{random_source.choice(VERBS)} {random_source.choice(THINGS)} {number}"
            original = "none" if random_source.random() < 0.4 else random_shortcut(random_source)
            keys.append(shortcuts.item_record(menus, title, original,
                                              random_shortcut(random_source)))
        result.append({"ParentTitle": menus[-1], "Keys": keys})
    return result


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("apps", type=int)
    parser.add_argument("items", type=int, help="records of each application")
    parser.add_argument("out", type=pathlib.Path, help="the home to make or add to")
    parser.add_argument("--bundles", action="store_true", help="make the applications, too")
    arguments = parser.parse_args()

    home = arguments.out.resolve()
    random_source = random.Random(1)
    table = {}
    for number in range(arguments.apps):
        identifier = f"example.bulk.Application{number:05}"
        table[identifier] = groups(arguments.items, random_source)
        if arguments.bundles:
            applications.make_bundle(home / "Applications", applications.Row(
                f"Application {number:05}", identifier, "application"))
    domain.write(home, domain.values(str(home), table, now=1_700_000_000))


if __name__ == "__main__":
    main()
