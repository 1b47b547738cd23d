#!/usr/bin/env bash
# Builds the packages.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/build.sh
source scripts/build.sh

usage() {
  cat <<END
usage: scripts/package.sh [PLATFORM...]

Builds the packages into the folder build/packages, which afterwards holds
nothing else: Debian packages, RPM packages, an archive for any other Linux, for
each platform a list of what the programs are made of, and SHA256SUMS. The same
commit gives the same bytes. Without a platform it takes all:
$(platform_names)
END
}

# Refuses to call programs by the name of another platform: the preset `release` takes the compiler of
# this machine, and any preset the one that its build folder was set up with.
expect_target() {
  local compiler
  compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "build/$preset/CMakeCache.txt")
  [[ $("$compiler" -dumpmachine) == "${target%%-*}"-* ]] || {
    echo "$compiler, which build/$preset uses, does not compile for $platform" >&2
    return 1
  }
}

# package KIND: builds the package `deb` or `rpm` of the platform.
package() {
  cpack -G "${1^^}" --config "build/$preset/CPackConfig.cmake" -B "$work/$platform" >"$log" 2>&1 || {
    cat "$log" >&2
    return 1
  }
  mv "$work/$platform"/*."$1" "$packages"
}

# package_platform PLATFORM: builds all that there is for the platform.
package_platform() {
  read_platform "$1"
  local log=build/$platform.packages.log name=harrier-$version-linux-$platform
  # As in ./run: a new build folder is set up without tests.
  local options=()
  [[ -f build/$preset/CMakeCache.txt ]] || options=(-DHARRIER_TESTS=OFF)
  build "$preset" programs "${options[@]}"
  expect_target
  [[ $deb_name == - ]] || package deb
  [[ $rpm_name == - ]] || package rpm

  cmake --install "build/$preset" --component archive --strip --prefix "$work/$name" >"$log"
  scripts/list_parts.sh "$work/$name" "$platform" "$version" "$target-g++" \
    >"$packages/harrier-$version-$platform.cdx.json"
  tar -C "$work" --sort=name --format=gnu --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 \
    --numeric-owner --mode=u=rwX,go=rX -c "$name" | xz -T1 >"$packages/$name.tar.xz"
}

[[ ${1-} != -h && ${1-} != --help ]] || { usage && exit; }
choose_platforms "$@" || { usage >&2 && exit 2; }
# Nothing of the machine, the user or the moment gets into a package. What `need` installs must be
# readable too.
umask 022
export LC_ALL=C TZ=UTC
needs=("${package_needs[@]}" xz-utils jq)
for name in "${chosen[@]}"; do
  read_platform "$name"
  needs+=("$(compiler_package "$target")")
  [[ $rpm_name == - ]] || needs+=(rpm)
done
[[ -n ${SOURCE_DATE_EPOCH-} ]] || needs+=(git)
need "${needs[@]}"

if [[ -z ${SOURCE_DATE_EPOCH-} ]]; then
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct) || {
    echo "Without the history, SOURCE_DATE_EPOCH must say when the sources were last changed" >&2
    exit 1
  }
fi
export SOURCE_DATE_EPOCH

version=$(version)
packages=build/packages
rm -rf "$packages"
mkdir -p "$packages"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for name in "${chosen[@]}"; do package_platform "$name"; done
(cd "$packages" && sha256sum -- * >SHA256SUMS && printf "$packages/%s\n" *)
