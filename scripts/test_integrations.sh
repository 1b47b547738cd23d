#!/usr/bin/env bash
# Tests what is in integrations/: installs the tools that use it, and runs them on folders of files.
# Each part is a function.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/build.sh
source scripts/build.sh

parts=(augeas ansible)

usage() {
  cat <<END
usage: scripts/test_integrations.sh [${parts[*]}]

Tests the integrations with other tools, or only those that are named.

AUGEAS_ROUNDS in the environment is the number of damaged configurations that
go through the Augeas lens and back, 8 by default.
END
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "$*" >&2
  exit 1
}

ansible() { integrations/ansible/test.sh; }

lens=integrations/augeas

augeas() {
  need "${test_needs[@]}" augeas-tools augeas-lenses
  build release harrier_probe -DHARRIER_TESTS=ON
  build release harrier-check
  PATH=$PWD/build/release:$PATH
  probe=$PWD/build/release/harrier_probe

  echo "Checking the lens"
  augparse -I "$lens" "$lens/test_kestrel.aug"
  augeas_round_trips
  augeas_page
}

# mutate SEED
# Copies a file to standard output, with lines as people and accidents change them.
mutate() {
  LC_ALL=C awk -v seed="$1" '
    function any(n) { return int(rand() * n) }
    BEGIN {
      srand(seed)
      crlf = any(4) == 0 ? "\r" : ""
      split("\" ; # [ ] = \t \r \a x 9 \303 \377", odd, " ")
    }
    {
      kind = any(30)
      at = any(length($0) + 1)
      if (kind == 0) gsub(/"/, "")
      if (kind == 1) $0 = " " $0
      if (kind == 2) $0 = $0 " ; remark"
      if (kind == 3) $0 = "\n \t\n;\n" $0
      if (kind == 4) $0 = $0 "\n" $0
      if (kind == 5) next
      if (kind == 6) sub(/=.*/, "=" any(100000))
      if (kind == 7) $0 = substr($0, 1, at)
      if (kind >= 8 && kind < 12) $0 = substr($0, 1, at) odd[1 + any(13)] substr($0, at + 1)
      if (kind == 12) gsub(/=/, " = ")
      printf "%s%s\n", $0, crlf
    }
    END { if (any(2)) printf "%s", "Name=last" }'
}

# Damaged files and what the editor makes of them, the demo and a file with all keys: the lens reads
# each. A tree that has changed and changed back is written, which must change no byte.
augeas_round_trips() {
  local root=$work/root round file files
  echo "Reading and writing files through the lens"
  mkdir -p "$root/demo" "$root/all"
  cp demo/*.ini "$root/demo"
  cp tests/data/every_key/*.ini "$root/all"
  mv "$root/all/group.ini" "$root/all/group_00.ini"
  for ((round = 1; round <= ${AUGEAS_ROUNDS:-8}; ++round)); do
    mkdir "$root/odd$round"
    for file in "$root"/{demo,all}/*.ini; do mutate "$round" <"$file" >>"$root/odd$round/${file##*/}"; done
    cp -r "$root/odd$round" "$root/saved$round"
    (cd "$root/saved$round" && "$probe" SaveINI </dev/null >/dev/null)
    ! cmp -s "$root"/{odd,saved}"$round/kestrel.ini" || fail "$probe saved nothing"
  done
  files=("$root"/*/*.ini)
  sha256sum "${files[@]}" >"$work/sums"
  {
    printf 'transform Kestrel.lns incl /*/*.ini\nload\n'
    for file in "${files[@]#"$root"}"; do printf 'set /files%s/x/y 1\nrm /files%s/x\n' "$file" "$file"; done
    printf 'match /augeas/files//path\nmatch /files//#line\nsave\nerrors\n'
  } | augtool --root "$root" -I "$lens" --noautoload >"$work/answers" ||
    fail "$(head -c 2000 "$work/answers")"
  # Where a file has an error, the tree is empty, and so would be the file.
  grep -q '(no errors)' "$work/answers" || fail "$(head -c 2000 "$work/answers")"
  (($(grep -c '^/augeas/files/.*/path' "$work/answers") == ${#files[@]})) || fail "Not all files were read"
  (($(grep -c '/#line\(\[.*\]\)\? =' "$work/answers") > 100)) || fail "Hardly any line is odd"
  sha256sum --quiet --check "$work/sums" || fail "The lens changes bytes"
  echo "${#files[@]} files came back as they were"
}

# The commands of the page, one after the other as a new user would run them, on a folder in place
# of /opt/kestrel. The editor shows what was set.
augeas_page() {
  echo "Running the commands of the page"
  local page=$lens/README.md host=$work/host expected
  local kestrel=$host/opt/kestrel
  export AUGEAS_ROOT=$host AUGEAS_LENS_LIB=$host/usr/share/augeas/lenses
  mkdir -p "$kestrel"
  cp -L demo/* "$kestrel"
  chmod 640 "$kestrel/kestrel.ini"
  # shellcheck disable=SC2016
  sed '/^```/,/^```/d' "$page" | sed -En "s,([ =])(/usr/share|/opt),\1$host\2,g; s/^    (sudo )?//p" |
    sed -E 's/^! (.*)/if \1; then exit 1; fi/' >"$work/commands"
  (($(wc -l <"$work/commands") > 10)) || fail "$page has no commands"
  bash -euo pipefail "$work/commands" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
  # shellcheck disable=SC2016
  expected=$(sed -n 's/^This finds `\([^`]*\)`.*/\1/p' "$page")
  grep -q "${expected:?}" "$work/log" || fail "harrier-check does not say: $expected"

  # Puppet is large. Its changes are those of augtool.
  sed -n "s|^    [\"']set \(System/.*\)[\"'],|set /files/opt/kestrel/kestrel.ini/\1|p" "$page" |
    augtool --autosave --noautoload --transform 'Kestrel.lns incl /opt/kestrel/kestrel.ini'
  augtool --autosave set /files/opt/kestrel/kestrel.ini/System/Contact "'a \"b\"'" >"$work/log" 2>&1 &&
    fail "A quote in a value was not refused"

  diff <(cat demo/{kestrel,jobs}.ini) <(cat "$kestrel"/{kestrel,jobs}.ini) >"$work/changes" || true
  printf '%s\n' 'Name="Plant room"' 'Location="North wing"' DataLogRate=30 'Name="Rack B"' \
    'Type="LUMEN39T3000"' 'Port="/dev/ttyS3"' 'Message="Power failure in the cellar"' |
    diff - <(sed -n 's/^> //p' "$work/changes") || fail "The page changes other lines"
  [[ $(stat -c %a "$kestrel/kestrel.ini") == 640 ]] || fail "The file has another mode"
  harrier-check --strict "$kestrel" || fail "harrier-check does not accept the changes"
  expect_screen "System name.*Plant room" print_main_param English 1
  expect_screen "UPS name.*Rack B" print_ups_param 1 2
}

# expect_screen PATTERN FUNCTION ARGUMENT...
expect_screen() {
  (cd "$work/host/opt/kestrel" && "$probe" "${@:2}" </dev/null) >"$work/screen"
  grep -q "$1" "$work/screen" || fail "The editor does not show $1"
}

if (($# == 0)); then set -- "${parts[@]}"; fi
for part in "$@"; do
  case " ${parts[*]} " in
    *" $part "*) ;;
    *) usage >&2 && exit 2 ;;
  esac
done
for part in "$@"; do
  echo "Testing the integration: $part"
  "$part"
done
echo "All integrations passed: $*"
