#!/bin/bash
# Measures how fast the server and the module are and what they hold, side by side with what cannot
# be beaten and with what they were, and prints tables; docs/performance.md explains them.
set -euo pipefail

usage() {
  cat <<'TEXT'
usage: bench.sh [--quick] [--against DIRECTORY] [--save] [--note TEXT] [--rounds N] [what ...]
  what                 module   each operation of the module against its floor
                       wire     rates and latencies over the wire
                       growth   the cost with more classes, instances, connections ...
                       memory   what the server holds, and how long it takes to start
                       costs    what requests cost that are meant to cost much, for each byte
                       users    what users cost, and what trying passwords does
                       (default: all)
  --quick              a look in under two minutes: few rounds, small sizes
  --against DIRECTORY  measure that build directory of another version of this project, too: the
                       columns "before". The module's benchmark needs its sources where they were
  --save               make the tables and plots of docs/performance.md anew
  --note TEXT          what the document shall say of this run, such as "on a busy machine"
  --rounds N           rounds of each measurement (default: 9, with --quick 3 or 1)
  --io-threads N       threads of the bare server (default: as many as cimhost has)
  --help               this text

Installs what is missing, builds into build/bench, and writes the results to
build/bench/results/results.json. With PEGASUS_ROOT and PEGASUS_HOME set, OpenPegasus is measured, too.
Measure on a machine that does nothing else. Exit code: 0 if all was measured, whatever came of it.
TEXT
}

# The folder of an argument, or an end with what is wrong about it.
build_directory() {
  [ -f "$1/CMakeCache.txt" ] || {
    echo "bench.sh: --against $1: no build directory (it has no CMakeCache.txt)" >&2
    exit 2
  }
  [ -x "$1/bin/cimhost" ] || {
    echo "bench.sh: --against $1: no cimhost is built there; build it first, for instance with" \
      "cmake --build $1 --target cimhost ServerProfileProvider" >&2
    exit 2
  }
  (cd "$1" && pwd)
}

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
against=""
passed=()
while [ $# -gt 0 ]; do
  case $1 in
    --quick | --save) passed+=("$1") ;;
    --against)
      against=$(build_directory "${2:?bench.sh: --against needs a directory}") || exit 2
      shift
      ;;
    --rounds | --io-threads) passed+=("$1" "${2:?bench.sh: $1 needs a number}") && shift ;;
    --note) passed+=("$1" "${2:?bench.sh: --note needs a text}") && shift ;;
    --help | -h) usage && exit 0 ;;
    module | wire | growth | memory | costs | users) passed+=("$1") ;;
    *) echo "bench.sh: $1: no such option or benchmark" >&2 && usage >&2 && exit 2 ;;
  esac
  shift
done

build=$here/build/bench
"$here/scripts/setup.sh" bench
mkdir -p "$here/build"
echo "bench.sh: building in build/bench" >&2
(cd "$here" && cmake --preset bench -DBENCH_AGAINST="$against" >"$here/build/bench.configure.log") || {
  cat "$here/build/bench.configure.log" >&2
  exit 1
}
cmake --build "$build" --target bench >&2
[ -z "$against" ] || passed+=(--against "$against")
exec python3 -B "$here/bench/bench.py" --build "$build" "${passed[@]}"
