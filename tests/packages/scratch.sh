#!/bin/sh
# Runs a command on a copy of this machine that is thrown away afterwards: every file can be changed
# (an overlay in memory), and there are no processes and no network but its own. The source tree is
# there, read-only; so is, below $SCRATCH, the machine as it was (before) and all that has been changed
# (changes). Needs root.
# usage: scratch.sh COMMAND [ARGUMENT...]
set -eu

if [ "${SCRATCH-}" = "" ]; then
  SCRATCH=$(mktemp -d)
  export SCRATCH
  code=0
  unshare --mount --pid --fork --kill-child --net --uts --ipc -- "$0" "$@" || code=$?
  rmdir "$SCRATCH"
  exit "$code"
fi

source=$(cd "$(dirname "$0")/../.." && pwd)
memory=$SCRATCH
mount --make-rprivate /
mount -t tmpfs scratch "$memory"
mkdir "$memory/changes" "$memory/work" "$memory/root"
root=$memory/root
mount -t overlay -o "lowerdir=/,upperdir=$memory/changes,workdir=$memory/work" scratch "$root"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount -t tmpfs tmp "$root/tmp"
show() { # what, where
  mkdir -p "$root$2"
  mount --bind "$1" "$root$2"
  mount -o remount,bind,ro "$root$2"
}
show "$source" "$source"
show / "$memory/before"
show "$memory/changes" "$memory/changes"
ip link set lo up
cd /
exec chroot "$root" env TMPDIR=/tmp "$@"
