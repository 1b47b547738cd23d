# shellcheck shell=bash
# Source this file in the root of the tree. It holds the packages and the build command that all
# scripts share.

# shellcheck source=scripts/need.sh
source scripts/need.sh

build_needs=(cmake ninja-build g++ nlohmann-json3-dev)
package_needs=("${build_needs[@]}" dpkg-dev file)
# shellcheck disable=SC2034
test_needs=("${package_needs[@]}" libgtest-dev libvterm-dev pkg-config acl attr tzdata clang libclang-rt-dev)

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
