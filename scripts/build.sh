# shellcheck shell=bash
# Source this file in the root of the tree. It holds what all scripts share: the packages that they
# need, the programs, the platforms and the build command.
# shellcheck disable=SC2034

# shellcheck source=scripts/need.sh
source scripts/need.sh

build_needs=(cmake ninja-build g++ nlohmann-json3-dev)
package_needs=("${build_needs[@]}" dpkg-dev file)
test_needs=("${package_needs[@]}" libgtest-dev libvterm-dev pkg-config acl attr tzdata clang libclang-rt-dev)

# All that is installed, as in CMakeLists.txt.
programs=(harrier harrier-check harrier-languages)

# platform | preset | target of the compiler | emulator | its name in Debian packages, in RPM packages
# "-" stands where there is none.
platforms='amd64 release x86_64-linux-gnu - amd64 x86_64
arm64 arm64 aarch64-linux-gnu qemu-aarch64 arm64 aarch64
armhf armhf arm-linux-gnueabihf qemu-arm armhf -
i386 i386 i686-linux-gnu qemu-i386 i386 -
riscv64 riscv64 riscv64-linux-gnu qemu-riscv64 - -
s390x s390x s390x-linux-gnu qemu-s390x - -'

platform_names() { cut -d ' ' -f 1 <<<"$platforms" | xargs; }

# choose_platforms [PLATFORM...]: sets `chosen` to these platforms, without arguments to all. Fails
# when there is no such platform.
choose_platforms() {
  read -ra chosen <<<"${*:-$(platform_names)}"
  local name
  for name in "${chosen[@]}"; do
    grep -q "^$name " <<<"$platforms" || return
  done
}

# read_platform PLATFORM: sets a variable for each column of the table.
read_platform() {
  read -r platform preset target emulator deb_name rpm_name < <(grep "^$1 " <<<"$platforms")
}

# The package of Debian with the compiler for a target.
compiler_package() {
  if [[ $1 == x86_64-* ]]; then echo g++; else echo "g++-$1"; fi
}

version() { sed -n 's/^project(harrier VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt; }

# build PRESET TARGET [OPTION...]
# Configures with the options and builds the target. Prints one line first, because a first build
# takes a while. Prints the whole log when the build fails.
build() {
  local preset=$1 target=$2 log=build/$1.log
  shift 2
  mkdir -p build
  echo "Building: $preset" >&2
  if ! { cmake --preset "$preset" "$@" &&
    cmake --build --preset "$preset" --target "$target" -j "$(nproc)"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "The $preset build failed; its log is $log" >&2
    return 1
  fi
}
