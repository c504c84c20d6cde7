#!/usr/bin/env python3
"""Anonymises a copy of a real tree and checks every byte of the result, independently of the program.

    check_real_tree.py MORVEX_CLI SOURCE_TREE WORK_FOLDER

Copies SOURCE_TREE (without broken links, other links followed) to WORK_FOLDER/source, takes the 50
commonest words of its text files as names, and runs MORVEX_CLI on it. Then computes the right target with
a regular expression, whose alternatives match like a list without wildcards: the first row that fits at the
smallest offset. Prints the figures; the exit status is 0 if everything is right.
"""

import collections
import os
import re
import shutil
import subprocess
import sys
import time

SELECTED = [".txt", ".htm", ".xml", ".css"]


def tree_of(root):
    """Returns a dictionary: relative path -> bytes of a file, or None for a folder."""
    found = {}
    for folder, folders, files in os.walk(root):
        for name in folders:
            found[os.path.relpath(os.path.join(folder, name), root)] = None
        for name in files:
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                found[os.path.relpath(path, root)] = file.read()
    return found


def is_selected(path):
    name = os.path.basename(path)
    if os.path.dirname(path):
        return name[-4:] in SELECTED
    return name[name.find("."):] in SELECTED if "." in name else False


def is_passed_over(path):
    name = os.path.basename(path)
    extension = name.split(".", 1)[1] if "." in name else ""
    return name[: len(name) - len(extension) - 1] == "Morvex" or name.endswith("cle")


def commonest_words(tree):
    counts = collections.Counter()
    for path, content in tree.items():
        if content is not None and is_selected(path):
            counts.update(re.findall(rb"[A-Za-z]{4,}", content))
    return [word for word, _ in counts.most_common(50)]


def write_case(work, rows):
    os.makedirs(work + "/program")
    os.makedirs(work + "/target")
    lines = [left + b"|" + right for left, right in rows] + [b"|||"]
    with open(work + "/list.txt", "wb") as file:
        file.write(b"".join(line + b"\r\n" for line in lines))
    settings = [work + "/source", work + "/target", work + "/list.txt", "log=1", "sep=|", "jok=*"]
    settings += ["1" + extension for extension in SELECTED]
    with open(work + "/settings.dat", "wb") as file:
        file.write(b"".join(os.fsencode(line) + b"\r\n" for line in settings))


def expected_target(source, rows):
    """Returns the right tree of the target, and the numbers of processed files, copied files and hits."""
    replacements = dict(rows)
    pattern = re.compile(b"|".join(re.escape(left) for left, _ in rows))
    target, done, copied, hits = {}, 0, 0, 0
    for path, content in source.items():
        if content is None:
            target[path] = None
        elif not is_selected(path):
            target[path] = content
            copied += 1
        elif is_passed_over(path):
            done += 1
        else:
            target[path], count = pattern.subn(lambda match: replacements[match[0]], content)
            done += 1
            hits += count
    return target, done, copied, hits


def main(program, tree, work):
    work = os.path.abspath(work)
    os.makedirs(work)
    # A broken link makes cp complain and go on.
    subprocess.run(["cp", "-rL", tree, work + "/source"], stderr=subprocess.DEVNULL, check=False)
    source = tree_of(work + "/source")
    rows = [(word, b"NAME-%d" % number) for number, word in enumerate(commonest_words(source))]
    write_case(work, rows)
    shutil.copy(program, work + "/program/morvex-cli")
    start = time.monotonic()
    run = subprocess.run([work + "/program/morvex-cli", "-if", work + "/settings.dat"],
                         stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=False)
    seconds = time.monotonic() - start
    target, done, copied, hits = expected_target(source, rows)
    actual = tree_of(work + "/target")

    wrong = [path for path in sorted(set(target) | set(actual))
             if path not in target or path not in actual or target[path] != actual[path]]
    output = run.stdout.decode().splitlines()
    wanted = ["Scanned: %d" % done, "Skipped: %d" % copied, "Hits: %d" % hits, "Done !"]
    labels_right = [line for line in output if " min " not in line] == wanted
    source_kept = tree_of(work + "/source") == source
    size = sum(len(content) for content in source.values() if content is not None)

    print("files %d, folders %d, bytes %d, rows %d" % (
        sum(content is not None for content in source.values()),
        sum(content is None for content in source.values()), size, len(rows)))
    print("processed %d, copied unchanged %d, hits %d" % (done, copied, hits))
    print("seconds %.1f, exit status %d" % (seconds, run.returncode))
    print("wrong in the target: %d %s" % (len(wrong), wrong[:5]))
    print("labels right: %s, source unchanged: %s" % (labels_right, source_kept))
    return 0 if run.returncode == 0 and not wrong and labels_right and source_kept else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
