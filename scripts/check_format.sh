#!/bin/sh
# Every C++ source looks as .clang-format says. With --fix, makes it so.
set -eu
cd "$(dirname "$0")/.."
mode="--dry-run --Werror"
[ "${1-}" = "--fix" ] && mode="-i"
# shellcheck disable=SC2086
git ls-files -z -co --exclude-standard -- '*.cpp' '*.h' | xargs -0 clang-format-14 $mode
