#!/bin/bash
# Builds the packages and tests them: what they hold, and, as root and on a copy of this machine, how
# they are installed, used, upgraded and removed.
# usage: run.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

here=$PWD/tests/packages
packages=$PWD/build/packages
rm -rf "$packages"
scripts/package.sh --output "$packages" -DPACKAGE_MODULE_FOR=embedded
# The same content under a version that comes next, for upgrades.
scripts/package.sh --output "$packages/next" --version 0.99.0 -DPACKAGE_MODULE_FOR=embedded >/dev/null

python3 -B "$here/package_test.py" "$packages"

if [ "$(id -u)" -ne 0 ]; then
  [ -z "${CI-}" ] || { echo "run.sh: CI has to install the packages, which needs root" >&2 && exit 1; }
  echo "run.sh: not root: installing, upgrading and removing the packages is left out" >&2
  exit 0
fi
for kind in deb rpm; do
  "$here/scratch.sh" python3 -B "$here/transactions_test.py" $kind "$packages" "$packages/next"
done
