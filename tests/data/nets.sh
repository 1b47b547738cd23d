# shellcheck shell=sh
# What the commands of the rows in nets.txt may call. They run in the folder of the program.

# shellcheck disable=SC2034  # the rows use it
all='kestrel.ini jobs.ini jobsSTS.ini group_00.ini sensor.ini'

# Everything but the contents of files: types, modes, links and owners.
files() { find . -path ./rescue -prune -o -name '[^.]*' -printf '%p %y %m %n %U:%G %l\n' | sort; }
identity() { stat -c '%n %i %y %z' ./*.ini 2>/dev/null; }

# Notes what there is; the functions below compare with it.
note() { files >rescue/.files && identity >rescue/.identity || true; }
same_files() { files | diff rescue/.files -; }
touched() { test "$(identity | diff rescue/.identity - | sed -n 's|^> \./\([^ ]*\).*|\1|p' | xargs)" = "$*"; }
had() { grep -q "^./$1 $(stat -c %i "$2") " rescue/.identity; }
in_place() { had "$1" "$1"; }
swapped() { ! in_place "$1"; }

# Skips the row where the file system cannot do what is asked.
needs() { "$@" 2>/dev/null || { touch rescue/.skip && exit 1; }; }

# "!" would hide the failure of a check.
no() { ! "$@"; }
mode() { test "$(stat -c %a "$2")" = "$1"; }
# Whether a save has changed the contents of the files.
old() { ! grep -l -e changed -e 4711 "$@"; }
new() { for file; do grep -q -e changed -e 4711 "$file" || return 1; done; }

# A group file whose group leaves.
leaves() { sed 's/^Name=.*/Name="leaves"/' "$1"; }
# The file "theirs", which everybody may write, and a link to it in the place of the file or back.
plant() { cp kestrel.ini theirs && chmod 666 theirs && ln -s theirs link && chmod 600 kestrel.ini; }
exchange() { mv kestrel.ini other && mv link kestrel.ini && mv other link; }
unmixed() {
  mode 666 theirs && for file in kestrel.ini link; do test -L "$file" || mode 600 "$file" || return 1; done
}
