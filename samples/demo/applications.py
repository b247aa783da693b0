"""The applications of the demo home: a table, and the folder bundles made of it."""

import plistlib
from typing import NamedTuple, Optional

from . import icons


class Row(NamedTuple):
    name: str  # of the bundle's folder
    identifier: Optional[str]  # None where the bundle has none
    executable: str
    icon: Optional[tuple] = None  # mark and colours
    display_name: Optional[str] = None  # where it is another than the folder's
    creator: str = "????"
    icon_kind: str = "png"  # or icns


BUNDLES = [
    Row("Copperquill", "example.marlow.Copperquill", "copperquill",
        ("bars", "#5b8def", "#2b4ea2"), icon_kind="icns"),
    Row("Pebblemail", "example.fernhill.Pebblemail", "pebblemail",
        ("envelope", "#52b788", "#1f6f4d")),
    Row("Ledgerling", "example.fernhill.Ledgerling", "ledgerling",
        ("columns", "#e0a458", "#a65f1a"), icon_kind="icns"),
    Row("Skyplotter", "example.nordlicht.Skyplotter", "skyplotter",
        ("star", "#4c4f9a", "#1c1d44")),
    Row("Kartoteka", "example.kontora.Kartoteka", "kartoteka",
        ("cards", "#d1605e", "#8c2b30"), "Картотека", icon_kind="icns"),
    Row("Pinakis", "example.deltos.Pinakis", "pinakis",
        ("grid", "#45a6b5", "#1c6472"), "Πινακίς"),
    Row("Fudebako", "example.fudebako.Fudebako", "fudebako",
        ("brush", "#e58fb0", "#a8476e"), "筆箱", icon_kind="icns"),
    Row("Pinkasit", "example.duchan.Pinkasit", "pinkasit",
        ("ring", "#8d7bd0", "#4c3b8f"), "פנקסית"),
    Row("Old Typer", None, "oldtyper",
        ("bars", "#9a958c", "#55514a"), creator="Otyp", icon_kind="icns"),
    # Without shortcuts of its own, to be found in the chooser of the exclude list.
    Row("Tidewatch", "example.ostfjord.Tidewatch", "tidewatch",
        ("drop", "#4fa3d9", "#14527d")),
]

# Pictures that the desktop entries name.
ENTRY_ICONS = {
    "copperquill-classic": ("bars", "#b8c4d6", "#6a7a94"),
    "heronweb": ("drop", "#7aa5a1", "#2f5d5a"),
    "birdcall": ("bird", "#f2b84b", "#c0761a"),
}

_SCRIPT = """#!/bin/sh
# Stands in for an application: it says what it was asked to open, and ends.
echo "{name}: opened${{1:+ with $1}}"
"""


def _write(path, content, mode=0o644):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content if isinstance(content, bytes) else content.encode())
    path.chmod(mode)


def make_bundle(folder, row):
    """Writes one bundle below a folder."""
    contents = folder / f"{row.name}.app" / "Contents"
    info = {"CFBundleExecutable": row.executable, "CFBundleIdentifier": row.identifier,
            "CFBundleInfoDictionaryVersion": "6.0", "CFBundleDisplayName": row.display_name,
            "CFBundleName": row.name, "CFBundlePackageType": "APPL",
            "CFBundleShortVersionString": "1.4", "CFBundleSignature": row.creator,
            "CFBundleVersion": "140"}
    if row.icon:
        picture = icons.png(*row.icon)
        info["CFBundleIconFile"] = f"{row.executable}.{row.icon_kind}"
        _write(contents / "Resources" / info["CFBundleIconFile"],
               icons.icns(picture) if row.icon_kind == "icns" else picture)
    _write(contents / "Info.plist", plistlib.dumps(
        {key: value for key, value in info.items() if value is not None}))
    _write(contents / "PkgInfo", f"APPL{row.creator}")
    _write(contents / "Linux" / row.executable, _SCRIPT.format(name=row.name), 0o755)


def make_all(home):
    for row in BUNDLES:
        make_bundle(home / "Applications", row)
    for name, icon in ENTRY_ICONS.items():
        _write(home / ".local/share/icons" / f"{name}.png", icons.png(*icon))
