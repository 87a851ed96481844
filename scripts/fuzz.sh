#!/bin/bash
# Looks for inputs that break a fuzz target, with the preset "fuzz" (clang, libFuzzer).
# usage: fuzz.sh NAME TIME
#   NAME  a target of tests/fuzz, or "all": one after the other, each for TIME
#   TIME  how long it runs, if it finds nothing: 600 (seconds), 30m or 2h
# Found inputs are kept in build/fuzz/corpus/NAME and go on from there the next time; one that breaks a
# rule goes to build/fuzz/findings/NAME. Exit code: 0, 1 after a finding, 2 when there was no run.
set -euo pipefail

wrong() { echo "fuzz.sh: $1" >&2 && exit 2; }

name=""
time=""
for argument in "$@"; do
  case "$argument" in
    --help | -h) sed -n '2,7s/^# //p' "$0" && exit 0 ;;
    -*) wrong "$argument: no such option (try --help)" ;;
    *) if [ -z "$name" ]; then name=$argument; elif [ -z "$time" ]; then time=$argument; else
      wrong "$argument: one name and one time are taken (try --help)"
    fi ;;
  esac
done
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mapfile -t targets < <(basename -s .dict -a tests/fuzz/dictionaries/*.dict)
case " all ${targets[*]} " in
  *" ${name:-?} "*) ;;
  *) wrong "${name:-(none)}: no such target; there are all ${targets[*]} (try --help)" ;;
esac
[ "$name" = all ] || targets=("$name")
[[ $time =~ ^([1-9][0-9]{0,6})([smh]?)$ ]] ||
  wrong "${time:-(none)}: no time; a number of seconds, or one like 30m or 2h, is expected (try --help)"
declare -A unit=([s]=1 [m]=60 [h]=3600)
seconds=$((BASH_REMATCH[1] * ${unit[${BASH_REMATCH[2]:-s}]}))

command -v clang++ >/dev/null || wrong "no clang++; scripts/setup.sh test installs it"
cmake --preset fuzz >/dev/null ||
  wrong "cannot be configured, see above; scripts/setup.sh test installs what is missing"
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}" || wrong "cannot be built, see above"

# The longest input in bytes: more than a request of each kind, and little enough to be quick.
declare -A longest=([cimxml]=8192 [headers]=2048 [http]=4096 [mof]=4096 [structured]=256 [users]=2048 [values]=1024)

figure() { sed -n "s/^stat::$1: *//p" "$log"; } # of libFuzzer's last lines

status=0
for target in "${targets[@]}"; do
  corpus=build/fuzz/corpus/$target
  findings=build/fuzz/findings/$target
  log=build/fuzz/$target.log
  dictionary=build/fuzz/$target.dict
  mkdir -p "$corpus" "$findings"
  seeds=(tests/fuzz/{corpus,findings}/"$target")
  echo "fuzz.sh: $target for $seconds s; $log says how it goes"
  sed -E 's|^"<([A-Z.]+)>"$|&\n"</\1>"\n"<\1 NAME=\\""|' "tests/fuzz/dictionaries/$target.dict" >"$dictionary"
  before=$(find "$findings" -type f | wc -l)
  run=0
  TIMEFORMAT="%U %S"
  processor=$({ time nice build/fuzz/bin/fuzz_"$target" -dict="$dictionary" \
    -max_len="${longest[$target]}" -timeout=20 -report_slow_units=20 -rss_limit_mb=2048 \
    -print_final_stats=1 -max_total_time="$seconds" -artifact_prefix="$findings/" "$corpus" "${seeds[@]}" \
    >"$log" 2>&1 </dev/null; } 2>&1) || run=$?
  coverage=$(sed -n 's/.* cov: \([0-9]*\) ft: .*/\1/p' "$log" | tail -n 1)
  minutes=$(awk '{print int(($1 + $2) / 6) / 10}' <<<"$processor")
  echo "fuzz.sh: $target: $(figure number_of_executed_units) executions in $minutes minutes of processor" \
    "time, $(figure average_exec_per_sec) a second; coverage ${coverage:-none}," \
    "corpus $(find "$corpus" -type f | wc -l), findings $(($(find "$findings" -type f | wc -l) - before))"
  [ $run -ne 72 ] || wrong "interrupted" # libFuzzer's exit code for it
  if [ $run -ne 0 ]; then
    status=1
    grep -E '^(BROKEN RULE|SUMMARY|terminate)|ERROR: |Test unit written' "$log" >&2 || tail -n 20 "$log" >&2
    echo "fuzz.sh: $target: minimise it with build/fuzz/bin/fuzz_$target -minimize_crash=1 FILE;" \
      "when it is mended, keep it in tests/fuzz/findings/$target" >&2
  fi
done
exit $status
