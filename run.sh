#!/bin/bash
# Installs what is missing, builds, starts the embedded CIM server with the module and the sample
# switch, and shows what a WBEM client sees. Then serves until interrupted.
set -euo pipefail

usage() {
  cat <<'END'
usage: run.sh [--once] [--port PORT] [--build DIRECTORY]
  --once             end after the walk, with 0 if every answer was right
                     (without it: serve on until interrupted)
  --port PORT        the port to serve on (default 5988; if that is taken, any free one)
  --build DIRECTORY  a build directory that is configured already (default: build/run, made here)
  --help             this text
END
}

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
once=false
port=""
build=""
while [ $# -gt 0 ]; do
  case $1 in
    --once) once=true ;;
    --port) port=${2:?run.sh: --port needs a number} && shift ;;
    --build) build=$(cd "${2:?run.sh: --build needs a directory}" && pwd) && shift ;;
    --help | -h) usage && exit 0 ;;
    *) echo "run.sh: $1: no such option" >&2 && usage >&2 && exit 2 ;;
  esac
  shift
done

say() { printf '\n== %s\n' "$*"; }

# Interrupted before there is anything to show: no success.
trap 'exit 130' INT
trap 'exit 143' TERM

"$here/scripts/setup.sh" run

if [ -z "$build" ]; then
  build=$here/build/run
  say "building in build/run"
  (cd "$here" && cmake --preset run >/dev/null)
fi
cmake --build "$build" --target cimhost ServerProfileProvider

# The server, in the background: its log and the module's trace go to files.
state=$(mktemp -d)
trace=$build/trace.log
log=$build/cimhost.log
server=""
# shellcheck disable=SC2317,SC2329  # called by the trap
end() {
  if [ -n "$server" ]; then
    kill -TERM "$server" 2>/dev/null || true
    wait "$server" 2>/dev/null || true
  fi
  rm -rf "$state"
}
trap end EXIT

# Starts the server on port $1. Returns its exit code if it ended instead of listening.
start() {
  rm -f "$state/port"
  "$build/bin/cimhost" --port "$1" --port-file "$state/port" \
    --config "$here/samples/switch.conf" --config "$here/schema/serverprofile.conf" \
    --provider-dir "$build/lib" \
    >"$trace" 2>"$log" </dev/null &
  server=$!
  for _ in $(seq 300); do
    [ -s "$state/port" ] && return 0
    if ! kill -0 "$server" 2>/dev/null; then
      local code=0
      wait "$server" || code=$?
      server=""
      return "$code"
    fi
    sleep 0.1
  done
  return 1
}

cannot_listen=5 # cimhost's exit code for a port that is taken
code=0
start "${port:-5988}" || code=$?
if [ "$code" -eq $cannot_listen ] && [ -z "$port" ]; then
  echo "port 5988 is taken; taking a free one"
  code=0
  start 0 || code=$?
fi
if [ "$code" -ne 0 ]; then
  cat "$log" >&2
  echo "run.sh: the server did not start (cimhost ended with $code); its log is above" >&2
  exit 1
fi
port=$(cat "$state/port")
say "serving on http://127.0.0.1:$port (log: ${log#"$here"/}, the module's trace: ${trace#"$here"/})"

wrong=0
"$here/walk/serverprofile-walk" --all --draw "$build/walk" --html "$build/walk.html" \
  "http://127.0.0.1:$port" || wrong=$?
say "the walk as a page: ${build#"$here"/}/walk.html, and as a picture: ${build#"$here"/}/walk.svg"

if $once; then
  kill -TERM "$server"
  code=0
  wait "$server" || code=$?
  server=""
  if [ "$code" -ne 0 ]; then
    cat "$log" >&2
    echo "run.sh: the server ended with $code" >&2
    exit 1
  fi
  exit "$wrong"
fi
[ "$wrong" -eq 0 ] || echo "run.sh: the walk failed, see above" >&2
trap 'exit 0' INT TERM
say "serving until interrupted (Ctrl-C); try for example"
echo "  wbemcli ei -nl 'http://127.0.0.1:$port/root/cimv2:CIM_RegisteredProfile'"
code=0
wait "$server" || code=$?
server=""
cat "$log" >&2
echo "run.sh: the server ended by itself, with $code; its log is above" >&2
exit 1
