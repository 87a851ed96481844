#!/bin/bash
# Judges the sources of all rooms by .clang-tidy, each as a build directory compiles it. What the
# build generates has to be there: build before.
# usage: check_tidy.sh BUILD-DIRECTORY
set -euo pipefail

wrong() { echo "check_tidy: $1" >&2 && exit 2; }

# One source's findings in one piece, since two sources are judged at a time, and without the
# counts that clang-tidy writes although it is told to be quiet.
if [ "${1-}" = "--one" ]; then
  status=0
  more='clang-analyzer-*' # .clang-tidy says why not everywhere
  case "${3#"$PWD/"}" in register/* | embedded/*) more= ;; esac
  said=$(clang-tidy --quiet --checks="$more" -p "$2" "$3" 2>&1) || status=1
  printf '%s\n' "${said//"$PWD/"/}" |
    grep -vE '^$|^[0-9]+ warnings? (generated|treated as error)' || true
  exit $status
fi

build=""
rooms=(common provider profiles objectmanager traversal serverobjects register embedded)
for argument in "$@"; do
  case "$argument" in
    --help | -h) sed -n '4s/^# //p' "$0" && exit 0 ;;
    -*) wrong "$argument: no such option (try --help)" ;;
    *) [ -z "$build" ] || wrong "one build directory at a time (try --help)" && build=$argument ;;
  esac
done
[ -f "$build/compile_commands.json" ] ||
  wrong "${build:-(none)}: no build directory configured by CMake (try --help)"
build=$(realpath "$build")
self=$(realpath "${BASH_SOURCE[0]}")
cd "$(dirname "$self")/.."

mapfile -t sources < <(git ls-files -co --exclude-standard -- "${rooms[@]/%//*.cpp}")
for source in "${sources[@]}"; do
  grep -qF "\"$PWD/$source\"" "$build/compile_commands.json" ||
    wrong "$source is not compiled in $build: configure it again"
done

status=0
printf '%s\0' "${sources[@]}" | xargs -0 -n1 -P2 "$self" --one "$build" || status=1
echo "check_tidy: ${#sources[@]} sources judged$([ $status -eq 0 ] || echo ', see above')"
exit $status
