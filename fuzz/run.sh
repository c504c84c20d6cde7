#!/usr/bin/env bash
# Builds every fuzz target for clang's own fuzzer and lets each run for so many seconds:
#   fuzz/run.sh SECONDS [TARGET...]
# Inputs that were found to reach new code are kept in build/fuzz/TARGET, those that failed beside
# them. A failing one becomes a file in fuzz/inputs/TARGET, with the mistake mended.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
seconds=${1:?how many seconds a target}
shift
targets=("$@")
((${#targets[@]})) || targets=(judge settings list command_line extension tree)

out=build/fuzz
flags=(-std=c++20 -O1 -g1 -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
  -I. -Itests/whole_run)
mkdir -p "$out/objects"

# What the targets share is compiled once.
shared=(core/*/*.cpp tests/reference/judge.cpp tests/reference/literal_substitution.cpp
  tests/support/memory_files.cpp tests/support/test_program.cpp tests/support/failing_files.cpp
  tests/whole_run/{disk,disk_io,engine_model,folder_model,run_model,settings_model}.cpp)
objects=()
stale=()
for source in "${shared[@]}"; do
  object=$out/objects/${source//\//_}.o
  objects+=("$object")
  [[ $object -nt $source ]] || stale+=("$source" "$object")
done
if ((${#stale[@]})); then
  printf '%s\0' "${stale[@]}" |
    xargs -0 -n 2 -P "$(nproc)" bash -c '"${@:1:$#-2}" -c "${@:$#-1:1}" -o "${@:$#}"' compile \
      "${CXX:-clang++}" "${flags[@]}"
fi

failed=0
for target in "${targets[@]}"; do
  "${CXX:-clang++}" "${flags[@]}" -fsanitize=fuzzer "fuzz/${target}_fuzz.cpp" "${objects[@]}" \
    -o "$out/$target-fuzzer"
  mkdir -p "$out/$target"
  echo "== $target, $seconds seconds"
  "$out/$target-fuzzer" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -max_len=4096 \
    -artifact_prefix="$out/$target-" -print_final_stats=1 -verbosity=0 \
    "$out/$target" "fuzz/inputs/$target" || failed=1
done
exit "$failed"
