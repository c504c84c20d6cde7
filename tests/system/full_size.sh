#!/usr/bin/env bash
# Runs over trees like those of hostile_tree_test.cpp, at a size that is too large for every test run:
# 200,000 files, and a file of 20 GiB (nearly all of it a hole) that is copied unchanged and processed.
#   tests/system/full_size.sh build/release/bin/morvex-cli [FOLDER]
# FOLDER (default: the temporary folder) needs about 22 GiB of free space. Prints the times.
set -euo pipefail

program=$(realpath "${1:?the console program}")
work=$(mktemp -d "${2:-${TMPDIR:-/tmp}}/morvex-full-size.XXXXXX")
trap 'rm -rf "$work"' EXIT
files=200000
size=$((20 * 1024 * 1024 * 1024))

fail() {
  echo "FAILED: $1"
  exit 1
}

# Runs the program from $work/src to an empty $work/out; $1 is the name of the case.
run() {
  rm -rf "$work/out" "$work/program"
  mkdir "$work/out" "$work/program"
  cp "$program" "$work/program/"
  printf '%s\r\n' "$work/src" "$work/out" "$work/list" log=1 'sep=|' 'jok=*' 1.txt >"$work/job"
  local start=$SECONDS status=0
  "$work/program/$(basename "$program")" -if "$work/job" >"$work/told" 2>"$work/errors" || status=$?
  echo "$1: $((SECONDS - start)) s"
  ((status == 0)) || fail "$1: exit status $status, $(cat "$work/errors")"
  [[ ! -s $work/errors ]] || fail "$1: $(cat "$work/errors")"
  [[ -z $(find "$work/src" "$work/out" -name tijdel.enc) ]] || fail "$1: a work file is left"
}

printf 'ab|X||\r\n' >"$work/list"

mkdir "$work/src"
python3 - "$work/src" "$files" <<'PYTHON'
import os, sys
folder, count = sys.argv[1], int(sys.argv[2])
for i in range(count):
    with open(os.path.join(folder, f"f{i}." + ("txt" if i % 2 else "bin")), "w") as file:
        file.write(f"ab{i}")
PYTHON
find "$work/src" -exec touch -d '2020-01-01' {} +
run "$files files in one folder"
python3 - "$work/out" "$files" <<'PYTHON' || fail 'a copy is wrong'
import os, sys
folder, count = sys.argv[1], int(sys.argv[2])
assert len(os.listdir(folder)) == count, len(os.listdir(folder))
for i in range(count):
    with open(os.path.join(folder, f"f{i}." + ("txt" if i % 2 else "bin"))) as file:
        assert file.read() == (f"X{i}" if i % 2 else f"ab{i}"), i
PYTHON
rm -rf "$work/src" "$work/out"

mkdir "$work/src"
printf ab >"$work/src/big.bin"
printf ab >"$work/src/small.txt"
truncate -s "$size" "$work/src/big.bin"
touch -d '2020-01-01' "$work"/src/*
run '20 GiB, unchanged'
[[ $(stat -c %s "$work/out/big.bin") == "$size" ]] || fail 'the copy has another size'
(($(stat -c %b "$work/out/big.bin") < 1000)) || fail 'the copy has no hole'
cmp "$work/src/big.bin" "$work/out/big.bin" || fail 'the copy has other bytes'

mv "$work/src/big.bin" "$work/src/big.txt"
run '20 GiB, processed'
{
  printf X
  head -c "$((size - 2))" /dev/zero
} | cmp - "$work/out/big.txt" || fail 'the copy has other bytes'
echo 'All is right.'
