#!/usr/bin/env bash
# Builds Harrier for other platforms and tests it under an emulator.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/build.sh
source scripts/build.sh

# Those with an emulator.
platforms=$(awk '$4 != "-"' <<<"$platforms")

usage() {
  cat <<END
usage: scripts/test_platforms.sh [PLATFORM...]

Builds Harrier with the cross compilers of Debian, and tests it with QEMU. The
cases about files, profiles and schedules run as programs of the platform. In
the walks, a test program of this machine types into the emulated editor.
Without a platform it takes all: $(platform_names)
END
}

# Two cases need more than an emulator has: a start without memory, and all losses of power, which
# take minutes and do not depend on the platform.
left_out='Failingstarts|PowerCut'

# tests_of PRESET [OPTION...]
# Runs tests of a build. Prints the last lines, or all when one fails.
tests_of() {
  local log=build/$platform.tests.log
  if ctest --test-dir "build/$1" -E "$left_out" -j "$(nproc)" --output-on-failure \
    --no-tests=error "${@:2}" >"$log" 2>&1; then
    tail -n 3 "$log"
  else
    cat "$log" >&2
    return 1
  fi
}

# test_platform PLATFORM
test_platform() {
  local program
  read_platform "$1"
  build "$platform" all -DHARRIER_TESTS=ON
  echo "Testing: $platform"
  tests_of "$platform"

  # Of these names the test program of this machine starts the emulated ones.
  mkdir -p "build/$platform/emulated"
  for program in "${programs[@]}" harrier_probe check_language; do
    cp build/release/tests/emulated "build/$platform/emulated/$program"
  done
  HARRIER_PROGRAMS=$PWD/build/$platform/emulated HARRIER_EMULATOR=/usr/bin/$emulator \
    QEMU_LD_PREFIX=/usr/$target tests_of release -R 'Walks|Commands|Screens|Check|Languages' \
    --repeat until-pass:2
}

[[ ${1-} != -h && ${1-} != --help ]] || { usage && exit; }
choose_platforms "$@" || { usage >&2 && exit 2; }
needs=("${test_needs[@]}" qemu-user googletest)
for name in "${chosen[@]}"; do
  read_platform "$name"
  needs+=("$(compiler_package "$target")")
done
need "${needs[@]}"
build release all -DHARRIER_TESTS=ON
for name in "${chosen[@]}"; do test_platform "$name"; done
