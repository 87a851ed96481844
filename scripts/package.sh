#!/bin/bash
# Builds the packages: the module for a CIM server, the embedded server, and the walk, each as DEB and as
# RPM.
set -euo pipefail

usage() {
  cat <<'END'
usage: package.sh [--only deb|rpm] [--output DIRECTORY] [--version VERSION] [CMake definitions]
  --only deb|rpm      one kind of packages (default: both)
  --output DIRECTORY  where the packages go (default: build/packages)
  --version VERSION   the packages' version (default: the project's)
  --help              this text

CMake definitions that matter:
  -DPACKAGE_MODULE_FOR=openpegasus|embedded  whose module is packed (default: OpenPegasus's, if one
                                             is found: -DPEGASUS_ROOT=... -DPEGASUS_HOME=...)
  -DPACKAGE_CONTACT='NAME <ADDRESS>'         who maintains the packages

Exit codes: 0 built, 1 a step failed, 2 wrong command line.
END
}

started_in=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")/.."
kinds="deb rpm"
output=$PWD/build/packages
definitions=()
pack=()
while [ $# -gt 0 ]; do
  option=$1
  case $option in
    --help | -h) usage && exit 0 ;;
    -D?*) definitions+=("$option") && shift && continue ;;
    --only | --output | --version) ;;
    *) echo "package.sh: $option: no such option (try --help)" >&2 && exit 2 ;;
  esac
  [ -n "${2-}" ] || { echo "package.sh: $option needs a value (try --help)" >&2 && exit 2; }
  case $option in
    --only)
      [[ $2 = deb || $2 = rpm ]] || { echo "package.sh: --only: deb or rpm, not '$2'" >&2 && exit 2; }
      kinds=$2
      ;;
    --output) [[ $2 = /* ]] && output=$2 || output=$started_in/$2 ;;
    --version) pack=(-D "CPACK_PACKAGE_VERSION=$2") ;;
  esac
  shift 2
done

# Into `where`: where the two worlds keep their libraries, and whether those are marked as executable.
place() { # deb|rpm
  local libraries
  case $1 in
    deb) libraries=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH) && where=("-DCMAKE_INSTALL_SO_NO_EXE=1") ;;
    rpm) libraries=$(rpm --eval '%{_lib}') && where=("-DCMAKE_INSTALL_SO_NO_EXE=0") ;;
  esac
  where+=("-DCMAKE_INSTALL_LIBDIR=$libraries")
}

show() { # package
  printf '\n%s\n' "$1"
  case $1 in
    *.deb) dpkg-deb -c "$1" | sed -n '/^d/d; s,^.* [.]/,  /,p' ;;
    *.rpm) rpm -qlvp "$1" | sed -n '/^d/d; s,^[^/]*,  ,p' ;;
  esac
}

scripts/setup.sh package
mkdir -p "$output"
work=build/package
made=()
fresh=--fresh # what an earlier call was told does not count
for kind in $kinds; do
  place "$kind"
  cmake $fresh --preset package "${where[@]}" ${definitions[@]+"${definitions[@]}"} |
    grep "packed is"
  fresh=""
  cmake --build --preset package
  rm -rf "$work/packed"
  if ! cpack --config $work/CPackConfig.cmake -G "${kind^^}" -B "$work/packed" \
    ${pack[@]+"${pack[@]}"} >$work/cpack.log 2>&1; then
    cat $work/cpack.log >&2
    echo "package.sh: the ${kind^^} packages could not be made, see above" >&2
    exit 1
  fi
  for package in "$work/packed"/*."$kind"; do
    cp "$package" "$output/"
    made+=("$output/${package##*/}")
  done
done
for package in "${made[@]}"; do
  show "$package"
done
