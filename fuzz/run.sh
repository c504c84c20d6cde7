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
programs=("${targets[@]/#/morvex-}")
CXX=${CXX:-clang++} cmake --preset fuzz
cmake --build --preset fuzz --target "${programs[@]/%/-fuzzer}"

failed=0
for target in "${targets[@]}"; do
  mkdir -p "$out/$target"
  echo "== $target, $seconds seconds"
  "$out/bin/morvex-$target-fuzzer" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=4096 -max_len=4096 \
    -artifact_prefix="$out/$target-" -print_final_stats=1 -verbosity=0 \
    "$out/$target" "fuzz/inputs/$target" || failed=1
done
exit "$failed"
