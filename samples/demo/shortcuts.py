"""Reads shortcuts.txt: text in, the value of "MenuShortcuts" out."""

import re

MODIFIERS = {"⌘": 0x0100, "⇧": 0x0200, "⌥": 0x0800, "⌃": 0x1000}

# Virtual key codes by position on the US board, in the order of the codes.
_ROWS = [(0x00, "ASDFHGZXCV"), (0x0B, "BQWERYT123465=97-80]OU[IP"), (0x25, "LJ'K;\\,/NM."),
         (0x32, "`")]
_FUNCTION_KEYS = [0x7A, 0x78, 0x63, 0x76, 0x60, 0x61, 0x62, 0x64, 0x65, 0x6D, 0x67, 0x6F, 0x69,
                  0x6B, 0x71, 0x6A]


def _keys():
    """Key name to (virtual key code, character that a menu holds for it)."""
    keys = {character: (first + offset, ord(character))
            for first, characters in _ROWS for offset, character in enumerate(characters)}
    keys.update({f"F{number}": (code, 0xF703 + number)
                 for number, code in enumerate(_FUNCTION_KEYS, 1)})
    keys.update(Left=(0x7B, 28), Right=(0x7C, 29), Up=(0x7E, 30), Down=(0x7D, 31),
                Return=(0x24, 13), Tab=(0x30, 9), Space=(0x31, 32), Delete=(0x33, 8),
                Escape=(0x35, 27), Home=(0x73, 0xF729), End=(0x77, 0xF72B),
                PageUp=(0x74, 0xF72C), PageDown=(0x79, 0xF72D))
    return keys


KEYS = _keys()


def parse_shortcut(text):
    """(key code, menu character, modifiers) of a shortcut written as menus show it."""
    if text == "none":
        return -1, 0, 0
    modifiers = 0
    key = text
    while key[:1] in MODIFIERS and len(key) > 1:
        modifiers |= MODIFIERS[key[0]]
        key = key[1:]
    if key not in KEYS:
        raise ValueError(f"unknown key {key!r} in {text!r}")
    code, character = KEYS[key]
    return code, character, modifiers


def key_commands(shortcut, title, marks=()):
    """One key-command record; None for "missing"."""
    if shortcut == "missing":
        return None
    code, character, modifiers = parse_shortcut(shortcut)
    record = {"kc": code, "cK": character, "mod": modifiers, "t": title}
    if "no-kc" in marks:
        del record["kc"]
    if "no-mod" in marks:
        del record["mod"]
    if "extra" in marks:
        record["g"] = 0x17
    return record


def item_record(menus, title, original, new, marks=()):
    """One item record, below the menus from the menu bar on."""
    captured = next((mark[2:] for mark in marks if mark.startswith("t=")), title)
    record = {"MenuItemTitle": title,
              "OriginalKeyCommands": key_commands(original, captured, marks),
              "NewKeyCommands": key_commands(new, captured, marks),
              "MenuPath": [{"MenuItemTitle": level} for level in [*menus, title]]}
    if "no-title" in marks:
        del record["MenuItemTitle"]
    if "no-path" in marks:
        del record["MenuPath"]
    if "extra" in marks:
        record["Tag"] = 4711
        record["MenuPath"][0]["Index"] = 3
    return {key: value for key, value in record.items() if value is not None}


def parse(text):
    """The whole table. A line that is not understood is a ValueError that names it."""
    applications = {}
    groups = None
    menus = []
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        try:
            if match := re.fullmatch(r"\[(.+)\]", line):
                groups = applications.setdefault(match[1], [])
            elif not line.startswith(" "):
                menus = line.split(" > ")
                groups.append({"ParentTitle": menus[-1], "Keys": []})
            else:
                fields = [field.strip() for field in line.split("|")]
                title, original, new = fields[:3]
                marks = [mark.strip() for mark in fields[3].split(",")] if fields[3:] else []
                groups[-1]["Keys"].append(item_record(menus, title, original, new, marks))
                if "extra" in marks:
                    groups[-1]["MenuIdentifier"] = f"menu.{len(groups)}"
        except (ValueError, AttributeError, IndexError) as error:
            raise ValueError(f"line {number}: {line.strip()!r}: {error}") from error
    return applications
