#!/usr/bin/env bash
# Builds the Debian package build/release/harrier_*.deb.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/build.sh
source scripts/build.sh

need "${package_needs[@]}"
# As in ./run: a new build folder is set up without tests.
options=()
[[ -f build/release/CMakeCache.txt ]] || options=(-DHARRIER_TESTS=OFF)
build release programs "${options[@]}"
(cd build/release && cpack --config CPackConfig.cmake | sed -n 's/.*package: \(.*\) generated.*/\1/p')
