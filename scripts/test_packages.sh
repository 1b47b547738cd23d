#!/usr/bin/env bash
# Builds the packages, installs each in a fresh root beside the files of a service, starts the
# programs there, upgrades and removes them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/build.sh
source scripts/build.sh

usage() {
  cat <<END
usage: scripts/test_packages.sh [PLATFORM...]

Builds and tests the packages of these platforms, without a platform of all:
$(platform_names)
Needs root, and leaves a folder build that belongs to root. The programs of other
platforms run under QEMU.
END
}

fail() {
  echo "$*" >&2
  exit 1
}
# ended STATUS PATTERN COMMAND...: the command ends with this status and prints this, on whichever
# output.
ended() {
  local expected=$1 pattern=$2 status=0
  shift 2
  "$@" >"$work/said" 2>&1 </dev/null || status=$?
  ((status == expected)) || fail "$* ended with $status: $(cat "$work/said")"
  grep -q -- "$pattern" "$work/said" || fail "$* does not say $pattern: $(cat "$work/said")"
}
said() { ended 0 "$@"; }

# run PATH ARGUMENT...: runs a program of the platform by its path in the root.
run() {
  local program=$1
  shift
  if [[ $emulator == - ]]; then
    chroot "$root" "$program" "$@"
  else
    "$emulator" -0 "$root$program" "$root$program" "$@"
  fi
}

# What belongs to the service, with owner, mode and contents. The packages may add their own files.
service_files() {
  (
    cd "$root/opt/kestrel"
    stat -c '%n %U:%G %a %Y' kestrel.ini jobs.ini lang_00.ini profile
    stat -c '%n %u:%g %a' .
    sha256sum kestrel.ini jobs.ini lang_00.ini profile
  )
}

# A fresh root with a service, which has a language file of its own.
new_root() {
  rm -rf "$root"
  # Links suffice: dpkg and rpm replace files, and write into none but their logs.
  cp -al "$work/fresh" "$root"
  mkdir -p "$root/opt/kestrel"
  cp demo/* "$root/opt/kestrel"
  printf 'English\n[Merlin]\nString000="Ours"\n' >"$root/opt/kestrel/lang_00.ini"
  sed -n "/^\[Harrier\]/,\$p" languages/lang_00.ini >>"$root/opt/kestrel/lang_00.ini"
  head -c 900 /dev/urandom >"$root/opt/kestrel/profile"
  chown -R 1234:1234 "$root/opt/kestrel"
  chmod 2770 "$root/opt/kestrel"
  chmod 640 "$root/opt/kestrel/kestrel.ini"
  service_files >"$work/service"
}

expect_service() { service_files | diff "$work/service" - || fail "$1 has changed the service"; }

# Starts the programs by their paths.
start_programs() {
  said "Harrier $version" run /opt/kestrel/harrier
  said "^harrier-check $version" run /opt/kestrel/harrier-check --version
  said 'nothing found' run /opt/kestrel/harrier-check
  said "^harrier-languages $version" run /opt/kestrel/harrier-languages --version
}

# expect_programs STATUS: the programs, and the commands in the usual folders. harrier-languages ends
# with the status.
expect_programs() {
  local program
  start_programs
  ended "$1" 'lang_00.ini: up to date' run /opt/kestrel/harrier-languages \
    --from="$within/usr/share/harrier/languages"
  [[ $emulator != - ]] || {
    said "^harrier $version" run /usr/sbin/harrier --version
    said "Harrier $version" run /usr/sbin/harrier
    said 'nothing found' run /usr/bin/harrier-check
    ended "$1" 'lang_00.ini: up to date' run /usr/sbin/harrier-languages
  }
  [[ $(readlink "$root/opt/kestrel/lang_01.ini") == /etc/harrier/lang_01.ini ]] || fail "no link"
  for program in "${programs[@]}"; do
    [[ -f $root/usr/share/man/man8/$program.8.gz ]] || fail "$program has no manual page"
    [[ $program == harrier || -f $root/usr/share/bash-completion/completions/$program ]] ||
      fail "$program has no completion"
  done
}

# All files of the root but those of the service and of dpkg and rpm, which keep both versions of a
# changed file.
other_files() {
  (cd "$root" && find . \( -path ./var -o -name .rpmdb -o -path ./opt/kestrel \
    -o -name '*.rpmnew' -o -name '*.rpmsave' \) -prune -o ! -type d -print | sort)
}

# The upgrade says that the changed files have old texts. The command puts the new ones where the
# links lead, and the section of another program stays.
renew_languages() {
  grep -q 'harrier-languages shows which' "$work/log" || fail "nothing says that texts are old"
  ended 1 'lang_01.ini: .* would be renewed (changes 1 text)' run /usr/sbin/harrier-languages
  ended 1 'lang_02.ini: .* would be renewed (changes 2 texts)' run /usr/sbin/harrier-languages
  said 'lang_01.ini: \[Harrier\] renewed' run /usr/sbin/harrier-languages --apply /opt/kestrel
  grep -q 'of 9.9.9"$' "$root/etc/harrier/lang_01.ini" || fail "the texts are still old"
  grep -q Ihres "$root/etc/harrier/lang_01.ini" || fail "the section of another program is lost"
  expect_programs 0
}

# test_kind deb|rpm NAME: installs the package, upgrades it to a newer one, removes it.
test_kind() {
  local kind=$1 name=$2 status=0
  echo "Testing: $name"
  cpack -G "${kind^^}" --config "build/$preset/CPackConfig.cmake" -B "$work/newer" \
    -D CPACK_PACKAGE_VERSION=9.9.9 -D "CPACK_PRE_BUILD_SCRIPTS=$work/newer.cmake" >"$work/log" 2>&1 ||
    fail "$(cat "$work/log")"
  # An emulator takes the links for those of this machine.
  [[ $emulator == - ]] || status=1
  new_root
  other_files >"$work/others"
  "install_$kind" "build/packages/$name"
  expect_service "Installing $name"
  expect_programs $status
  diff -r integrations/fleet "$root/usr/share/doc/harrier/integrations/fleet" ||
    fail "$name: the beginning of a repository is not whole"
  [[ -x $root/usr/share/doc/harrier/integrations/fleet/check.sh ]] || fail "$name: check.sh cannot be run"

  # The administrator edits a language file, and another program adds a section to one.
  sed -i 's/^String001=.*/String001="Edited"/' "$root/etc/harrier/lang_02.ini"
  printf '[Merlin]\nString000="Ihres"\n' >>"$root/etc/harrier/lang_01.ini"
  "install_$kind" "$work/newer"/*9.9.9*."$kind"
  rm -r "$work/newer"
  expect_service "Upgrading $name"
  grep -q Edited "$root/etc/harrier/lang_02.ini" || fail "$name: the upgrade replaces an edited file"
  grep -q 'of 9.9.9"$' "$root/etc/harrier/lang_03.ini" || fail "$name: the upgrade renews no file"
  expect_programs 1
  [[ $emulator != - ]] || renew_languages

  "remove_$kind"
  expect_service "Removing $name"
  other_files | diff "$work/others" - || fail "$name: the removal leaves files"
  diff <(cd demo && printf '%s\n' * lang_01.ini profile | sort) <(ls "$root/opt/kestrel") ||
    fail "$name: the removal leaves files in the folder of the service"
  grep -q Ihres "$root/opt/kestrel/lang_01.ini" || fail "the section of another program is lost"
  passed=$((passed + 1))
}

install_deb() {
  dpkg --root="$root" --force-confold --add-architecture "$platform"
  dpkg --root="$root" --force-confold --force-unsafe-io -i "$1" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
}
remove_deb() {
  dpkg --root="$root" --purge harrier >"$work/log" 2>&1 || fail "$(cat "$work/log")"
  [[ ! -e $root/etc/harrier && ! -e $root/usr/share/doc/harrier ]] || fail "the purge leaves folders"
}

# The root is one of dpkg, so rpm does not know its shell.
install_rpm() {
  rpm --root "$root" --nodeps --ignorearch -U "$1" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
}
remove_rpm() {
  rpm --root "$root" --nodeps -e harrier >"$work/log" 2>&1 || fail "$(cat "$work/log")"
  [[ ! -e $root/usr/share/doc/harrier ]] || fail "the removal leaves folders"
}

# Follows the note in the archive.
test_archive() {
  local name=harrier-$version-linux-$platform
  new_root
  tar -C "$root" -xf "build/packages/$name.tar.xz"
  sed -n 's/^       //p' "$root/$name/INSTALL.md" |
    sed "s|/opt/kestrel|$root&|g; s,/usr/local\|/usr/share/augeas,$root&,g" >"$work/commands"
  [[ $(wc -l <"$work/commands") -gt 5 ]] || fail "the note has no commands"
  (cd "$root/$name" && bash -eu "$work/commands")
  expect_service "The archive"
  start_programs
  said 'lang_14.ini: up to date' run /opt/kestrel/harrier-languages --from="$within/$name"
  [[ $emulator != - ]] || said "Harrier $version" run /usr/local/sbin/harrier
  passed=$((passed + 1))
}

# The list names the files of the archive and the libraries.
test_list() {
  local folder=$root/harrier-$version-linux-$platform
  jq -r '.components[] | select(.type == "file") | "\(.hashes[0].content)  \(.name)"' "$1" |
    (cd "$folder" && sha256sum --quiet --check) || fail "$1 has wrong sums"
  diff <(jq -r '.components[] | select(.type == "file").name' "$1" | sort) \
    <(cd "$folder" && find . -type f -printf '%P\n' | sort) || fail "$1 has not all files"
  [[ $(jq -r '[.components[] | select(.type == "library").properties[1].value] | join(" ")' "$1") == \
    'libc.a libstdc++.a libgcc.a json.hpp' ]] || fail "$1 has not all libraries"
  [[ $(jq -r '[.components[].purl // empty | sub(".*&upstream="; "")] | join(" ")' "$1") == \
    'glibc gcc-12 gcc-12 nlohmann-json3' ]] || fail "$1 has not all source packages"
}

# What Debian's hardening-check looks for, which does not understand static programs.
test_hardening() {
  local program type=DYN
  grep -q '^HARRIER_HAS_STATIC_PIE:INTERNAL=1' "build/$preset/CMakeCache.txt" || type=EXEC
  for program in "${programs[@]}"; do
    readelf -hldW "build/$preset/$program" >"$work/elf"
    grep -q "Type: *$type" "$work/elf" || fail "$program for $platform is not of type $type"
    grep -q 'GNU_RELRO' "$work/elf" || fail "$program for $platform has no RELRO"
    grep -q 'GNU_STACK.* RW ' "$work/elf" || fail "$program for $platform may execute its stack"
    [[ $type == EXEC ]] || grep -q 'BIND_NOW' "$work/elf" || fail "$program for $platform binds late"
    ! grep -q 'INTERP\|TEXTREL\|RWE' "$work/elf" || fail "$program for $platform is not static"
  done
  # The C library has both by itself, so it is our objects that count.
  nm "build/$preset/libharrier_lib.a" >"$work/symbols" 2>/dev/null
  (($(grep -c 'U __stack_chk_fail' "$work/symbols") > 20)) || fail "$platform: no stack protector"
  grep -q 'U __memcpy_chk' "$work/symbols" || fail "$platform: nothing is fortified"
}

[[ ${1-} != -h && ${1-} != --help ]] || { usage && exit; }
((EUID == 0)) || fail "This needs root: it installs into a root of its own"
choose_platforms "$@" || { usage >&2 && exit 2; }
need "${package_needs[@]}" binutils jq mmdebstrap qemu-user rpm xz-utils
scripts/package.sh "${chosen[@]}"
(cd build/packages && sha256sum --quiet --check SHA256SUMS)

version=$(version)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work"
root=$work/root
echo "Installing a fresh root"
mmdebstrap --quiet --variant=essential bookworm "$work/fresh"
cat >"$work/newer.cmake" <<'END'
file(GLOB folders "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/etc/harrier"
  "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/usr/share/harrier/languages")
foreach(file 01 02 03)
  foreach(folder IN LISTS folders)
    file(READ "${folder}/lang_${file}.ini" text)
    string(REGEX REPLACE "(\nString017=[^\n]*)\"" "\\1 of 9.9.9\"" text "${text}")
    file(WRITE "${folder}/lang_${file}.ini" "${text}")
  endforeach()
endforeach()
END

passed=0
for name in "${chosen[@]}"; do
  read_platform "$name"
  within=
  [[ $emulator == - ]] || within=$root
  test_hardening
  [[ $deb_name == - ]] || test_kind deb "harrier_${version}_$deb_name.deb"
  [[ $rpm_name == - ]] || test_kind rpm "harrier-$version-1.$rpm_name.rpm"
  echo "Testing: harrier-$version-linux-$platform.tar.xz"
  test_archive
  test_list "build/packages/harrier-$version-$platform.cdx.json"
done
echo "$passed passed, 0 failed"
