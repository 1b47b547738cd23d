# shellcheck shell=bash
# Source this file in the root of the tree. It feeds hostile input to the readers of files.

fuzz_targets=(language profile schedule check saved checkfile)

# Fills build/fuzz/seeds/TARGET with first inputs for each target, from small to large, and makes
# dictionaries of the section and key names.
make_seeds() {
  local seeds=build/fuzz/seeds target name file size code codes separators
  rm -rf "$seeds"
  for target in "${fuzz_targets[@]}"; do mkdir -p "$seeds/$target" "build/fuzz/corpus/$target"; done

  # The check target takes the files of a configuration as one input, with a file separator (ASCII
  # 28) between two files. A seed holds all files, or one file in its place. More groups may follow.
  separators=
  for name in kestrel.ini jobs.ini jobsSTS.ini group_00.ini sensor.ini; do
    { printf '%b' "$separators" && cat "demo/$name"; } >"$seeds/check/$name"
    { [[ -z $separators ]] || printf '\034'; cat "demo/$name"; } >>"$seeds/check/all"
    separators+='\034'
  done
  sed 's/$/\r/' "$seeds/check/all" >"$seeds/check/crlf"
  tr -d '"' <"$seeds/check/all" >"$seeds/check/unquoted"
  { cat "$seeds/check/all" && printf '\034' && cat demo/group_00.ini && printf '\034\034' &&
    cat demo/group_00.ini; } >"$seeds/check/groups"
  sed 's/^\[UPS_00\]/[UPS_03]/; s/^Type1=.*/Type1=0/' "$seeds/check/groups" >"$seeds/check/gaps"
  for name in kestrel.ini jobs.ini jobsSTS.ini group_00.ini sensor.ini group_00.ini; do
    head -n 32 "demo/$name" && printf '\034'
  done >"$seeds/check/short"

  # The first byte of a file that is checked alone chooses its kind.
  size=0
  for name in lang_00.ini jobs.ini kestrel.ini jobs.ini group_00.ini sensor.ini jobsSTS.ini; do
    { printf '%d' "$size" && cat "demo/$name"; } >"$seeds/checkfile/$size"
    head -n 60 "$seeds/checkfile/$size" >"$seeds/checkfile/$size.short"
    ((++size))
  done

  # The saved target takes any bytes for the values of a record.
  cp "$seeds/check/all" "$seeds/saved/text"
  tr '\n=' '"\377' <"$seeds/check/all" >"$seeds/saved/quotes"

  for file in languages/*.ini; do
    name=$(basename "$file" .ini)
    cp "$file" "$seeds/language/$name"
    head -n 40 "$file" >"$seeds/language/$name.short"
    sed 's/$/\r/' "$file" >"$seeds/language/$name.crlf"
  done
  for name in Merlin Osprey Skylark Wren; do
    sed "s/^\[Harrier\]/[$name]/" languages/lang_00.ini >"$seeds/language/$name"
  done

  # A profile has up to 64 records of 450 bytes. The sizes lie at and around these limits.
  cat demo/[!l]* >"$seeds/profile/all"
  for size in 0 449 450 451 900 28799 28800 28801; do
    head -c "$size" "$seeds/profile/all" >"$seeds/profile/$size"
  done

  # The first two bytes choose the time zone and the moment. A code has 18 digits in a field of 20.
  codes=
  while read -r code; do
    printf '\000\000%s\000\000' "$code" >"$seeds/schedule/$code"
    codes+="$code\\000\\000"
  done < <(sed -n 's/^Data="\(.*\)"$/\1/p' demo/kestrel.ini
    printf '%s\n' 4B3DF1D00001040303 4b3df1d0000f010100 FFFFFFFF0000020200 7FFFFFFF000307041F)
  # shellcheck disable=SC2059
  printf "\\001\\200$codes$codes$codes" >"$seeds/schedule/all"

  sed -n 's/^\(\[.*\]\).*/"\1\\x0a"/p; s/^\([A-Za-z0-9_]*=\).*/"\1"/p' demo/[!l]*.ini |
    sort -u >build/fuzz/check.dict
  cp build/fuzz/check.dict build/fuzz/checkfile.dict
  sed -n 's/^\(\[.*\]\).*/"\1\\x0a"/p; s/^\(String0[0-4][0-9]=\).*/"\1\\""/p' languages/*.ini |
    sort -u >build/fuzz/language.dict
}

# fuzz_one TARGET SECONDS
# Runs one target and prints one line of results. Inputs that fail stay in build/fuzz. Inputs that
# reach new code stay in build/fuzz/corpus.
fuzz_one() {
  local target=$1 seconds=$2 log=build/fuzz/$1.log status=0 memory=${TMPDIR:-/tmp} options=()
  [[ ! -e build/fuzz/$target.dict ]] || options+=(-dict="build/fuzz/$target.dict")
  [[ ! -w /dev/shm ]] || memory=/dev/shm
  memory=$(mktemp -d "$memory/harrier-fuzz.XXXXXX")
  TMPDIR=$memory "build/fuzz/tests/fuzz/${target}_fuzz" -max_total_time="$seconds" -timeout=10 \
    -max_len=65536 -print_final_stats=1 "${options[@]}" \
    -artifact_prefix="build/fuzz/$target-" "build/fuzz/corpus/$target" "build/fuzz/seeds/$target" \
    >"$log" 2>&1 || status=$?
  rm -rf "$memory"

  local executions coverage
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  coverage=$(sed -n 's/.*\(cov: [0-9]* ft: [0-9]*\).*/\1/p' "$log" | tail -n 1)
  printf '%-9s %9s executions  %s\n' "$target" "${executions:-?}" "$coverage"
  if ((status != 0)); then
    grep -m 1 -A 30 -E 'should have held|ERROR: |runtime error' "$log" >&2 || tail -n 30 "$log" >&2
    echo "Fuzzing found a fault: see $log" >&2
    return 1
  fi
}

# build_and_fuzz SECONDS
# Needs `build` of scripts/build.sh.
build_and_fuzz() {
  build fuzz fuzz_targets || return
  echo "Fuzzing: $1 s each"
  fuzz "$1"
}

# fuzz SECONDS
# Runs every target for SECONDS, as many at once as there are processors. Fails when a target fails.
fuzz() {
  make_seeds
  export -f fuzz_one
  export UBSAN_OPTIONS=print_stacktrace=1
  # shellcheck disable=SC2016
  printf '%s\n' "${fuzz_targets[@]}" |
    xargs -P "$(nproc)" -I{} bash -c 'fuzz_one {} "$1"' fuzz "$1"
}
