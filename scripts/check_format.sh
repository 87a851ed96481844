#!/bin/sh
# Every C++ source looks as .clang-format says. With --fix, makes it so. Versions of clang-format differ
# in what they make of it: this takes 14, which Debian 12 has, and PyPI for all (test.sh gets it there).
set -eu
cd "$(dirname "$0")/.."
format=$(command -v clang-format-14 || echo "$PWD/build/python/bin/clang-format")
if ! "$format" --version 2>/dev/null | grep -qF "version 14."; then
  echo "check_format: no clang-format 14; get it from PyPI:
  python3 -m venv build/python && build/python/bin/pip install -r tests/clients/requirements.txt" >&2
  exit 1
fi
mode="--dry-run --Werror"
[ "${1-}" = "--fix" ] && mode="-i"
# shellcheck disable=SC2086
git ls-files -z -co --exclude-standard -- '*.cpp' '*.h' | xargs -0 "$format" $mode
