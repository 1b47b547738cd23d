#!/usr/bin/env bash
# Builds the packages of a commit twice and compares every byte: here, and in another folder, as
# another user, with another umask, time zone and language, in another year.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/need.sh
source scripts/need.sh

if [[ ${1-} == -h || ${1-} == --help ]]; then
  cat <<'END'
usage: scripts/test_reproducible.sh [PLATFORM...]

Builds the packages of these platforms (see scripts/package.sh) here and anew
elsewhere, and compares them. Needs root, and a tree without changes. Leaves a
folder build that belongs to root.
END
  exit
fi
((EUID == 0)) || { echo "This needs root: it builds as another user" >&2 && exit 1; }
need faketime git
# On a line of its own: a git that fails has not found that there are no changes.
changes=$(git status --porcelain --untracked-files=no)
[[ -z $changes ]] || { echo "Commit or remove your changes first" >&2 && exit 1; }

umask 077
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work"
git clone --quiet --no-hardlinks . "$work/another/place/for/harrier"
chown -R 65534:65534 "$work/another"

scripts/package.sh "$@"
(
  cd "$work/another/place/for/harrier"
  setpriv --reuid 65534 --regid 65534 --clear-groups env -i PATH="$PATH" HOME="$work/another" \
    TZ=Asia/Tokyo LANG=C.UTF-8 bash -c 'umask 002 && faketime -f +1000d scripts/package.sh "$@"' \
    package "$@" >/dev/null
)
failed=0
for file in build/packages/*; do
  cmp "$file" "$work/another/place/for/harrier/$file" || failed=$((failed + 1))
done
diff <(ls build/packages) <(ls "$work/another/place/for/harrier/build/packages")
echo "$(($(find build/packages -type f | wc -l) - failed)) passed, $failed failed"
((failed == 0))
