#!/usr/bin/env bash
# Tests the Ansible role and the page docs/fleet.md, over local connections on folders. Alone, or
# sourced by a script that calls `ansible_role` in the root of the tree.
#
# ANSIBLE_ROUNDS in the environment is the number of random configurations, 3 by default.
set -euo pipefail

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
  umask 022
  mkdir home

  echo "Linting the role"
  (cd "$root/$ansible_folder" && ansible-lint --offline --strict --profile production -q .)
  (cd "$root" && shellcheck -x "$ansible_folder/test.sh")
  ansible_role_steps
  ansible_same_bytes
  ansible_page
  echo "The role and its page passed"
}

ansible_fail() {
  echo "$*" >&2
  [[ ! -f log ]] || tail -n 60 log >&2
  exit 1
}

# play EXPECTED [OPTION...]
# Runs the role on the folder kestrel. EXPECTED is "same", "changed", or a text of the failure.
play() {
  local expected=$1 status=0
  shift
  ansible-playbook -i localhost, site.yml "$@" >log 2>&1 || status=$?
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
  play 'EmailConfig.Password: the value is not shown [text-cut]' "${always[@]}"
  ! grep -q 's3cret' log || ansible_fail "A finding shows the password"
  cp good.ini source/kestrel.ini
  play 'secret-readable' "${always[@]}" -e kestrel_mode=0644
  play 'There is no no-such-check on this host' "${always[@]}" -e kestrel_check=no-such-check
  play 'printed no findings' "${always[@]}" -e kestrel_check=/bin/false
  play 'is the service installed?' "${always[@]}" -e "kestrel_dir=$PWD/nowhere"
  play 'There is no kestrel.ini' "${always[@]}" -e "kestrel_folder=$PWD/home"
  play 'Set either' "${always[@]}" -e kestrel_folder=
  (flock 9 && play 'Somebody is editing' "${always[@]}") 9<kestrel
  expect_state before "by a refusal"

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
  cat >secrets.yml <<'YAML'
kestrel_secrets:
  EmailConfig: { Password: "s3cret" }
  UPS_01: { SNMPSetComm: "pr1vate", Password: 762 }
YAML
  play changed "${always[@]}" -e @secrets.yml --diff -vvv
  ! grep -q 's3cret\|pr1vate' log || ansible_fail "A password is shown"
  local others
  others=$(diff source/kestrel.ini kestrel/kestrel.ini | grep '^>' | tr '\n' ' ' || true)
  [[ $others == '> Password="s3cret" > Password=762 > SNMPSetComm="pr1vate" ' ]] ||
    ansible_fail "Other passwords: $others"
  play same "${always[@]}" -e @secrets.yml
  play 'kestrel.ini has no UPS_09.Password' "${always[@]}" \
    -e '{kestrel_secrets: {UPS_09: {Password: x}}}'
  play 'a character that no value can hold' "${always[@]}" \
    -e '{kestrel_secrets: {EmailConfig: {Password: "x\"y"}}}'

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

# save_in FOLDER
# The program loads the files and saves them. Whatever it shows is of no interest.
save_in() { (cd "$1" && "$root/build/release/tests/harrier_probe" SaveINI </dev/null >/dev/null); }

ansible_page() { :; }

if [[ ${BASH_SOURCE[0]} == "$0" ]]; then ansible_role; fi
