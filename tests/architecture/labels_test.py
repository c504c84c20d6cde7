#!/usr/bin/python3
"""Every CTest test of a build folder, also of the preset `fast`, has exactly one of the labels unit, screen
and system.

    labels_test.py BUILD_FOLDER
"""

import collections
import json
import subprocess
import sys

LABELS = {"unit", "screen", "system"}


def main(build):
    listing = subprocess.run(["ctest", "-C", "fast", "--show-only=json-v1"], cwd=build, check=True,
                             stdout=subprocess.PIPE).stdout
    seen = collections.Counter()
    wrong = []
    for test in json.loads(listing)["tests"]:
        found = [label for each in test.get("properties", []) if each["name"] == "LABELS"
                 for label in each["value"] if label in LABELS]
        if len(found) != 1:
            wrong.append(f"{test['name']} has {len(found)} of the labels {', '.join(sorted(LABELS))}")
        seen.update(found)
    print(*wrong, *(f"{seen[label]} tests with the label {label}" for label in sorted(LABELS)), sep="\n")
    return 1 if wrong or not (seen["unit"] and seen["system"]) else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
