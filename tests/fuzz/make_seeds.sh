#!/bin/sh
# make_seeds.sh: the seed inputs of the fuzz targets, made from the project's
# own files, so that a run starts from real navigation data, configuration,
# routes, panels, scripts and bitmaps rather than from nothing.
#
#   make_seeds.sh SOURCE_ROOT SEEDS_DIR
#
# SEEDS_DIR/<target>/ is made anew for each target. libFuzzer reads it after
# the target's working corpus and writes only into that corpus, so the seeds
# stay as made. Targets whose first byte picks a reader get that byte before
# each file. Long text files are cut at line ends into pieces the fuzzer's
# length limit takes whole. The CDU target reads key presses, which have no
# file form: it has no seeds and starts from its corpus alone.
set -eu

if [ $# -ne 2 ]; then
    echo "usage: make_seeds.sh SOURCE_ROOT SEEDS_DIR" >&2
    exit 2
fi
top=$1
seeds=$2
sim="$top/data/sim"
piece_bytes=4000   # under the 4096 bytes of ./orb fuzz's -max_len

rm -rf "$seeds"
mkdir -p "$seeds"

# Copies each file whole.
whole() {
    target=$1
    shift
    mkdir -p "$seeds/$target"
    for f in "$@"; do
        [ -f "$f" ] && cp "$f" "$seeds/$target/$(basename "$f")"
    done
    return 0
}

# Cuts each file into pieces of whole lines.
pieces() {
    target=$1
    shift
    mkdir -p "$seeds/$target"
    for f in "$@"; do
        [ -f "$f" ] && split -C "$piece_bytes" "$f" "$seeds/$target/$(basename "$f")."
    done
    return 0
}

# Copies each file behind a first byte (octal) that picks the target's reader.
picked() {
    target=$1
    byte=$2
    shift 2
    mkdir -p "$seeds/$target"
    for f in "$@"; do
        [ -f "$f" ] || continue
        out="$seeds/$target/$byte-$(basename "$f")"
        printf "\\$byte" > "$out"
        head -c "$piece_bytes" "$f" >> "$out"
    done
    return 0
}

navdata="$sim/orb/navdata"
routes=$(ls "$sim"/orb/flightplans/*.RTE "$sim"/orb/flightplans/*.rte 2>/dev/null || true)
panels=$(ls "$sim"/panels/*.cfg 2>/dev/null || true)
scripts=$(ls "$top"/tests/e2e/*.orbsim "$top"/tests/e2e/pending/*.orbsim "$sim"/*.orbsim 2>/dev/null || true)
small_bitmaps=$(find "$top/src/resources/bitmaps" -name '*.bmp' -size -8k 2>/dev/null | sort)

# The lists are file names without blanks, split on purpose.
pieces fuzz_config_reader "$sim/orb/orb.cfg" "$sim"/orb/Aircraft/*.cfg
whole fuzz_performance_file "$sim"/orb/Aircraft/*_perf.txt
pieces fuzz_flight_summary "$top/tests/flightlog/sample_fpl.log"
pieces fuzz_nav_bulk_lines "$navdata/apts.txt" "$navdata/navs.txt" "$navdata/ints.txt"
pieces fuzz_nav_files "$navdata"/*.txt
whole fuzz_nav_files $routes
whole fuzz_route_lines $routes
whole fuzz_procedure_files "$navdata/sids.txt" "$navdata/sids_user.txt" "$navdata/stars.txt" "$navdata/apps.txt"
# Simulator plans of both forms; other tools' plans behind the byte of their reader
# (0 .rte, 1 .pln XML, 2 .pln text, 3 .fms 3, 4 .fms 11, 5 .fgfp).
plans=$(ls "$top"/tests/e2e/*.sim/orb/flightplans/*.PLN "$top"/tests/plan/plans/* 2>/dev/null || true)
whole fuzz_pln_lines $plans
picked fuzz_plan_formats 000 $routes
for f in $plans; do
    case "$f" in
        *.PLN|*.pln) if head -c 1 "$f" | grep -q '<'; then picked fuzz_plan_formats 001 "$f"; else picked fuzz_plan_formats 002 "$f"; fi ;;
        *_v3.fms) picked fuzz_plan_formats 003 "$f" ;;
        *.fms) picked fuzz_plan_formats 004 "$f" ;;
        *.fgfp) picked fuzz_plan_formats 005 "$f" ;;
    esac
done
# The model's own coefficient text, one row a line, as the module holds it.
mkdir -p "$seeds/fuzz_geomag"
sed -n 's/^    "\(.*\)",\{0,1\}$/\1/p' "$top/src/navdata/wmm2005_coefficients.cpp" > "$seeds/wmm2005.txt"
split -C "$piece_bytes" "$seeds/wmm2005.txt" "$seeds/fuzz_geomag/wmm2005.txt."
rm -f "$seeds/wmm2005.txt"
# Strings the displays draw: the CDU screens the tests keep.
whole fuzz_gdiplus "$top"/tests/cdu/reference/*.txt
# orbsim: 0 a BMP, 3 a panel, 4 a script, 6 the module's predictions.
picked fuzz_orbsim 000 $small_bitmaps
picked fuzz_orbsim 003 $panels
picked fuzz_orbsim 004 $scripts
picked fuzz_orbsim 006 $(ls "$top"/tests/e2e/*.sim/orb/vnav_profile.txt 2>/dev/null || true)
# The module's resource readers: 2 a BMP, 3 the resource script.
picked fuzz_resources 002 $small_bitmaps
picked fuzz_resources 003 "$top/src/resources/resources.rc"
mkdir -p "$seeds/fuzz_cdu"
