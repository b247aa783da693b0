#!/usr/bin/env python3
"""Assembles the demo home: the plug-in bundle, applications, compositions and a preference domain.

The folder is made anew; one that is no demo home is left alone. Readable text below samples/home is
copied as it stands (@HOME@ becomes the home's path), the rest is made from the tables in
samples/demo.
"""

import argparse
import pathlib
import shutil
import sys
import time

from demo import applications, compositions, domain, shortcuts

HERE = pathlib.Path(__file__).resolve().parent
MARKER = ".tarnwell-demo"


def copy_readable(home):
    source = HERE / "home"
    for path in sorted(source.rglob("*")):
        if path.is_file():
            target = home / path.relative_to(source)
            target.parent.mkdir(parents=True, exist_ok=True)
            content = path.read_bytes()
            if path.suffix == ".desktop":
                content = content.replace(b"@HOME@", str(home).encode())
            target.write_bytes(content)


def copy_updater(home, bundle):
    target = home / "Library/Hullforges/Tarnwell.zok/Contents/Resources" / bundle.name
    shutil.copytree(bundle, target)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("out", type=pathlib.Path, help="the folder to make")
    parser.add_argument("--now", type=int, default=int(time.time()),
                        help="the time that the stored dates lie before, in seconds since 1970")
    parser.add_argument("--updater", type=pathlib.Path,
                        help="the bundle of the stand-in updater; without it, no check can run")
    arguments = parser.parse_args()

    home = arguments.out.resolve()
    if home.exists() and any(home.iterdir()) and not (home / MARKER).exists():
        sys.exit(f"make_demo_home: {home} is not empty and no demo home; it is left alone")
    shutil.rmtree(home, ignore_errors=True)
    home.mkdir(parents=True)
    (home / MARKER).touch()

    copy_readable(home)
    if arguments.updater:
        copy_updater(home, arguments.updater.resolve())
    applications.make_all(home)
    compositions.copy_all(HERE / "compositions", home)
    try:
        table = shortcuts.parse((HERE / "demo/shortcuts.txt").read_text(encoding="utf-8"))
    except ValueError as error:
        sys.exit(f"make_demo_home: shortcuts.txt: {error}")
    domain.write(home, domain.values(str(home), table, arguments.now))


if __name__ == "__main__":
    main()
