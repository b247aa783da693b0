"""Where the compositions of the demo lie: with the plug-in, among the user's own, and one in a folder
of screen savers, where it is off until it is switched on."""

import pathlib
import shutil

WITH_THE_PLUGIN = {"Spotlight", "Typewriter", "Departures"}
SCREEN_SAVERS = {"Aurora"}
SWITCHED_OFF = {"Drum"}


def folder_of(home, name):
    if name in WITH_THE_PLUGIN:
        return (home / "Library/Hullforges/Tarnwell.zok/Contents/Resources"
                / "SillyEffect.bundle/Contents/Resources")
    if name in SCREEN_SAVERS:
        return home / "Library/Screen Savers"
    return home / "Library/Application Support/Varnit/Tarnwell"


def copy_all(source, home):
    for composition in sorted(source.glob("*.qtz")):
        folder = folder_of(home, composition.stem)
        folder.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(composition, folder / composition.name)


def status_list(home):
    """The user's choices; what is not listed is on, screen savers aside."""
    home = pathlib.Path(home)
    return {str(folder_of(home, name) / f"{name}.qtz"): False for name in sorted(SWITCHED_OFF)}
