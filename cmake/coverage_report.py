#!/usr/bin/env python3
"""Sums up what gcov counted: executed lines by folder of the sources."""

import collections
import json
import pathlib
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
NOT_OURS = ("tests", "build", "bench", "fuzz")


def executed_lines(build):
    """Source file to {line: whether it ran}, over every object that was built from it."""
    counters = [str(path) for path in build.rglob("*.gcda")]
    files = collections.defaultdict(lambda: collections.defaultdict(bool))
    for first in range(0, len(counters), 50):
        output = subprocess.run(["gcov", "--json-format", "--stdout", *counters[first:first + 50]],
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True,
                                cwd=build).stdout
        for document in output.decode().splitlines():
            for file in json.loads(document)["files"] if document else ():
                for line in file["lines"]:
                    files[file["file"]][line["line_number"]] |= line["count"] > 0
    return files


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    folders = collections.defaultdict(lambda: [0, 0])
    for name, lines in executed_lines(build).items():
        path = pathlib.Path(name)
        if not path.is_relative_to(TOP) or path.relative_to(TOP).parts[0] in NOT_OURS:
            continue
        counts = folders[str(path.relative_to(TOP).parent)]
        counts[0] += sum(lines.values())
        counts[1] += len(lines)
    for folder, (executed, known) in sorted(folders.items()):
        print(f"{folder:32} {executed:6} of {known:6} lines, {100 * executed / known:5.1f} %")
    executed, known = (sum(counts[i] for counts in folders.values()) for i in (0, 1))
    if known:
        print(f"{'all':32} {executed:6} of {known:6} lines, {100 * executed / known:5.1f} %")


if __name__ == "__main__":
    main()
