#!/usr/bin/env bash
# Tests the Ansible role and the page docs/fleet.md, over local connections on folders.
#
# ANSIBLE_ROUNDS in the environment is the number of random configurations, 3 by default.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# shellcheck source=scripts/build.sh
source scripts/build.sh

ansible_folder=integrations/ansible
role=$PWD/$ansible_folder/roles/kestrel

ansible_role() {
  need "${test_needs[@]}" ansible-core ansible-lint git jq shellcheck
  build release all -DHARRIER_TESTS=ON
  local ansible_work
  ansible_work=$(mktemp -d)
  # A function of its own, so that a failure removes the folder as well.
  (trap 'rm -rf "$ansible_work"' EXIT && cd "$ansible_work" && ansible_tests "$OLDPWD")
}

ansible_tests() {
  root=$1
  # Nothing of the user's own, and no colours.
  export ANSIBLE_HOME=$PWD/home ANSIBLE_NOCOLOR=1 ANSIBLE_RETRY_FILES_ENABLED=0 NO_COLOR=1
  export ANSIBLE_PIPELINING=1 ANSIBLE_LOCALHOST_WARNING=0 ANSIBLE_ROLES_PATH=${role%/*} HOME=$PWD/home
  export LC_ALL=C.UTF-8 ANSIBLE_PYTHON_INTERPRETER=/usr/bin/python3
  export PYTHONDONTWRITEBYTECODE=1
  umask 022
  mkdir home

  echo "Linting the role"
  (cd "$root/$ansible_folder" && ansible-lint --offline --strict --profile production -q roles/kestrel)
  (cd "$root" && shellcheck -x "$ansible_folder/test.sh")
  ansible_role_steps
  ansible_same_bytes
  ansible_readme
  ansible_page
  echo "The role and its page passed"
}

ansible_fail() {
  echo "$*" >&2
  [[ ! -f log ]] || tail -n 60 log >&2
  exit 1
}

# play EXPECTED [OPTION...]
# Runs $playbook, site.yml by default, on the folder kestrel. EXPECTED is "same", "changed", or a text of the failure.
play() {
  local expected=$1 status=0
  shift
  ansible-playbook -i localhost, "${playbook:-site.yml}" "$@" >log 2>&1 || status=$?
  case $expected in
    same) grep -q 'changed=0 .*failed=0 ' log || ansible_fail "Not unchanged: $*" ;;
    changed) grep -q 'changed=[1-9].*failed=0 ' log || ansible_fail "Not changed: $*" ;;
    *)
      ((status != 0)) || ansible_fail "Not refused: $*"
      grep -qF -- "$expected" log || ansible_fail "The refusal does not say: $expected"
      ;;
  esac
  ! compgen -G "$TMPDIR/kestrel.*" >/dev/null || ansible_fail "A staging folder remained"
}

# Prints what is in a folder, with owners, permissions and times.
state_of() {
  (cd "$1" && find . -type d -printf '%p %U:%G %m\n' -o -printf '%p %U:%G %m %T@ %l\n' | sort &&
    find . -type f -exec sha256sum {} + | sort)
}

expect_state() { diff "$1" <(state_of kestrel) >&2 || ansible_fail "The folder was touched: $2"; }

# The order matters: each step begins where the one before has ended.
ansible_role_steps() {
  echo "Installing, changing, refusing"
  export TMPDIR=$PWD/tmp
  mkdir tmp source kestrel
  cp -L "$root"/demo/*.ini "$root/demo/ups_shut.scr" source
  mv source/lang_00.ini kestrel
  touch source/README source/kestrel.ini.backup
  cat >site.yml <<'YAML'
- name: Install
  hosts: all
  connection: local
  gather_facts: false
  roles: [kestrel]
  handlers:
    - name: See that the handlers are called
      ansible.builtin.command: touch handled
      args: { chdir: "{{ playbook_dir }}" }
      listen: kestrel_changed
YAML
  cat >group_vars.yml <<YAML
kestrel_dir: $PWD/kestrel
kestrel_folder: $PWD/source
kestrel_check: $root/build/release/harrier-check
kestrel_languages: ""
YAML
  local always=(-e @group_vars.yml) name

  state_of kestrel >before
  play changed "${always[@]}" --check --diff
  expect_state before "by check mode"
  grep -q '^+Name="Server room"' log || ansible_fail "--diff does not show a new file"
  play changed "${always[@]}"
  [[ -e handled ]] || ansible_fail "No handler was called"
  for name in kestrel.ini jobs.ini jobsSTS.ini group_00.ini sensor.ini ups_shut.scr; do
    cmp "source/$name" "kestrel/$name" || ansible_fail "$name is not as it should be"
  done
  [[ $(cd kestrel && stat -c '%a %n' -- *) == "640 group_00.ini
640 jobs.ini
640 jobsSTS.ini
640 kestrel.ini
644 lang_00.ini
640 sensor.ini
750 ups_shut.scr" ]] || ansible_fail "Other files or permissions: $(cd kestrel && stat -c '%a %n' -- *)"
  state_of kestrel >before
  rm handled
  play same "${always[@]}"
  play same "${always[@]}" --check --diff
  expect_state before "by a second run"
  [[ ! -e handled ]] || ansible_fail "A handler was called without a change"

  # A change of two files, one of them with a password. What is shown is what happens.
  sed -i 's/^Contact=.*/Contact="New"/; s/^Password=""/Password="s3cret"/' source/kestrel.ini
  sed 's/Rack A/Rack B/' source/group_00.ini >source/group_01.ini
  play changed "${always[@]}" --check --diff
  expect_state before "by check mode"
  grep -q '^+Contact="New"' log || ansible_fail "--diff does not show the change"
  grep -q '^+Name="Rack B"' log || ansible_fail "--diff does not show the new group"
  ! grep -q '^[-+]Location' log || ansible_fail "--diff shows more than the change"
  grep -q '^+Password=(hidden, another)' log || ansible_fail "--diff does not show the new password"
  ln kestrel/jobs.ini untouched
  play changed "${always[@]}" --diff -vvv
  ! grep -q 's3cret' log || ansible_fail "The password is shown"
  cmp source/kestrel.ini kestrel/kestrel.ini
  cmp source/group_01.ini kestrel/group_01.ini
  [[ untouched -ef kestrel/jobs.ini ]] || ansible_fail "A file that is the same was replaced"
  rm untouched
  play same "${always[@]}"

  # Refusals touch nothing, and show the findings.
  state_of kestrel >before
  cp source/kestrel.ini good.ini
  sed -i 's/^EventLog=.*/EventLog=yes/; s/^Contact=.*/Contact="Never"/' source/kestrel.ini
  play 'kestrel.ini:9: error: System.EventLog' "${always[@]}"
  play '[not-a-number]' "${always[@]}" --check
  sed -i 's/^EventLog=.*/EventLog=1/; s/^Port=5566/Prot=5566/' source/kestrel.ini
  play '[unknown-key]' "${always[@]}"
  # Each file is right on its own, but not the whole: no UPS has the number of a member.
  cp good.ini source/kestrel.ini
  sed -i 's/^UPS_01=2/UPS_01=9/' source/group_01.ini
  play 'group_01.ini:17: warning' "${always[@]}"
  cp kestrel/group_01.ini source
  sed -i 's/^Password=.*/Password="s3cret s3cret s3cret s3cret s3cret s3cret s3cret s3cret s3cret s3cret"/' \
    source/kestrel.ini
  play 'has 69 bytes, 64 are kept' "${always[@]}"
  ! grep -q 's3cret' log || ansible_fail "A finding shows the password"
  cp good.ini source/kestrel.ini
  play 'secret-readable' "${always[@]}" -e kestrel_mode=0644
  play 'kestrel_mode must be' "${always[@]}" -e '{kestrel_mode: 0640}'
  play 'kestrel_script_mode must be' "${always[@]}" -e kestrel_script_mode=u=rwx
  play 'There is no no-such-check on this host' "${always[@]}" -e kestrel_check=no-such-check
  play 'printed no findings' "${always[@]}" -e kestrel_check=/bin/false
  play 'is the service installed?' "${always[@]}" -e "kestrel_dir=$PWD/nowhere"
  play 'There is no kestrel.ini' "${always[@]}" -e "kestrel_folder=$PWD/home"
  play 'Set either' "${always[@]}" -e kestrel_folder=
  sed 's/roles:.*/tasks: [include_role: { name: kestrel, tasks_from: fetch }]/; /handlers:/,$d' \
    site.yml >fetch.yml
  # In check mode, since without the refusal it would write to the root folder.
  playbook=fetch.yml play 'Set kestrel_folder to' "${always[@]}" -e kestrel_folder= --check
  play 'Set either' "${always[@]}" -e kestrel_config=words
  (flock 9 && play 'Somebody is editing' "${always[@]}") 9<kestrel
  expect_state before "by a refusal"

  # A file system without locks.
  mkdir no_locks
  cat >no_locks/sitecustomize.py <<'PYTHON'
import errno
import fcntl
def flock(descriptor, operation):
    raise OSError(errno.ENOLCK, "No locks available")
fcntl.flock = flock
PYTHON
  PYTHONPATH=$PWD/no_locks play same "${always[@]}"
  tr '\n' ' ' <log | grep -q 'cannot be locked.*No locks' || ansible_fail "Nothing says that there is no lock"

  # A file that cannot be written, after others that can.
  sed -i 's/^Contact=.*/Contact="Newer"/' source/kestrel.ini
  mv kestrel/sensor.ini kept
  ln -s nowhere/sensor.ini kestrel/sensor.ini
  state_of kestrel >before
  play 'could not be installed' "${always[@]}"
  expect_state before "by a failure"
  mv kept kestrel/sensor.ini

  echo "Links, attributes, what is not in the folder"
  mkdir elsewhere
  mv kestrel/jobs.ini elsewhere
  ln -s ../elsewhere/jobs.ini kestrel
  sed -i 's/^Message="Power failure"/Message="Power cut"/' source/jobs.ini
  setfacl -m u:1:r kestrel/kestrel.ini
  rm source/sensor.ini source/ups_shut.scr source/group_01.ini
  cp kestrel/sensor.ini before
  local group=()
  ((EUID != 0)) || group=(-e kestrel_group=daemon)
  play changed "${always[@]}" -e kestrel_remove_groups=false
  [[ -e kestrel/group_01.ini ]] || ansible_fail "The group was removed"
  play changed "${always[@]}" "${group[@]}" --diff
  [[ ! -e kestrel/group_01.ini ]] || ansible_fail "The group was not removed"
  grep -q '^-Name="Rack B"' log || ansible_fail "--diff does not show the group that goes"
  cmp before kestrel/sensor.ini
  [[ -x kestrel/ups_shut.scr ]] || ansible_fail "The script is gone"
  cmp source/jobs.ini elsewhere/jobs.ini
  [[ -L kestrel/jobs.ini ]] || ansible_fail "The link is gone"
  getfacl -p kestrel/kestrel.ini | grep -q '^user:daemon:r' || ansible_fail "The access list is gone"
  ((EUID != 0)) || [[ $(stat -c %U:%G kestrel/kestrel.ini) == root:daemon ]] ||
    ansible_fail "The group of the file is another"
  play same "${always[@]}" "${group[@]}"
  chmod 600 kestrel/kestrel.ini
  play changed "${always[@]}" "${group[@]}" --check --diff
  grep -q '^+.* 0640' log || ansible_fail "--diff does not show the permissions"

  echo "Passwords apart from the files"
  sed -i 's/^Password="s3cret"/Password=""/' source/kestrel.ini
  echo word >vault
  export ANSIBLE_VAULT_PASSWORD_FILE=$PWD/vault
  cat >secrets.yml <<YAML
kestrel_secrets:
  EmailConfig: { Password: "s3cret" }
  UPS_00: { Password: true }
  UPS_01:
    Password: 762
    $(ansible-vault encrypt_string --name SNMPSetComm pr1vate)
YAML
  play changed "${always[@]}" -e @secrets.yml --diff -vvv
  ! grep -q 's3cret\|pr1vate' log || ansible_fail "A password is shown"
  local others
  others=$(diff source/kestrel.ini kestrel/kestrel.ini | grep '^>' | tr '\n' ' ' || true)
  [[ $others == '> Password="s3cret" > Password=1 > Password=762 > SNMPSetComm="pr1vate" ' ]] ||
    ansible_fail "Other passwords: $others"
  play same "${always[@]}" -e @secrets.yml
  sed -i 's/s3cret/ch4nged/' secrets.yml
  play changed "${always[@]}" -e @secrets.yml --check --diff
  grep -q '^+Password=(hidden, another)' log || ansible_fail "--diff does not show that a password is new"
  play 'kestrel.ini has no UPS_09.Password' "${always[@]}" \
    -e '{kestrel_secrets: {UPS_09: {Password: 762}}}'
  play 'EmailConfig.Password cannot hold a double quote' "${always[@]}" \
    -e '{kestrel_secrets: {EmailConfig: {Password: "x\"y"}}}'
  play 'EmailConfig.Password must be a text' "${always[@]}" \
    -e '{kestrel_secrets: {EmailConfig: {Password: 0123}}}'

  echo "The service"
  play 'no-such-kestrel' "${always[@]}" -e kestrel_service=no-such-kestrel
  play same "${always[@]}" -e kestrel_service=no-such-kestrel
}

# What the role writes, a save of the program leaves as it is: for the demo and for random values.
ansible_same_bytes() {
  echo "Comparing with what a save writes"
  local seed name always=(-e @group_vars.yml -e @values.yml)
  # Random values make no sense: only what is written counts.
  cat >group_vars.yml <<YAML
kestrel_dir: $PWD/kestrel
kestrel_check: $PWD/agree
YAML
  printf '#!/bin/sh\necho %s\n' "'{\"findings\": []}'" >agree
  chmod +x agree
  for ((seed = 0; seed <= ${ANSIBLE_ROUNDS:-3}; ++seed)); do
    rm -rf kestrel saved
    mkdir kestrel
    cp "$root"/languages/lang_00.ini "$root/demo/ups_shut.scr" kestrel
    if ((seed == 0)); then
      "$root/$ansible_folder/to_variables.py" "$root/demo" >values.yml
    else
      "$root/$ansible_folder/random_values.py" "$seed" "$role/vars/main.yml" >values.yml
    fi
    play changed "${always[@]}"
    cp -r kestrel saved
    # A save drops the remark, so that it is certain that there was one.
    echo '; a remark' >>saved/sensor.ini
    save_in saved
    diff -r kestrel saved >&2 || ansible_fail "A save writes other bytes, seed $seed"
    # The way back from files to variables loses nothing.
    "$root/$ansible_folder/to_variables.py" saved >values.yml
    play same "${always[@]}"
    ((seed != 0)) || for name in "$root"/demo/*.ini; do cmp "$name" "kestrel/${name##*/}"; done
  done

  echo "Refusing values"
  # All slips are shown at once.
  cat >values.yml <<'YAML'
kestrel_config:
  jobs: {}
  jobs.ini: [1]
  kestrel.ini:
    Sistem: {}
    UPS_16: {}
    System:
      { Nmae: x, Name: 4711, Location: "ööööööööööööööööö", Contact: "a\"b", Language: 256,
        DataLogRate: -1, EventLog: "on" }
    UPS_00: { Name: "a\nb" }
YAML
  local slip slips=("jobs is no file of the service" "jobs.ini must hold sections"
    "Sistem is not known, did you mean System?" "UPS_16 is not known"
    "System.Nmae is not known, did you mean Name?" "System.Name must be a text"
    "System.Location has 34 bytes, 32 fit" "System.Contact cannot hold a double quote"
    "System.Language must be 0 to 255" "System.DataLogRate must be 0 to 65535"
    "System.EventLog must be a number" "UPS_00.Name cannot hold")
  play "System.Name" "${always[@]}"
  for slip in "${slips[@]}"; do
    grep -qF -- "$slip" log || ansible_fail "The refusal does not say: $slip"
  done
  play "kestrel.ini is missing" -e @group_vars.yml -e '{kestrel_config: {jobs.ini: {}}}'
  play changed -e @group_vars.yml \
    -e '{kestrel_config: {kestrel.ini: {System: {EventLog: true, Language: "7"}}}}'
  [[ $(grep '^EventLog\|^Language' kestrel/kestrel.ini) == $'Language=7\nEventLog=1' ]] ||
    ansible_fail "A switch or a number from a template is another"
}

# The example of the page is accepted as it stands.
ansible_readme() {
  # shellcheck disable=SC2016
  sed -n '/^# host_vars/,/^```/ { /^[#`]/d; p }' "$root/$ansible_folder/README.md" >values.yml
  rm -r kestrel
  mkdir kestrel
  cp "$root/languages/lang_00.ini" "$root/demo/ups_shut.scr" kestrel
  play changed -e @values.yml -e "kestrel_dir=$PWD/kestrel" \
    -e "kestrel_check=$root/build/release/harrier-check"
  grep -q 'Rack A left' kestrel/kestrel.ini || ansible_fail "The example was not installed"
}

# save_in FOLDER
# The program loads the files and saves them. Whatever it shows is of no interest.
save_in() { (cd "$1" && "$root/build/release/harrier_probe" SaveINI </dev/null >/dev/null); }

# The page, section by section as a new user would follow it, on three folders in place of hosts.
ansible_page() {
  echo "Following docs/fleet.md"
  local host contact
  export GIT_AUTHOR_NAME=A GIT_AUTHOR_EMAIL=a@localhost GIT_COMMITTER_NAME=A
  export GIT_COMMITTER_EMAIL=a@localhost GIT_CONFIG_NOSYSTEM=1
  unset ANSIBLE_ROLES_PATH
  ansible_sections
  root_of_sections=$PWD/sections

  mkdir -p page/fleet/host_vars
  cd page
  for host in ups1 ups2 ups3; do
    mkdir -p "$host/opt/kestrel"
    cp -L "$root"/demo/*.ini "$root/demo/ups_shut.scr" "$host/opt/kestrel"
    sed -i "s/Server room/Server room of $host/" "$host/opt/kestrel/kestrel.ini"
    # All that the test adds to the page: the hosts are folders.
    cat >"fleet/host_vars/$host.yml" <<YAML
ansible_connection: local
ansible_become: false
kestrel_dir: $PWD/$host/opt/kestrel
kestrel_check: $PWD/fleet/tools/harrier-check
kestrel_service: ""
YAML
  done
  sed -i 's/^Password=""/Password="s3cret"/' ups3/opt/kestrel/kestrel.ini
  echo 'kestrel_secrets: { EmailConfig: { Password: "s3cret" } }' >>fleet/host_vars/ups3.yml
  # A damaged file.
  mkdir damaged
  sed 's/^\(Password=\)"s3cret"/\1"s3cret"\n; &\n[Other]\n&/' ups3/opt/kestrel/kestrel.ini >damaged/kestrel.ini
  printf '[EmailConfig]\r\nPassword="s3cret"\r' >>damaged/kestrel.ini
  mkdir before && cp -r ups? before

  section "A repository"
  cd fleet
  for host in ups1 ups2 ups3; do
    diff -r -x 'lang_*' -I '^Password=' "../$host/opt/kestrel" "hosts/$host" ||
      ansible_fail "$host was not fetched"
  done
  ! grep -r s3cret hosts || ansible_fail "A password was fetched"
  ansible-playbook fetch.yml --limit ups3 -e "kestrel_dir=${PWD%/*}/damaged" \
    -e "kestrel_folder=${PWD%/*}/fetched" >../log 2>&1 || ansible_fail "A damaged file was not fetched"
  diff <(sed 's/"s3cret"/""/' ../damaged/kestrel.ini) ../fetched/kestrel.ini ||
    ansible_fail "A password in a damaged file was fetched, or more than that is another"
  ! compgen -G "$TMPDIR/kestrel.*" >/dev/null || ansible_fail "A temporary file remained"
  ! ansible-playbook fetch.yml -e '{kestrel_secrets: {EmailConfig: {password: x}}}' >../log 2>&1 ||
    ansible_fail "A slip in kestrel_secrets was not refused"
  grep -q 'kestrel_secrets: EmailConfig.password is not known, did you mean Password' ../log ||
    ansible_fail "The slip is not named"
  [[ $(git ls-files hosts | wc -l) == 18 ]] || ansible_fail "Other files: $(git ls-files hosts)"
  # Whoever clones the repository has the whole role and all tools.
  [[ -z $(git status --short --ignored) ]] || ansible_fail "$(git status --short --ignored)"
  section "Check every change"
  ansible-lint --offline --strict -q site.yml fetch.yml
  [[ $(jq .counts.error build/ups?.json) == $'0\n0\n0' ]] || ansible_fail "The hosts have other findings"
  sed -i 's/^DataLogRate=.*/DataLogRate=70000/' hosts/ups2/kestrel.ini
  ! git commit -a -m Bad >../log 2>&1 || ansible_fail "The hook lets a bad change pass"
  grep -q '^hosts/ups2/kestrel.ini:11: error: ' ../log || ansible_fail "The hook shows no findings"
  mkdir ../build
  ! (cd .. && fleet/check.sh) 2>../log || ansible_fail "The check runs elsewhere"
  rmdir ../build || ansible_fail "The check removed the folder of another project"
  for job in .gitlab-ci.yml .github/workflows/check.yml; do
    python3 -c 'import sys, yaml; job = yaml.safe_load(open(sys.argv[1])); print("\n".join(
      job["check"]["script"] if "check" in job else
      [step["run"] for step in job["jobs"]["check"]["steps"] if "run" in step]))' "$job" >../job
    rm -r build
    ! sh -e ../job >../log 2>&1 || ansible_fail "$job lets a bad change pass"
    [[ $(jq -r '.findings[] | .file, .class' build/*.json) == $'hosts/ups2/kestrel.ini\nnumber-range' ]] ||
      ansible_fail "$job: no report"
  done
  git add hosts
  git restore --source=HEAD hosts
  ! git commit -m Bad >../log 2>&1 || ansible_fail "The hook checks other files than a commit has"
  git reset -q
  mkdir hosts/gone
  cp tools/lang_00.ini hosts/gone
  ./check.sh || ansible_fail "The check takes what is left of a host for a host"
  rm -r hosts/gone
  sh -e ../job

  # Groups come and go as well.
  rm hosts/ups1/group_00.ini
  sed 's/Rack A/Rack B/' hosts/ups2/group_00.ini >hosts/ups2/group_01.ini
  section "Change and roll out"
  grep -q '1 - .*System parameters' ../log || ansible_fail "The editor does not start"
  [[ -z $(git status --short) ]] || ansible_fail "Not all was committed: $(git status --short)"
  [[ ! -e ../ups1/opt/kestrel/group_00.ini && -e ../ups2/opt/kestrel/group_01.ini ]] ||
    ansible_fail "The groups did not come and go"
  contact='Contact="Night shift, ext. 4000"'
  for host in ups1 ups2 ups3; do
    [[ $(diff -r "../before/$host" "../$host" | grep '^>') == "> $contact" ]] ||
      ansible_fail "$host: $(diff -r "../before/$host" "../$host")"
  done

  # Drift is seen from a fresh clone, too.
  git clone -q . ../clone
  (cd ../clone && section "See drift" head) || ansible_fail "The page sees drift where there is none"
  sed -i 's/^Location=.*/Location="Cellar"/' ../ups2/opt/kestrel/kestrel.ini
  rm ../ups3/opt/kestrel/group_00.ini
  cp hosts/ups2/group_00.ini ../ups1/opt/kestrel
  ! (cd ../clone && section "See drift" head) || ansible_fail "The page sees no drift"
  [[ $(grep -c 'changed=[1-9]' ../clone/drift.log) == 3 ]] || ansible_fail "The page sees other drift"
  grep -q '^-Location="Cellar"' ../log || ansible_fail "The page does not show the drift"
  section "See drift" tail
  diff - <(git status --short --no-renames hosts) <<'STATUS' || ansible_fail "The drift was not fetched"
A  hosts/ups1/group_00.ini
M  hosts/ups2/kestrel.ini
D  hosts/ups3/group_00.ini
STATUS
  section "Go back"
  [[ $(grep -h '^Contact' ../ups?/opt/kestrel/kestrel.ini | uniq -c | sed 's/^ *//') == "1 $contact
2 Contact=\"Robin Hale, ext. 4120\"" ]] || ansible_fail "The hosts have other files after going back"
  [[ -z $(git status --short) ]] || ansible_fail "Not all is back: $(git status --short)"
  for host in ups1 ups2 ups3; do
    diff -r -x 'lang_*' -I '^Password=' "../$host/opt/kestrel" "hosts/$host" || ansible_fail "$host is another"
  done
  [[ $(cd hosts && echo */group_*) == "ups2/group_00.ini ups3/group_00.ini" ]] ||
    ansible_fail "Other groups: $(ls hosts/*)"
  cd ../..
}

# Makes a shell script of each section of the page.
ansible_sections() {
  mkdir sections
  awk '
    /^## / { script = "sections/" substr($0, 4); print "echo" >script; next }
    /^    .* ! grep / { print "if " substr($0, 5) "; then :; else exit 1; fi" >script; next }
    /^    / { print substr($0, 5) >script }' "$root/docs/fleet.md"
  sed -i "s|/usr/share/doc/harrier/|$root/|; s|/opt/kestrel/harrier-check|$root/build/release/harrier-check|
    s|/usr/share/harrier/languages/|$root/languages/|g; s|/usr/sbin/harrier|sh $PWD/harrier|" sections/*
  sed "s|/opt/kestrel|$root/build/release|" "$root/cmake/debian/harrier" >harrier
  [[ $(find sections -type f | wc -l) == 5 ]] || ansible_fail "The page has other sections"
}

# section NAME [head|tail]
# Runs a section of the page in the current folder: all of it, up to the exit status for a timer, or
# what follows that.
section() {
  local part
  case ${2-} in
    head) part='/^if /q' ;;
    tail) part='1,/^if /d' ;;
    *) part= ;;
  esac
  sed "$part" "$root_of_sections/$1" >"$root_of_sections/part"
  bash -eu "$root_of_sections/part" </dev/null >"$root_of_sections/../page/log" 2>&1 || {
    [[ ${2-} == head ]] || cat "$root_of_sections/../page/log"
    return 1
  }
}

ansible_role
