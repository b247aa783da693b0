"""The preference domain of the demo home, "com.varnit.tarnwell"."""

import datetime
import pathlib
import plistlib

from . import compositions

DOMAIN = "com.varnit.tarnwell"
DAY = 86400

# Bytes as another system would have stored them: nobody here can resolve them.
FOREIGN_ALIAS = bytes.fromhex("000000000096000300010000c2a1") + bytes(136)


def system_version(path="/etc/os-release"):
    """The distribution's version as six binary-coded decimal digits."""
    numbers = [0, 0, 0]
    try:
        for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
            if line.startswith("VERSION_ID="):
                parts = line.partition("=")[2].strip("\"'").split(".")
                numbers = [int(part) if part.isdecimal() else 0 for part in (*parts, "", "")][:3]
    except OSError:
        pass
    return int("".join(f"{min(number, 99):02d}" for number in numbers), 16)


def exclude_list(home):
    applications = f"{home}/Applications"
    return [
        {"ID": "example.ostfjord.Tidewatch", "DisplayName": "Tidewatch",
         "Path": f"{applications}/Tidewatch.app", "AliasRecord": FOREIGN_ALIAS},
        {"ID": "example.heron.Birdcall",
         "Path": f"{home}/.local/share/applications/example.heron.Birdcall.desktop"},
        {"ID": "example.lostharbour.Driftwood", "DisplayName": "Driftwood",
         "Comment": "Not on this machine any more"},
        {"ID": "example.varda.Glasshouse", "DisplayName": "Glasshouse", "Hardcoded": True,
         "Path": "/Applications/Glasshouse.app",
         "Comment": "Passes every key on to the machine that it shows"},
    ]


def values(home, shortcuts, now):
    """Every key of the domain. Times are seconds since 1970. The predefined exclude list was loaded
    a short time ago; the last check for updates is long enough ago for the demo to show one."""
    return {
        "Disabled": False,
        "MenuAcceleratorEnabled": True,
        "MenuAccKeyCode": 0x2E,
        "MenuAccMods": 6,
        "MenuShortcuts": shortcuts,
        "CustomSettings": {
            "example.marlow.Copperquill": {
                "_ApplicationName": "Copperquill", "_AliasRecord": FOREIGN_ALIAS,
                "MenuAcceleratorEnabled": False, "FlashMenuTitle": True},
            "example.nordlicht.Skyplotter": {
                "_ApplicationName": "Skyplotter", "EffectScale": 0.75},
            "com.unknown.by-name.Sandglass": {"FlashMenuTitle": False},
        },
        "ExcludeList": exclude_list(home),
        "HidePredefinedExcludeListItems": False,
        "ExcludeListNoInternetSync": False,
        "ExcludeListLastInternetCheck": now - 30 * DAY,
        "Jane, Stop This Crazy Thing": False,
        "IncludeBundledQTZs": True,
        "SEQTZStatusList": compositions.status_list(home),
        "SUCheckForUpdates": True,
        "SUCheckInterval": 604800.0,
        "SULastCheckDate": datetime.datetime.utcfromtimestamp(now - 8 * DAY),
        "SULastCheckStatus": "No new version is available.",
        "SULastRunSystemVersion": system_version(),
        # What only the plug-in knows, and must find again.
        "PlugInState": {"Hosts": ["example.marlow.Copperquill", "example.heron.heronweb"],
                        "LastLaunch": datetime.datetime.utcfromtimestamp(now - 3600),
                        "MenuBarHeight": 22.0},
    }


def write(home, content):
    path = pathlib.Path(home) / "Library/Preferences" / f"{DOMAIN}.plist"
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(plistlib.dumps(content, fmt=plistlib.FMT_BINARY))
    path.chmod(0o600)
    return path
