#!/bin/bash
# Installs what is missing, then checks everything: formatting, rooms, lints, warnings of two
# compilers, the tests plain and under the sanitizers, and both commands as a new user types them.
# usage: test.sh [--quick]     --quick: only the plain build and its tests
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
quick=false
case "${1-}" in
  "") ;;
  --quick) quick=true ;;
  --help | -h) sed -n '2,4s/^# //p' "$0" && exit 0 ;;
  *) echo "test.sh: $1: no such option (try --help)" >&2 && exit 2 ;;
esac

started=$SECONDS
say() { printf '\n== [%4ds] %s\n' "$((SECONDS - started))" "$*"; }

# Clients from PyPI live in an environment of their own below build/.
python_clients() {
  local environment=build/python
  if [ ! -x $environment/bin/pywbemcli ] || [ ! -x $environment/bin/clang-format ]; then
    python3 -m venv $environment
    $environment/bin/pip install --quiet --disable-pip-version-check \
      -r tests/clients/requirements.txt || {
      rm -rf $environment
      [ -z "${CI-}" ] || { echo "test.sh: CI needs the Python clients" >&2 && return 1; }
      echo "test.sh: no Python clients (PyPI out of reach): their tests are left out" >&2
      return 0
    }
  fi
}

java_client() {
  scripts/java_client.sh && return 0
  [ -z "${CI-}" ] || { echo "test.sh: CI needs the Java client" >&2 && return 1; }
  echo "test.sh: no Java client: its tests are left out" >&2
}

# What configuring finds of an OpenPegasus decides what is tested, so that is shown.
configure() { # preset
  mkdir -p build
  cmake --preset "$1" >"build/$1.configure.log" || { cat "build/$1.configure.log" && return 1; }
  grep OpenPegasus "build/$1.configure.log" || true
}

suite() { # preset
  say "$1: configure and build"
  configure "$1"
  cmake --build --preset "$1"
  say "$1: test"
  ctest --preset "$1" -j2
}

scripts/setup.sh test
python_clients
java_client

say "scripts and sources"
shellcheck run.sh test.sh bench.sh scripts/*.sh tests/packages/*.sh
scripts/check_format.sh
scripts/check_includes.py
mandoc -T lint -W warning docs/man/*.[0-9]

suite release
if $quick; then
  say "the plain suite is green"
  exit 0
fi

say "lints"
scripts/check_tidy.sh build/release

say "clang: every warning of the second compiler"
configure clang
cmake --build --preset clang

suite asan
suite tsan

say "run.sh --once, from another folder, twice, the second time with its port taken"
here=$PWD
(cd / && "$here/run.sh" --once --build "$here/build/release")
scripts/with_port_taken.py 5988 "$here/run.sh" --once --build "$here/build/release" |
  tee build/taken.log
grep -q "port 5988 is taken" build/taken.log

say "packages"
tests/packages/run.sh

say "everything is green"
