#!/usr/bin/env bash
# install_test.sh BUILD_FOLDER: installs beside the files of a service that is in use, and compares
# every byte that must not change; then builds the Debian package and looks at what it brings.
set -euo pipefail
build=$1
source=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
kestrel=$folder/kestrel
programs=(harrier harrier-check harrier-languages)

fail() {
  echo "$*" >&2
  exit 1
}
install_harrier() { cmake --install "$build" "$@" >"$folder/log"; }
expect_same() { cmp "$1" "$2" || fail "$2 is not as it should be"; }
expect_status() {
  local status=0
  (cd / && "$kestrel/harrier" </dev/null >"$folder/screen") || status=$?
  ((status == $1)) || fail "the program ended with $status, not $1"
}

# Files of the service; a language file that it shares, one that nobody knows, one from an older
# installation.
mkdir "$kestrel"
for name in kestrel.ini jobs.ini jobsSTS.ini group_00.ini sensor.ini; do
  sed 's/Name="/Name="Our /' "$source/demo/$name" >"$kestrel/$name"
done
printf 'Old\nVersion: 1\n[Merlin]\nString000="a [b];c"\n\n[Harrier]\nString000="Old"\n[Wren]\n' \
  >"$kestrel/lang_00.ini"
printf 'Notes of the administrator\n' >"$kestrel/lang_02.ini"
cp -r "$kestrel" "$folder/before"
printf 'Deutsch\r\n[Harrier]\r\nString000="Old"\r\n' >"$kestrel/lang_01.ini"

install_harrier --prefix "$kestrel"
for file in "$folder"/before/*; do expect_same "$file" "$kestrel/${file##*/}"; done
for name in lang_00.ini lang_02.ini; do
  grep -q "Kept: $kestrel/$name" "$folder/log" || fail "nothing says that $name was kept"
done
expect_same "$source/languages/lang_01.ini" "$kestrel/lang_01.ini"
for program in "${programs[@]}"; do
  expect_same "$source/man/$program.8" "$kestrel/share/man/man8/$program.8"
done
diff <(cd "$source/languages" && ls) <(cd "$kestrel" && ls lang_*) || fail "languages are missing"

# The command that the installation names puts our section into the shared file, and nothing else.
command=$(sed -n 's/.*add Harrier.s texts: //p' "$folder/log" | tail -n 1)
(cd / && bash -c "$command") >"$folder/log" && fail "a file that was left alone is not mentioned"
grep -qx "$kestrel/lang_02.ini: left alone: .*" "$folder/log" || fail "$(cat "$folder/log")"
{ sed '/^\[Harrier\]/,$d' "$folder/before/lang_00.ini" &&
  sed -n '/^\[Harrier\]/,$p' "$source/languages/lang_00.ini" && echo '[Wren]'; } |
  cmp - "$kestrel/lang_00.ini"
expect_same "$folder/before/lang_02.ini" "$kestrel/lang_02.ini"
expect_status 0
grep -q 'Harrier 5\.3\.0' "$folder/screen" || fail "no menu was shown"
# The check looks at the folder in which it lies.
cp "$kestrel/kestrel.ini" "$folder/whole"
sed -i 's/^Port=5566/Prot=5566/' "$kestrel/kestrel.ini"
(cd / && "$kestrel/harrier-check") 2>"$folder/log" | grep -q "^$kestrel/kestrel.ini:43: .*Prot" ||
  fail "the check does not look beside itself"
mv "$folder/whole" "$kestrel/kestrel.ini"
rm "$kestrel/lang_00.ini"
expect_status 5
mkdir -p "$folder/stage/opt/kestrel"
cp "$folder/before/lang_00.ini" "$folder/stage/opt/kestrel"
DESTDIR=$folder/stage install_harrier --prefix /opt/kestrel
expect_same "$build/harrier" "$folder/stage/opt/kestrel/harrier"
expect_same "$folder/before/lang_00.ini" "$folder/stage/opt/kestrel/lang_00.ini"
expect_same "$source/languages/lang_01.ini" "$folder/stage/opt/kestrel/lang_01.ini"

# The Debian package brings nothing to where the service has its files but the programs.
cpack --config "$build/CPackConfig.cmake" -B "$folder/package" >"$folder/log" 2>&1 ||
  fail "$(cat "$folder/log")"
dpkg-deb --contents "$folder"/package/harrier_*.deb | awk '{ print $6 }' | sort >"$folder/contents"
[[ $(sed -n 's|^\./opt/kestrel/\(.\)|\1|p' "$folder/contents" | xargs) == "${programs[*]}" ]] ||
  fail "$(cat "$folder/contents")"
pages=("${programs[@]/%/.8.gz}")
for file in sbin/harrier bin/harrier-check sbin/harrier-languages share/doc/harrier/docs/files.md \
  "${pages[@]/#/share/man/man8/}" \
  share/{bash-completion/completions/,zsh/vendor-completions/_}harrier-{check,languages} \
  share/augeas/lenses/kestrel.aug; do
  grep -qx "./usr/$file" "$folder/contents" || fail "the package has no $file"
done
version=$(dpkg-deb --field "$folder"/package/harrier_*.deb Version)
grep -qx "## $version" "$source/CHANGELOG.md" || fail "CHANGELOG.md does not know version $version"
dpkg-deb --ctrl-tarfile "$folder"/package/harrier_*.deb | tar -xO ./conffiles | cmp - \
  <(cd "$source/languages" && printf '/etc/harrier/%s\n' *)

# Its commands run what lies in that folder, and its completion knows options, names and classes.
dpkg-deb --extract "$folder"/package/harrier_*.deb "$folder/root"
sed -i "s|/opt/kestrel|$kestrel|" "$folder/root/usr/bin/harrier-check"
for option in --version "--explain text-cut"; do
  # shellcheck disable=SC2086
  "$folder/root/usr/bin/harrier-check" $option | cmp - <("$kestrel/harrier-check" $option)
done
# Only the sources have the files that these links lead to.
broken=$(cd "$folder/root/usr/share/doc/harrier" && grep -roP --include='*.md' '\]\(\K(?!https:)[^)#]+' . |
  while IFS=: read -r page link; do [[ -e ${page%/*}/$link ]] || echo "$link"; done | sort -u | xargs)
[[ $broken == '../lang/text_places.cpp ../lang/texts.inc CONTRIBUTING.md man' ]] ||
  fail "the documents have other broken links: $broken"
# The script of the package links what is missing, and changes no other file.
mkdir "$folder/control" "$folder/etc"
dpkg-deb --control "$folder"/package/harrier_*.deb "$folder/control"
cp "$source/languages"/* "$folder/etc"
sed -i "s|/opt/kestrel|$kestrel|; s|/etc/harrier|$folder/etc|; s|/usr/share|$folder/root&|" \
  "$folder/control/postinst" \
  "$folder/root/usr/sbin/harrier-languages"
cp -r "$kestrel" "$folder/installed"
"$folder/control/postinst" configure >"$folder/log"
diff -r "$folder/installed" "$kestrel" >"$folder/changes" && fail "nothing was linked"
[[ $(cat "$folder/changes") == "Only in $kestrel: lang_00.ini" ]] || fail "$(cat "$folder/changes")"
grep -q 'harrier-languages shows which' "$folder/log" || fail "nothing says that a file was left alone"
"$folder/root/usr/sbin/harrier-languages" --from="$folder/root/usr/share/harrier/languages" >"$folder/log" &&
  fail "a file that was left alone is not mentioned"
[[ $(grep -v ': up to date$' "$folder/log") == "$kestrel/lang_02.ini: left alone: "* ]] ||
  fail "$(cat "$folder/log")"
# complete_last WORD...: prints what bash offers for the last word.
complete_last() {
  (
    # shellcheck disable=SC1091
    source "$folder/root/usr/share/bash-completion/completions/harrier-check"
    COMP_WORDS=("$kestrel/harrier-check" "$@") COMP_CWORD=$# COMPREPLY=()
    _harrier_check "$kestrel/harrier-check" "${COMP_WORDS[$#]}" "${COMP_WORDS[$# - 1]}" 2>/dev/null
    echo "${COMPREPLY[@]}"
  )
}
[[ $(complete_last --st) == --strict ]] || fail "the completion offers $(complete_last --st)"
[[ $(complete_last --format =) == 'text json' ]] || fail "the completion offers no format"
[[ $(complete_last --as = jobs) == 'jobs.ini jobsSTS.ini' ]] || fail "the completion offers no name"
[[ $(complete_last --explain text) == text-cut ]] || fail "the completion offers no class"
[[ $(cd "$source" && complete_last --quiet dem) == demo ]] || fail "the completion offers no folder"
# shellcheck disable=SC2016
[[ $(bash -c 'source "$1"; _harrier_languages "" --fr; echo "${COMPREPLY[@]}"' bash \
  "$folder/root/usr/share/bash-completion/completions/harrier-languages") == --from= ]] ||
  fail "the completion offers no --from"
