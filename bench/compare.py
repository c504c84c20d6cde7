"""The work of compare.sh: makes the inputs, runs the programs in turns, prints the ratios."""

import filecmp
import os
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

LONG = 30  # seconds; what takes longer has one round
cli, work, rounds = sys.argv[1], sys.argv[2], int(sys.argv[3])
WORDS = ("the of and to in that was for on with as at by from they report patient treatment meeting "
         "between hospital letter signed before after account number department received payment").split()
START = "Ba Bre Da De Fe Gro Ha Jan Ka Kol La Me Mol Ni Pe Ri Sa Smi Ste Ta Ver Vis Wil Zan".split()
MIDDLE = "a be der do en kel le li ma ne ni ra ro sel ter ve".split()
END = "berg boer dijk horst ing ks len mans ma na ser sen stra veld vis wijk".split()


def names(count, rng):
    """Returns names of which none begins with another one, so that the order of rows does not matter."""
    found = set()
    while len(found) < count:
        found.add(rng.choice(START) + "".join(rng.choices(MIDDLE, k=rng.randrange(1, 4))) + rng.choice(END))
    whole = sorted(found)
    kept = [n for n, after in zip(whole, whole[1:] + [""]) if not after.startswith(n)]
    rng.shuffle(kept)
    return [n for n in kept if not any(n != m and n in m for m in kept)] if count <= 100 else kept


def prose(size, people, rng):
    text, length = [], 0
    while length < size:
        line = " ".join(rng.choice(people) if rng.randrange(40) == 0 else rng.choice(WORDS) for _ in range(12))
        text.append(line)
        length += len(line) + 1
    return ("\n".join(text) + "\n").encode()[:size]


def workload(name, rows, files):
    """Writes the case `name`; `files` are tuples (folder, name, bytes) in its source. Returns its folder and rows."""
    home = os.path.join(work, name)
    shutil.rmtree(home, ignore_errors=True)
    for folder, file, data in files:
        os.makedirs(os.path.join(home, "source", folder), exist_ok=True)
        with open(os.path.join(home, "source", folder, file), "wb") as out:
            out.write(data)
    os.makedirs(os.path.join(home, "morvex"))
    shutil.copy(cli, os.path.join(home, "morvex"))
    with open(os.path.join(home, "list.txt"), "wb") as out:
        for left, right in rows:
            out.write(f"{left}|{right}\r\n".encode())
        out.write(b"|||\r\n")
    settings = [f"{home}/source", f"{home}/target", f"{home}/list.txt", "log=1", "sep=|", "jok=*", "1.txt", ""]
    with open(os.path.join(home, "settings.dat"), "wb") as out:
        out.write("\r\n".join(settings).encode())
    with open(os.path.join(home, "rows.sed"), "w") as out:
        out.writelines(f"s/{left}/{right}/g\n" for left, right in rows)
    with open(os.path.join(home, "rows.pl"), "w") as out:
        out.write("BEGIN{%r=(" + ",".join(f"'{l}'=>'{r}'" for l, r in rows) + ");")
        out.write("$p=join '|',map{quotemeta}sort{length $b<=>length $a}keys %r;$p=qr/($p)/}s/$p/$r{$1}/g\n")
    return home, rows


def each_file(target):
    return "find %s -type f -name '*.txt' -print0 | xargs -0 -n 200" % target


def programs(home, rows):
    """Yields tuples: the name in the table, the command that must be installed, the line for bash."""
    copy = f"cp -r {home}/source {home}/target"
    target = f"{home}/target"
    yield "morvex-cli", cli, f"mkdir {target} && {home}/morvex/morvex-cli -if {home}/settings.dat"
    yield "cp -r", "cp", copy
    yield "sed -i", "sed", f"{copy} && {each_file(target)} sed -i -f {home}/rows.sed"
    yield "perl -pi", "perl", f"{copy} && {each_file(target)} perl -i -p {home}/rows.pl"
    if len(rows) <= 10:
        yield "sd, row by row", "sd", copy + "".join(f" && {each_file(target)} sd -s '{l}' '{r}'" for l, r in rows)
        yield "rpl, row by row", "rpl", copy + "".join(f" && rpl -q -R '{l}' '{r}' {target} 2>&1" for l, r in rows)


def same(home):
    """Returns whether the target holds the files that morvex-cli made."""
    for folder, _, files in os.walk(f"{home}/expected"):
        other = folder.replace(f"{home}/expected", f"{home}/target", 1)
        if any(not os.path.exists(f"{other}/{f}") or not filecmp.cmp(f"{folder}/{f}", f"{other}/{f}", False)
               for f in files):
            return False
    return True


def run(command):
    started = time.monotonic()
    done = subprocess.run(["bash", "-c", command], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return time.monotonic() - started, done.returncode


def put_away(home):
    """Frees the target's name. A large target is renamed and kept to the end: a disk that has just deleted
    many files creates new ones slowly."""
    target = f"{home}/target"
    if sum(len(files) for _, _, files in os.walk(target)) < 100:
        shutil.rmtree(target, ignore_errors=True)
    else:
        os.rename(target, tempfile.mkdtemp(dir=home) + "/target")


def compare(home, rows):
    seconds, out, once = {}, {}, set()
    for turn in range(rounds):
        for name, needed, command in programs(home, rows):
            if name in out or name in once:
                continue
            if shutil.which(needed) is None:
                out[name] = "not installed"
                continue
            taken, status = run(command)
            seconds.setdefault(name, []).append(taken)
            if taken > LONG:
                once.add(name)
            if status != 0:
                out[name] = f"ended with {status}"
            elif turn == 0 and name == "morvex-cli":
                os.rename(f"{home}/target", f"{home}/expected")
            elif turn == 0 and name != "cp -r" and not same(home):
                out[name] = "differs"
            put_away(home)
    if "morvex-cli" in out:
        sys.exit(f"morvex-cli {out['morvex-cli']}")
    ours = statistics.median(seconds["morvex-cli"])
    print(f"\n{os.path.basename(home)}: {len(rows)} rows")
    for name, _, _ in programs(home, rows):
        if name in out:
            print(f"  {name:16} {out[name]}, not compared")
            continue
        middle = statistics.median(seconds[name])
        remark = "  (one round)" if name in once and rounds > 1 else ""
        print(f"  {name:16} {middle:9.2f} s {middle / ours:8.2f} times morvex-cli{remark}")
    sys.stdout.flush()


rng = random.Random(20261121)
few, many = names(10, rng), names(1000, rng)
big = prose(1 << 24, few, rng)
inputs = [
    workload("one-big-file", [(n, f"Person{i}") for i, n in enumerate(few)], [("", "big.txt", big * 16)]),
    workload("many-small-files", [(n, f"Person{i}") for i, n in enumerate(few)],
             [(f"d{i % 100}", f"f{i}.txt", big[i * 4096:(i + 1) * 4096]) for i in range(4000)]),
    workload("thousand-rows", [(n, f"Person{i}") for i, n in enumerate(many)],
             [("", "prose.txt", prose(1 << 22, many, rng))]),
]
print(f"medians of {rounds} rounds, in {work}")
for home, rows in inputs:
    compare(home, rows)
shutil.rmtree(work)
