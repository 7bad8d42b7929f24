#!/bin/bash
# nd_frame_instructions.sh: the ND frame benchmark's flight under callgrind,
# one dump per frame, and the median and heaviest frame by instruction count
# at each range given (nautical miles, as the benchmark's ladder has them:
# 0.5 1 2.5 5 10 20 40 80 160 320). Instructions don't depend on what else
# the machine is doing, so this tells a hitch of the map's own work from a
# frame the machine interrupted. Slow: a few minutes a range.
#
#   bench/nd_frame_instructions.sh [RANGE ...]      (default: 160 320)
set -euo pipefail
if [ "${1:-}" = "--help" ] || [ "${1:-}" = "-h" ]; then
  sed -n '2,9p' "$0" | sed 's/^# \{0,1\}//'
  exit 0
fi
top=$(cd "$(dirname "$0")/.." && pwd)
bench="$top/build/linux/orb_bench"
[ -x "$bench" ] || { echo "nd_frame_instructions: $bench is missing: run ./orb build" >&2; exit 1; }
ranges=("$@")
[ ${#ranges[@]} -gt 0 ] || ranges=(160 320)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
printf '%-9s %8s %14s %14s %8s\n' range_nm frames median_instr worst_instr ratio
for range in "${ranges[@]}"; do
  arg=$(python3 -c "import sys; r=float(sys.argv[1]); print(int(round(r*10)))" "$range" 2>/dev/null) ||
    { echo "nd_frame_instructions: '$range' is not a range in nautical miles" >&2; exit 2; }
  rm -f "$work"/cg.*
  valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file="$work/cg.%p" \
    "$bench" --benchmark_filter="NdFrameAcrossDenseRegion/$arg/" >/dev/null 2>"$work/log" ||
    { echo "nd_frame_instructions: callgrind failed, see its log:" >&2; tail -5 "$work/log" >&2; exit 1; }
  python3 - "$work" "$range" <<'PY'
import glob, re, statistics, sys
work, rng = sys.argv[1], sys.argv[2]
counts = []
for path in glob.glob(work + "/cg.*"):
    if not re.search(r"cg\.\d+\.\d+$", path):
        continue  # the final dump at exit holds no frame
    with open(path) as f:
        for line in f:
            if line.startswith("summary:") or line.startswith("totals:"):
                counts.append(int(line.split()[1]))
                break
counts = [c for c in counts if c > 0]
if not counts:
    sys.exit("nd_frame_instructions: no frame dumps for range " + rng)
median = statistics.median(counts)
print("%-9s %8d %14d %14d %8.2f" % (rng, len(counts), median, max(counts), max(counts) / median))
PY
done
