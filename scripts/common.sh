# SPDX-License-Identifier: MIT
# What the commands in this folder share; read by them with `.`.

set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# A first argument --qt6 makes each command do what it does with Qt 6.
qt=5 qt_option=()
if [ "${1-}" = --qt6 ]; then
  qt=6 qt_option=(--qt6)
  shift
fi

# What a build needs; the checks add to it.
build_packages=(g++ cmake ninja-build fonts-dejavu-core)
if [ $qt = 6 ]; then
  build_packages+=(qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools)
else
  build_packages+=(qtbase5-dev qttools5-dev qttools5-dev-tools)
fi

# What the tests take beside it: an X server, and make and qmake for those who build with them.
# shellcheck disable=SC2034 # read by the commands
test_packages=(xvfb xauth openbox make pkg-config)
if [ $qt = 6 ]; then test_packages+=(qmake6); else test_packages+=(qt5-qmake); fi

# Nothing is compiled twice where ccache is.
! command -v ccache >/dev/null || export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}

step() { printf '==> %s\n' "$*"; }

die() {
  printf '%s: %s\n' "$(basename "$0")" "$*" >&2
  exit 1
}

# Installs the Debian packages that are missing, or prints the line that does.
need() {
  local missing=() package
  for package in $(printf '%s\n' "$@" | sort -u); do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  [ "$(id -u)" -eq 0 ] ||
    die "packages are missing; run: sudo apt-get install --no-install-recommends ${missing[*]}"
  step "Installing ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  local log
  log=$(mktemp)
  if ! { apt-get -q update && apt-get -q -y install --no-install-recommends "${missing[@]}"; } \
    >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    die "apt-get could not install ${missing[*]}"
  fi
  rm -f "$log"
}

# The name of a preset in the Qt that was asked for.
preset() {
  case $qt-$1 in
    5-*) echo "$1" ;;
    6-release) echo qt6 ;;
    6-*) echo "qt6-$1" ;;
  esac
}

# For what is measured, counted or drawn with one of the two.
only_qt5() { [ $qt = 5 ] || die "${1-this} is done with Qt 5"; }

configure() {
  step "Configuring $1"
  (cd "$top" && cmake --preset "$1" >/dev/null) || die "cannot configure $1"
}

# build PRESET TARGET...
build() {
  local preset
  preset=$(preset "$1")
  shift
  configure "$preset"
  step "Building $preset"
  NINJA_STATUS='[%f/%t] ' ninja -C "$top/build/$preset" --quiet "$@" ||
    die "the $preset build failed"
}

# run_tests PRESET [BUILD [OPTION...]] runs the tests of a preset, those alone that options of ctest choose, and
# says how to run those alone that failed.
run_tests() {
  local preset failed name
  preset=$(preset "$1")
  failed=$top/build/$(preset "${2-$1}")/Testing/Temporary/LastTestsFailed.log
  step "Running the tests of $preset"
  rm -f "$failed"
  ! (cd "$top" && ctest --preset "$preset" "${@:3}") || return 0
  [ ! -e "$failed" ] || while IFS=: read -r _ name; do
    echo "once more, alone: ctest --preset $preset -R '^$name\$'"
  done <"$failed"
  die "a test failed"
}
