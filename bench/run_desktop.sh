#!/bin/sh
# The desktop start figures: several starts from cached data of three home
# airports, each in a fresh process, on the offscreen platform (or under
# Xvfb with XVFB=1).
#     cmake --preset bench && cmake --build --preset bench --target desktop_start_bench
#     bench/run_desktop.sh [BUILD_DIR] [RUNS]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build/bench}
runs=${2:-7}
bench=$build/bench/desktop_start_bench
input=$(mktemp -d)
trap 'rm -rf "$input"' EXIT
"$bench" --prepare "$input"
i=0
while [ "$i" -lt "$runs" ]; do
  if [ "${XVFB:-0}" = 1 ]; then
    xvfb-run -a "$bench" "$input"
  else
    QT_QPA_PLATFORM=offscreen "$bench" "$input"
  fi
  i=$((i + 1))
done 2>/dev/null | sort -n -k2 | awk '{ms[NR]=$2; if ($8 > mb) mb=$8; rows=$4} END {
  printf "starts %d: first deals median %.1f ms (min %.1f, max %.1f), %d deals; peak RSS at most %.1f MB\n",
    NR, ms[int((NR+1)/2)], ms[1], ms[NR], rows, mb }'
