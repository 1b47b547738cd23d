#!/bin/sh
# Checks the files of each host as a whole, with the language files beside them as they are on the
# host. Warnings count too. The findings go to the terminal, and as JSON to build/.
umask 077
rm -rf build && mkdir build || exit
status=0
for folder in hosts/*/; do
  host=$(basename "$folder")
  cp -r "$folder" "build/$host" && cp tools/lang_*.ini "build/$host" || exit
  if ! tools/harrier-check --format=json --strict "build/$host" >"build/$host.json"; then
    tools/harrier-check --quiet "build/$host"
    status=1
  fi
done
exit $status
