#!/bin/sh
# Checks the files of each host as a whole, with the language files beside them as they are on the
# host. Warnings count too. The findings go to the terminal, and as JSON to build/. As the hook before
# a commit, it checks what would be committed.
umask 077
if ! [ -x tools/harrier-check ] || ! [ -e inventory.yml ]; then
  echo "check.sh: call it in the folder of the repository" >&2
  exit 2
fi
rm -rf build && mkdir build || exit
hosts=hosts
case $0 in
  *pre-commit)
    git ls-files -z hosts | git checkout-index -z --stdin --prefix=build/.added/ || exit
    hosts=build/.added/hosts
    ;;
esac
status=0
for folder in "$hosts"/*/; do
  # Language files, which git does not see, may be left of a host that has gone.
  find "$folder" ! -type d 2>/dev/null | grep -qv '/lang_..\.ini$' || continue
  host=$(basename "$folder")
  cp -r "$folder" "build/$host" && cp tools/lang_*.ini "build/$host" || exit
  tools/harrier-check --format=json --strict "build/$host" >"build/$host.json" 2>/dev/null
  result=$?
  sed -E -i 's#^("folder":"|\{"file":")build/#\1hosts/#' "build/$host.json"
  if [ $result -ne 0 ]; then
    tools/harrier-check --quiet "build/$host" 2>&1 | sed 's|build/|hosts/|'
    status=1
  fi
done
exit $status
