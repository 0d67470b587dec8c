#!/bin/sh
# Every data-path figure in one go, on the generated three-airport input:
#     cmake --preset bench && cmake --build --preset bench
#     bench/run_data_path.sh [BUILD_DIR]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
build=${1:-$here/../build/bench}
input=$(mktemp -d)
trap 'rm -rf "$input"' EXIT
python3 "$here/make_input.py" "$input"
ROAMWISE_BENCH_INPUT=$input "$build/bench/data_path_bench" --benchmark_counters_tabular=true
python3 "$here/cli_figures.py" "$build/cli/roamwise-cli" "$input"
