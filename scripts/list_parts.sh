#!/usr/bin/env bash
# list_parts.sh FOLDER PLATFORM VERSION COMPILER: prints a CycloneDX list, in JSON, of what Harrier
# is made of: the files of the folder with their check sums, and the libraries that are linked into
# the programs, as the compiler finds them. SOURCE_DATE_EPOCH is the time of the list. Runs in the root
# of the tree.
set -euo pipefail
# shellcheck source=scripts/build.sh
source scripts/build.sh
folder=$1 platform=$2 version=$3 compiler=$4

# library FILE LICENCE PROGRAM...: prints an object about the Debian package that contains the file.
# These programs are linked with it.
library() {
  local path licence=$2 package purl fields upstream
  path=$(realpath "$1")
  shift 2
  package=$(dpkg -S "$path" | sed 's/: .*//')
  mapfile -t fields < <(dpkg-query -W -f \
    '${Package}\n${Version}\n${Architecture}\n${source:Package}\n${source:Version}\n' "$package")
  # Debian builds the libraries for its cross compilers from other source packages, but under the
  # versions of the usual ones. Scanners look up faults under the name of the usual one.
  case ${fields[3]} in
    cross-toolchain-base*) upstream=glibc ;;
    *) upstream=${fields[3]%%-cross*} ;;
  esac
  purl=$(jq -rn --args '"pkg:deb/debian/\($ARGS.positional[0])@\($ARGS.positional[1] | @uri)" +
    "?arch=\($ARGS.positional[2])&upstream=\($ARGS.positional[3])"' "${fields[@]:0:3}" "$upstream")
  jq -n --arg purl "$purl" --arg licence "$licence" --arg file "${path##*/}" \
    --arg hash "$(sha256sum "$path" | cut -c -64)" --arg name "${fields[0]}" \
    --arg version "${fields[1]}" --arg source "${fields[3]} ${fields[4]}" --arg programs "$*" '
    {
      type: "library", "bom-ref": $purl, name: $name, version: $version,
      licenses: [{expression: $licence}], purl: $purl,
      properties: [
        {name: "debian:source", value: $source},
        {name: "linked:file", value: $file},
        {name: "linked:sha256", value: $hash},
        {name: "linked:into", value: $programs}
      ]
    }'
}

# file NAME: prints an object about a file of the folder.
file() {
  jq -n --arg name "$1" --arg hash "$(sha256sum "$folder/$1" | cut -c -64)" \
    '{type: "file", "bom-ref": ("file:" + $name), name: $name,
      hashes: [{alg: "SHA-256", content: $hash}]}'
}

runtime='GPL-3.0-or-later WITH GCC-exception-3.1'
libraries=$(
  {
    library "$("$compiler" -print-file-name=libc.a)" LGPL-2.1-or-later "${programs[@]}"
    library "$("$compiler" -print-file-name=libstdc++.a)" "$runtime" "${programs[@]}"
    library "$("$compiler" -print-file-name=libgcc.a)" "$runtime" "${programs[@]}"
    library /usr/include/nlohmann/json.hpp MIT harrier-check
  } | jq -s .
)
files=$(
  (cd "$folder" && find . -type f -printf '%P\n' | sort) | while read -r name; do
    file "$name"
  done | jq -s .
)

# Equal contents have an equal number.
number=$(sha256sum <<<"$libraries $files $version $platform")
number=$(sed -E 's/^(.{8})(.{4}).(.{3}).(.{3})(.{12}).*/\1-\2-5\3-8\4-\5/' <<<"$number")
jq -n --argjson libraries "$libraries" --argjson files "$files" --arg programs "${programs[*]}" \
  --arg number "$number" --arg version "$version" --arg platform "$platform" \
  --arg compiler "$("$compiler" --version | head -n 1)" \
  --arg time "$(date -u -d "@$SOURCE_DATE_EPOCH" +%Y-%m-%dT%H:%M:%SZ)" '
  {
    bomFormat: "CycloneDX", specVersion: "1.5", serialNumber: ("urn:uuid:" + $number), version: 1,
    metadata: {
      timestamp: $time,
      component: {
        type: "application", "bom-ref": "harrier", name: "harrier", version: $version,
        properties: [{name: "platform", value: $platform}, {name: "compiler", value: $compiler}]
      }
    },
    components: ($libraries + $files),
    dependencies: (
      [{ref: "harrier", dependsOn: [$files[]["bom-ref"]]}] +
      [($programs | split(" "))[] as $program | {
        ref: ("file:" + $program),
        dependsOn: [$libraries[] |
          select(.properties[-1].value | split(" ") | index($program)) | .["bom-ref"]]
      }])
  }'
