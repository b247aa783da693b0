#!/usr/bin/env python3
"""Plays the plug-in: changes a shortcut in the domain and tells the pane to look.

  plugin_sim.py --home build/demo-home set example.marlow.Copperquill "File > Print…" "⌥⌘P"
  plugin_sim.py --home build/demo-home clear example.marlow.Copperquill "File > Print…"
  plugin_sim.py refresh

Shortcuts are written as in samples/demo/shortcuts.txt. The domain is changed as every process has
to: under its lock, from what is stored at that moment, by a rename.
"""

import argparse
import contextlib
import fcntl
import os
import pathlib
import plistlib
import subprocess
import sys

from demo import domain, shortcuts


@contextlib.contextmanager
def locked(path):
    """Holds the right to replace a file."""
    with open(path.with_name(f".{path.name}.lock"), "a", opener=lambda name, flags: os.open(
            name, flags | os.O_NOFOLLOW, 0o600)) as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def replace(path, content):
    temporary = path.with_name(f".{path.name}.tmp-{os.getpid()}")
    with open(temporary, "xb", opener=lambda name, flags: os.open(name, flags, 0o600)) as file:
        file.write(plistlib.dumps(content, fmt=plistlib.FMT_BINARY))
        file.flush()
        os.fsync(file.fileno())
    os.replace(temporary, path)


def store(content, application, menus, title, original, new):
    """Puts one record into the domain's values; an item known already keeps its original."""
    groups = content.setdefault("MenuShortcuts", {}).setdefault(application, [])
    for group in groups:
        for item in group.get("Keys", []):
            if item.get("MenuItemTitle") == title and group.get("ParentTitle") == menus[-1]:
                item["NewKeyCommands"] = shortcuts.key_commands(new, title)
                return
    group = next((group for group in groups if group.get("ParentTitle") == menus[-1]), None)
    if group is None:
        group = {"ParentTitle": menus[-1], "Keys": []}
        groups.append(group)
    group.setdefault("Keys", []).append(shortcuts.item_record(menus, title, original, new))


def change(home, application, item, original, new):
    *menus, title = item.split(" > ")
    if not menus:
        sys.exit("plugin_sim: name the item with its menus, such as \"File > Print…\"")
    path = home / "Library/Preferences" / f"{domain.DOMAIN}.plist"
    path.parent.mkdir(parents=True, exist_ok=True)
    with locked(path):
        content = plistlib.loads(path.read_bytes()) if path.exists() else {}
        store(content, application, menus, title, original, new)
        replace(path, content)


def post_refresh():
    subprocess.run(
        ["gdbus", "emit", "--session", "--object-path", "/com/varnit/DistributedNotifications",
         "--signal", "com.varnit.DistributedNotifications.Posted",
         f"'{domain.DOMAIN}.refresh'", "''", "''"], check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--home", type=pathlib.Path, default=pathlib.Path.home())
    parser.add_argument("--quiet", action="store_true", help="do not post the refresh")
    actions = parser.add_subparsers(dest="action", required=True)
    for name in ("set", "clear"):
        action = actions.add_parser(name)
        action.add_argument("application", help="its identifier")
        action.add_argument("item", help="the item with its menus: \"File > Print…\"")
        if name == "set":
            action.add_argument("shortcut")
        action.add_argument("--original", default="none", help="of an item that is not stored yet")
    actions.add_parser("refresh")
    arguments = parser.parse_args()

    try:
        if arguments.action != "refresh":
            change(arguments.home, arguments.application, arguments.item, arguments.original,
                   arguments.shortcut if arguments.action == "set" else "none")
        if not arguments.quiet:
            post_refresh()
    except subprocess.CalledProcessError:
        sys.exit("plugin_sim: the refresh could not be posted; is there a session bus?")
    except (ValueError, OSError) as error:
        sys.exit(f"plugin_sim: {error}")


if __name__ == "__main__":
    main()
