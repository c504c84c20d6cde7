#!/usr/bin/env python3
"""Times check, filter, grep and cat over one large text, in turns, and prints the medians.

    bench/commands.py PROGRAM FOLDER [ROUNDS [MIB]]

The text is made of sentences from a fixed seed. Like a finished copy, it contains very few of the
list's names. The list has 1,000 rows of first and last names, a third of them with letters beyond
ASCII. Every command reads the file from the page cache.
"""
import os
import random
import statistics
import subprocess
import sys
import time

ROWS = 1000
VOWELS = ["a", "e", "i", "o", "u", "ei", "ou", "ü", "ö", "é"]
CONSONANTS = list("bcdfghjklmnprstvwz") + ["st", "br", "sch", "ll", "nn"]


def word(rng, syllables, ascii_only=False):
    vowels = VOWELS[:7] if ascii_only else VOWELS
    return "".join(rng.choice(CONSONANTS) + rng.choice(vowels) for _ in range(syllables))


def make_inputs(folder, mib):
    rng = random.Random(20240501)
    names = []
    for row in range(ROWS):
        plain = row % 3 != 0
        first, last = word(rng, 2, plain).title(), word(rng, rng.choice([2, 3]), plain).title()
        names.append(f"{first} {last}")
    words = [word(rng, rng.choice([1, 2, 2, 3]), rng.random() < 0.9) for _ in range(5000)]
    block = []
    size = 0
    while size < 16 << 20:
        sentence = " ".join(rng.choice(words) for _ in range(rng.randint(6, 18)))
        sentence = sentence[0].upper() + sentence[1:] + ".\n"
        block.append(sentence)
        size += len(sentence.encode())
    block.insert(len(block) // 2, names[500].upper() + " was here.\n")
    block = "".join(block).encode()[: 16 << 20]
    text, rows, patterns = (os.path.join(folder, n) for n in ("text", "list.txt", "names"))
    with open(text, "wb") as file:
        for _ in range(mib // 16):
            file.write(block)
    with open(rows, "wb") as file:
        file.write("".join(f"{n}|[person]\r\n" for n in names).encode() + b"|||\r\n")
    with open(patterns, "wb") as file:
        file.write("".join(f"{n}\n" for n in names).encode())
    return text, rows, patterns


def main():
    program, folder = sys.argv[1], sys.argv[2]
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 5
    mib = int(sys.argv[4]) if len(sys.argv) > 4 else 1024
    text, rows, patterns = make_inputs(folder, mib)
    quoted = {"p": program, "t": text, "l": rows, "n": patterns}
    commands = {
        "cat text > /dev/null": "cat {t} > /dev/null",
        "cat text | cat > /dev/null": "cat {t} | cat > /dev/null",
        "cat text | filter > /dev/null": "cat {t} | {p} filter --list {l} --quiet > /dev/null",
        "check text, all forms": "{p} check {t} --list {l} --quiet > {t}.findings; [ $? = 3 ]",
        "LC_ALL=C grep -c -F -f names": "LC_ALL=C grep -c -F -f {n} {t} > {t}.count; true",
        "LC_ALL=C grep -c -i -F -f names": "LC_ALL=C grep -c -i -F -f {n} {t} > {t}.count; true",
    }
    subprocess.run(["cat", text], stdout=subprocess.DEVNULL, check=True)
    taken = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            start = time.perf_counter()
            subprocess.run(["sh", "-c", command.format(**quoted)], check=True)
            taken[name].append(time.perf_counter() - start)
    size = os.path.getsize(text) / 1e6
    print(f"{size:.0f} MB, {ROWS} rows, median of {rounds} rounds")
    for name, times in taken.items():
        median = statistics.median(times)
        print(f"  {name:34} {size / median:7.0f} MB/s   {median:6.2f} s   "
              f"({size / max(times):.0f} to {size / min(times):.0f})")


main()
