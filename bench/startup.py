#!/usr/bin/env python3
"""How long until the settings window stands filled, beside a comparable program of the desktop.

Both programs show about eighty shortcuts, on one X server and one session bus, in turn: pair by pair,
so that whatever slows the machine down for a while slows both. The figure is the median of the
pairs' ratios. A window counts as filled when its picture has come to rest; window_ready looks at it
from outside.
"""

import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile

TOP = pathlib.Path(__file__).resolve().parent.parent
OTHER = "lxqt-config-globalkeyshortcuts"
OTHER_DAEMON = "lxqt-globalkeysd"
WARM_UPS = 3


class Session:
    """A private X server, session bus and home, gone with the context."""

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="startup-"))
        self.processes = []
        self.environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder),
                            "XDG_RUNTIME_DIR": str(self.folder), "LC_ALL": "C.UTF-8",
                            "QT_QPA_PLATFORM": "xcb"}
        read, write = os.pipe()
        self.start(["Xvfb", "-displayfd", str(write), "-screen", "0", "1600x1200x24", "-nolisten",
                    "tcp", "-noreset"], pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as display:
            self.environment["DISPLAY"] = ":" + display.readline().strip()
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address"],
                         stdout=subprocess.PIPE, text=True)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
        return self

    def start(self, command, **options):
        options = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, **options}
        process = subprocess.Popen(command, env=self.environment, **options)
        self.processes.append(process)
        return process

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        shutil.rmtree(self.folder)

    def prepare_other(self):
        """Gives the other program as many shortcuts as the demo home has."""
        entries = ["[General]\nMultipleActionsBehaviour=first\n"]
        letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
        for number in range(80):
            modifiers = ["Control%2BAlt", "Control%2BShift", "Shift%2BAlt",
                         "Control%2BShift%2BAlt"][number // 26]
            entries.append(f"[{modifiers}%2B{letters[number % 26]}.{number + 1}]\n"
                           f"Comment=Open Layer {number + 1}\nEnabled=true\nExec=true\n")
        path = self.folder / ".config/lxqt/globalkeyshortcuts.conf"
        path.parent.mkdir(parents=True)
        path.write_text("\n".join(entries), encoding="utf-8")
        self.start([OTHER_DAEMON])

    def measure(self, ready, command):
        """The figures of one start, by name; times in seconds, rss in MiB."""
        result = subprocess.run([ready, "--", *command], env=self.environment, text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        if result.returncode != 0:
            sys.exit(f"startup: {command[0]}: {result.stderr.strip()}")
        words = result.stdout.split()
        return {name: float(value) for name, value in zip(words[::2], words[1::2])}


def median(runs, name):
    return statistics.median(run[name] for run in runs)


def report(title, runs):
    print(f"{title:32} mapped {median(runs, 'mapped') * 1000:6.0f} ms, filled "
          f"{median(runs, 'settled') * 1000:6.0f} ms, peak RSS {median(runs, 'rss'):6.1f} MiB")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, required=True, help="a release build")
    parser.add_argument("--pairs", type=int, default=15)
    arguments = parser.parse_args()

    build = arguments.build.resolve()
    ready = build / "bin/window_ready"
    other = shutil.which(OTHER)
    with Session() as session:
        home = session.folder / "home"
        subprocess.run([sys.executable, "-B", TOP / "samples/make_demo_home.py", home], check=True)
        ours = [str(build / "bin/tarnwell-settings"), "--home", str(home)]
        if other:
            session.prepare_other()
        # The first starts read both programs from the disk, and wait for the other one's daemon,
        # which takes seconds to register its keys.
        for _ in range(WARM_UPS):
            session.measure(ready, ours)
            if other:
                session.measure(ready, [other])
        own_runs, other_runs = [], []
        for pair in range(arguments.pairs):
            # Who goes first changes, so that neither always runs on the other's warm caches.
            turns = [(own_runs, ours)] + ([(other_runs, [other])] if other else [])
            for runs, command in turns if pair % 2 == 0 else reversed(turns):
                runs.append(session.measure(ready, command))

    report("tarnwell-settings", own_runs)
    if not other:
        print(f"{OTHER} is not installed: nothing to compare with")
        return
    report(OTHER, other_runs)
    ratios = [own["settled"] / reference["settled"]
              for own, reference in zip(own_runs, other_runs)]
    print(f"startup ratio {statistics.median(ratios):.2f} ({min(ratios):.2f} to "
          f"{max(ratios):.2f}, {len(ratios)} pairs), peak RSS {median(own_runs, 'rss'):.1f} MiB")


if __name__ == "__main__":
    main()
