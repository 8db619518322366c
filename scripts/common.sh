# SPDX-License-Identifier: MIT
# What the commands in this folder share; read by them with `.`.

set -euo pipefail
top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# What a build needs; the checks add to it.
build_packages=(g++ cmake ninja-build qtbase5-dev qttools5-dev qttools5-dev-tools fonts-dejavu-core)

# What the tests take beside it: an X server, and make and qmake for those who build with them.
# shellcheck disable=SC2034 # read by the commands
test_packages=(xvfb xauth openbox make pkg-config qt5-qmake)

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

configure() {
  step "Configuring $1"
  (cd "$top" && cmake --preset "$1" >/dev/null) || die "cannot configure $1"
}

# build PRESET TARGET...
build() {
  local preset=$1
  shift
  configure "$preset"
  step "Building $preset"
  NINJA_STATUS='[%f/%t] ' ninja -C "$top/build/$preset" --quiet "$@" ||
    die "the $preset build failed"
}

# run_tests PRESET [BUILD] runs the tests of a preset, and says how to run those alone that failed.
run_tests() {
  local preset=$1 failed=$top/build/${2-$1}/Testing/Temporary/LastTestsFailed.log name
  step "Running the tests of $preset"
  rm -f "$failed"
  ! (cd "$top" && ctest --preset "$preset") || return 0
  [ ! -e "$failed" ] || while IFS=: read -r _ name; do
    echo "once more, alone: ctest --preset $preset -R '^$name\$'"
  done <"$failed"
  die "a test failed"
}
