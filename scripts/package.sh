#!/usr/bin/env bash
# Builds the packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/build.sh
source scripts/build.sh

# platform | preset | compiler | kinds of packages beside the archive
platforms='amd64 release g++ DEB RPM
arm64 arm64 aarch64-linux-gnu-g++ DEB RPM
armhf armhf arm-linux-gnueabihf-g++ DEB
i386 i386 i686-linux-gnu-g++ DEB
riscv64 riscv64 riscv64-linux-gnu-g++
s390x s390x s390x-linux-gnu-g++'

usage() {
  cat <<END
usage: scripts/package.sh [PLATFORM...]

Builds the packages into the folder build/packages, which afterwards holds
nothing else: Debian packages, RPM packages, an archive for any other Linux, for
each platform a list of what the programs are made of, and SHA256SUMS. The same
commit gives the same bytes. Without a platform it takes all:
$(cut -d ' ' -f 1 <<<"$platforms" | xargs)
END
}

# package PLATFORM PRESET COMPILER KIND...
package() {
  local platform=$1 preset=$2 compiler=$3 kind log=build/$1.packages.log
  shift 3
  # As in ./run: a new build folder is set up without tests.
  local options=()
  [[ -f build/$preset/CMakeCache.txt ]] || options=(-DHARRIER_TESTS=OFF)
  build "$preset" programs "${options[@]}"
  for kind in "$@"; do
    cpack -G "$kind" --config "build/$preset/CPackConfig.cmake" -B "$work/$platform" >"$log" 2>&1 || {
      cat "$log" >&2
      return 1
    }
    mv "$work/$platform"/*."${kind,,}" "$packages"
  done

  local name=harrier-$version-linux-$platform
  cmake --install "build/$preset" --component archive --strip --prefix "$work/$name" >"$log"
  scripts/list_parts.sh "$work/$name" "$platform" "$version" "$compiler" \
    >"$packages/harrier-$version-$platform.cdx.json"
  tar -C "$work" --sort=name --format=gnu --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 \
    --numeric-owner --mode=u=rwX,go=rX -c "$name" | xz -T1 >"$packages/$name.tar.xz"
}

[[ ${1-} != -h && ${1-} != --help ]] || { usage && exit; }
chosen=("$@")
((${#chosen[@]})) || mapfile -t chosen < <(cut -d ' ' -f 1 <<<"$platforms")
needs=("${package_needs[@]}" xz-utils jq)
for platform in "${chosen[@]}"; do
  row=$(grep "^$platform " <<<"$platforms") || { usage >&2 && exit 2; }
  read -r _ _ compiler kinds <<<"$row"
  # Debian names the package of g++ for another platform in this order.
  if [[ $compiler == g++ ]]; then needs+=(g++); else needs+=("g++-${compiler%-g++}"); fi
  [[ $kinds != *RPM* ]] || needs+=(rpm)
done
need "${needs[@]}"

# Nothing of the machine, the user or the moment gets into a package.
umask 022
export LC_ALL=C TZ=UTC
if [[ -z ${SOURCE_DATE_EPOCH-} ]]; then
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct) || {
    echo "Without git, SOURCE_DATE_EPOCH must say when the sources were last changed" >&2
    exit 1
  }
fi
export SOURCE_DATE_EPOCH

version=$(sed -n 's/^project(harrier VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
packages=build/packages
rm -rf "$packages"
mkdir -p "$packages"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for platform in "${chosen[@]}"; do
  read -ra row < <(grep "^$platform " <<<"$platforms")
  package "${row[@]}"
done
(cd "$packages" && sha256sum -- * >SHA256SUMS && printf "$packages/%s\n" *)
