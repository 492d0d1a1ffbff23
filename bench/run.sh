#!/usr/bin/env bash
# Prints how long the program takes in proportion to the data engine alone on the same file.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=build/bin
rows=${ROWS:-10000000}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

"$bin/make_data" 1000 > "$folder/small.csv"
"$bin/make_data" "$rows" > "$folder/large.csv"

# Seconds of the fastest of three runs.
seconds() {
  local best=""
  for _ in 1 2 3; do
    local start end
    start=$(date +%s%N)
    "$@" > /dev/null
    end=$(date +%s%N)
    if [ -z "$best" ] || [ $((end - start)) -lt "$best" ]; then best=$((end - start)); fi
  done
  awk -v ns="$best" 'BEGIN { printf "%.3f", ns / 1e9 }'
}
compare() {
  awk -v name="$1" -v a="$2" -v b="$3" -v bar="$4" 'BEGIN { printf "%-46s %8.3f s %8.3f s   ratio %5.2f (at most %s)\n", name, a, b, a / b, bar }'
}
counts="count(*) FILTER (v1=1), count(*) FILTER (v2=1), count(*) FILTER (v3=1), count(*) FILTER (v4=1), count(*) FILTER (v5=1), count(*) FILTER (v6=1), count(*) FILTER (v7=1), count(*) FILTER (v8=1)"
counts=${counts//FILTER (v/FILTER (WHERE v}
large="read_csv('$folder/large.csv')"

printf '%-46s %10s %10s\n' "" program engine
compare "1,000 rows, against an empty engine" \
  "$(seconds "$bin/proportions" "$folder/small.csv" -c 'PROPORTIONS /ONESAMPLE v1 TO v8.')" "$(seconds "$bin/engine_only")" 2.5
compare "$rows rows, one sample, 8 variables" \
  "$(seconds "$bin/proportions" "$folder/large.csv" -c 'PROPORTIONS /ONESAMPLE v1 TO v8.')" \
  "$(seconds "$bin/engine_only" "SELECT $counts FROM $large")" 1.5
compare "$rows rows, two groups, 8 outcomes" \
  "$(seconds "$bin/proportions" "$folder/large.csv" -c 'PROPORTIONS /INDEPENDENTSAMPLES v1 TO v8 BY arm.')" \
  "$(seconds "$bin/engine_only" "SELECT arm, $counts FROM $large GROUP BY arm")" 1.5
compare "$rows rows, 12 split groups" \
  "$(seconds "$bin/proportions" "$folder/large.csv" --split region -c 'PROPORTIONS /ONESAMPLE v1 TO v8.')" \
  "$(seconds "$bin/engine_only" "SELECT region, $counts FROM $large GROUP BY region")" 1.5

"$bin/classification_bench" --benchmark_min_time=0.2
"$bin/distributions_bench" --benchmark_min_time=0.05
