#!/bin/sh
# Installs from Debian's packages what is missing to build and run the project, or, with "package",
# to pack it, with "bench", to measure it, or, with "test", to check it too. Says what it installs and
# asks nothing; with nothing missing it does nothing.
set -eu

usage="usage: setup.sh run|package|bench|test"
boost=libboost-dev
# Debian 12 has Boost 1.74 under that name, and a new enough one under this.
grep -q "^VERSION_CODENAME=bookworm" /etc/os-release 2>/dev/null && boost=libboost1.81-dev
run_packages="g++ cmake ninja-build bison flex $boost libssl-dev libcrypt-dev libexpat1-dev
  libutfcpp-dev libcli11-dev nlohmann-json3-dev libspdlog-dev libgtest-dev sblim-wbemcli python3 graphviz"
package_packages="dpkg-dev file rpm"
bench_packages="libbenchmark-dev wrk"
test_packages="$package_packages $bench_packages lintian rpmlint systemd mandoc man-db iproute2 openssl curl
  git clang clang-format clang-tidy libclang-rt-dev llvm shellcheck python3-venv
  default-jdk-headless maven"

case "${1-}" in
  run) wanted=$run_packages ;;
  package) wanted="$run_packages $package_packages" ;;
  bench) wanted="$run_packages $bench_packages" ;;
  test) wanted="$run_packages $test_packages" ;;
  --help | -h) echo "$usage" && exit 0 ;;
  *) echo "$usage" >&2 && exit 2 ;;
esac

if ! command -v dpkg-query >/dev/null; then
  echo "setup: this is no Debian system; what has to be there is what these packages hold:"
  echo "$wanted"
  exit 0
fi

missing=""
for package in $wanted; do
  status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

echo "setup: installing$missing"
as_root=""
if [ "$(id -u)" -ne 0 ]; then
  as_root="sudo"
  if ! command -v sudo >/dev/null; then
    echo "setup: neither root nor sudo; install these packages and try again:$missing" >&2
    exit 1
  fi
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# The names are split into words on purpose.
# shellcheck disable=SC2086
if ! { $as_root apt-get update &&
  DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y --no-install-recommends $missing; } \
  >"$log" 2>&1 </dev/null; then
  cat "$log" >&2
  echo "setup: the packages could not be installed, see above" >&2
  exit 1
fi
echo "setup: done"
