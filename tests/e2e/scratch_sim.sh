#!/bin/sh
# scratch_sim.sh: gives one test its own simulator folder, then runs the test.
#
#   scratch_sim.sh SOURCE TESTDIR MODULE OVERLAY [-- COMMAND ...]
#
# TESTDIR/sim becomes a fresh copy of the simulator folder SOURCE, with
# GAUGES/orb1.gau a link to MODULE (the module of the build under test, so
# that a sanitizer build's tests load its sanitized module) and the files of
# the folder OVERLAY ("-" for none) laid over it. TESTDIR/out, where orbsim
# writes pictures and tracks, starts empty, so that no file of an earlier run
# can satisfy an `expect file`. What the module writes (logs, saved routes)
# lands in the copy, never in SOURCE.
#
# An overlay file named FILE.set holds KEY=VALUE lines: each replaces the
# line of that key in the copied FILE (a profile or configuration), so that a
# test that needs one option changed doesn't carry a copy of the whole file.
#
# Left out of the copy: the module and what runs leave in a simulator folder
# (the diagnostic log, the flight logs), so that a test starts as on a clean
# machine whatever `./orb sim` did to SOURCE.
set -eu

if [ $# -lt 4 ]; then
    echo "usage: scratch_sim.sh SOURCE TESTDIR MODULE OVERLAY [-- COMMAND ...]" >&2
    exit 2
fi
source=$1
testdir=$2
module=$3
overlay=$4
shift 4
case $module in /*) ;; *) module=$(pwd)/$module ;; esac

if [ ! -d "$source" ]; then
    echo "scratch_sim.sh: $source: no such simulator folder" >&2
    exit 2
fi
if [ ! -f "$module" ]; then
    echo "scratch_sim.sh: $module: no module (build it first)" >&2
    exit 2
fi
if [ "$overlay" != "-" ] && [ ! -d "$overlay" ]; then
    echo "scratch_sim.sh: $overlay: no such overlay folder" >&2
    exit 2
fi

rm -rf "$testdir/sim" "$testdir/out"
mkdir -p "$testdir/sim/GAUGES" "$testdir/out"
tar -C "$source" --exclude=./GAUGES/orb1.gau --exclude=./orb/orb1.log --exclude=./orb/FlightLog -cf - . |
    tar -C "$testdir/sim" -xf -
ln -s "$module" "$testdir/sim/GAUGES/orb1.gau"
if [ "$overlay" != "-" ]; then
    cp -R "$overlay/." "$testdir/sim/"
    find "$testdir/sim" -name '*.set' | while read -r settings; do
        target=${settings%.set}
        if [ ! -f "$target" ]; then
            echo "scratch_sim.sh: $settings: no file ${target#"$testdir/sim/"} to set" >&2
            exit 2
        fi
        while IFS= read -r line || [ -n "$line" ]; do
            key=${line%%=*}
            if ! grep -q "^$key=" "$target"; then
                echo "scratch_sim.sh: $settings: no line $key= in ${target#"$testdir/sim/"}" >&2
                exit 2
            fi
            # The key's line, whatever its value, becomes the given one.
            awk -v key="$key" -v line="$line" 'index($0, key "=") == 1 { print line; next } { print }' \
                "$target" >"$target.tmp" && mv "$target.tmp" "$target"
        done <"$settings"
        rm "$settings"
    done
fi

if [ $# -gt 0 ]; then
    if [ "$1" != "--" ]; then
        echo "scratch_sim.sh: '--' must come before the command" >&2
        exit 2
    fi
    shift
    exec "$@"
fi
