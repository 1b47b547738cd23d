#!/usr/bin/python
"""Checks a configuration of Kestrel as a whole and installs it."""
import base64
import errno
import fcntl
import grp
import json
import os
import pwd
import random
import re
import shutil
import string

from ansible.module_utils.basic import AnsibleModule

DOCUMENTATION = r"""
module: kestrel_install
short_description: Check a configuration of Kestrel and install it
description:
  - Unpacks the new files in the staging folder, adds those that the folder of the service keeps,
    and runs harrier-check on all of them.
  - Installs nothing if the check refuses. Writes all files before it swaps the first.
  - Supports check mode, with the check, and diff mode, without passwords.
options:
  staged: {description: Folder with the new files in files.json., type: path, required: true}
  folder: {description: Folder of Kestrel's files., type: path, required: true}
  secrets: {description: Sections and keys of kestrel.ini with their values., type: dict}
  strict: {description: Whether warnings refuse too., type: bool, default: true}
  remove_groups: {description: Whether other group files are removed., type: bool, default: true}
  owner: {description: Owner of the files., type: str}
  group: {description: Group of the files., type: str}
  mode: {description: Permissions of the files., type: str, default: "0640"}
  script_mode: {description: Permissions of ups_shut.scr., type: str, default: "0750"}
  check: {description: The program harrier-check., type: str, default: harrier-check}
  languages: {description: Folder with language files., type: path}
author: Harrier developers
"""

SCRIPT = "ups_shut.scr"
GROUPS = ["group_%02d.ini" % i for i in range(10)]
# In the order of a save.
FILES = ["kestrel.ini", "jobs.ini", "jobsSTS.ini"] + GROUPS + ["sensor.ini", SCRIPT]
# As harrier-check hides them in findings.
SECRET_KEYS = ("Login", "Password", "PasswordProtection", "SNMPGetComm", "SNMPSetComm")


class Refusal(Exception):
    """What the administrator has to mend. `result` goes into the result of the module."""

    def __init__(self, message, **result):
        super().__init__(message)
        self.result = result


def contents(path):
    """Returns the bytes of a file, None if there is none."""
    try:
        with open(path, "rb") as file:
            return file.read()
    except IOError as error:
        if error.errno == errno.ENOENT:
            return None
        raise


def write_whole(path, data):
    with open(path, "wb") as file:
        file.write(data)
        file.flush()
        os.fsync(file.fileno())


def flush_folder(path):
    descriptor = os.open(path, os.O_RDONLY | os.O_DIRECTORY)
    try:
        os.fsync(descriptor)
    finally:
        os.close(descriptor)


# --- The passwords --------------------------------------------------------------------------------


def with_secrets(data, secrets):
    """Returns kestrel.ini with the values of `secrets`. A save writes every key of a section, so a
    key that is missing is a slip."""
    lines = data.split(b"\n")
    missing = {(section, key) for section, keys in secrets.items() for key in keys or {}}
    section = ""
    for i, line in enumerate(lines):
        text = line.decode("utf-8", "surrogateescape")
        header = re.match(r"\[(.*)\]", text)
        if header:
            section = header.group(1)
        key = text.split("=", 1)[0]
        if header or key not in (secrets.get(section) or {}):
            continue
        value = secrets[section][key]
        if isinstance(value, bool):
            value = int(value)
        elif text.startswith('%s="' % key):
            value = '"%s"' % value
        lines[i] = ("%s=%s" % (key, value)).encode("utf-8", "surrogateescape")
        missing.discard((section, key))
    if missing:
        names = ", ".join(sorted("%s.%s" % name for name in missing))
        raise Refusal("kestrel_secrets: kestrel.ini has no %s" % names)
    return b"\n".join(lines)


def without_secrets(data, before):
    """Returns the text of a file to show. A password that is not in the bytes `before` is hidden in
    another way."""
    values = secret_values(before)
    shown = []
    for name, line in named_lines(data):
        if is_secret(name) and line.split("=", 1)[1] not in ('""', "0"):
            line = name[1] + "=" + ("(hidden)" if values.get(name) == line else "(hidden, another)")
        shown.append(line)
    return "\n".join(shown)


def is_secret(name):
    """Whether a line of this section and key can hold a password, as a remark too."""
    return name[1].strip("; #\t") in SECRET_KEYS


def named_lines(data):
    """Yields the lines, each with its section and key."""
    section = ""
    for line in (data or b"").decode("utf-8", "replace").split("\n"):
        header = re.match(r"\[(.*)\]", line)
        if header:
            section = header.group(1)
        yield (section, line.split("=", 1)[0] if "=" in line else ""), line


def secret_values(data):
    return {name: line for name, line in named_lines(data) if is_secret(name)}


# --- The check ------------------------------------------------------------------------------------


def check_program(module):
    program = module.params["check"]
    if "/" in program:
        return program
    found = module.get_bin_path(program, opt_dirs=[module.params["folder"]])
    if not found:
        raise Refusal("There is no %s on this host: install Harrier, or set kestrel_check" % program)
    return found


def sentence(finding, staged):
    file = os.path.relpath(finding["file"], staged)
    return "%s:%d: %s: %s [%s]" % (
        file, finding["line"], finding["level"], finding["message"], finding["class"])


def check(module, staged):
    """Returns the findings about the staged folder, a sentence each. Refuses as harrier-check does."""
    command = [check_program(module), "--format=json"]
    if module.params["strict"]:
        command.append("--strict")
    status, output, errors = module.run_command(command + [staged])
    if status not in (0, 1):
        raise Refusal("The files could not be checked: %s" % (errors.strip() or "status %d" % status))
    try:
        findings = [sentence(finding, staged) for finding in json.loads(output)["findings"]]
    except (ValueError, KeyError):
        raise Refusal("%s printed no findings: %s" % (command[0], errors.strip()))
    if status == 1:
        raise Refusal("harrier-check refuses the files, so nothing was changed", findings=findings)
    return findings


# --- The files ------------------------------------------------------------------------------------


class Attributes:
    """Owner, group and permissions that a file shall have."""

    def __init__(self, module, path, model):
        params = module.params
        # A new file gets the owner of kestrel.ini, or of the folder if there is none either.
        like = next(p for p in (path, model, params["folder"]) if os.path.exists(p))
        info = os.stat(like)
        self.uid = pwd.getpwnam(params["owner"]).pw_uid if params["owner"] else info.st_uid
        self.gid = grp.getgrnam(params["group"]).gr_gid if params["group"] else info.st_gid
        is_script = os.path.basename(path) == SCRIPT
        self.mode = int(params["script_mode" if is_script else "mode"], 8)

    def __str__(self):
        return "%d:%d %04o" % (self.uid, self.gid, self.mode)

    def set_on(self, path):
        info = os.stat(path)
        if (info.st_uid, info.st_gid) != (self.uid, self.gid):
            os.chown(path, self.uid, self.gid)  # may clear bits of the mode
        os.chmod(path, self.mode)

    @staticmethod
    def text_of(path):
        info = os.stat(path)
        return "%d:%d %04o" % (info.st_uid, info.st_gid, info.st_mode & 0o7777)


class Change:
    """A file as it is and as it shall be; `new` is None for a file that goes."""

    def __init__(self, module, name, new):
        self.name = name
        self.entry = os.path.join(module.params["folder"], name)
        self.path = os.path.realpath(self.entry)  # a link stays a link
        self.old = contents(self.path)
        self.new = new
        self.written = None
        self.attributes = None
        if new is not None:
            model = os.path.join(module.params["folder"], "kestrel.ini")
            self.attributes = Attributes(module, self.path, model)

    def other_bytes(self):
        return self.old != self.new

    def other_attributes(self):
        return (self.old is not None and self.new is not None and
                Attributes.text_of(self.path) != str(self.attributes))

    def diffs(self):
        """Returns what --diff shows."""
        shown = []
        if self.other_bytes():
            shown.append({
                "before": without_secrets(self.old, self.old),
                "after": without_secrets(self.new, self.old),
                "before_header": self.entry if self.old is not None else "/dev/null",
                "after_header": self.entry if self.new is not None else "/dev/null",
            })
        if self.other_attributes():
            header = self.entry + " (owner, group, permissions)"
            shown.append({
                "before": Attributes.text_of(self.path) + "\n",
                "after": str(self.attributes) + "\n",
                "before_header": header,
                "after_header": header,
            })
        return shown

    def write(self):
        """Writes the new bytes beside the file, under a name that harrier-check knows."""
        letters = "".join(random.SystemRandom().choice(string.ascii_letters) for _ in range(6))
        written = "%s.%s" % (self.path, letters)
        descriptor = os.open(written, os.O_CREAT | os.O_EXCL | os.O_WRONLY, 0o600)
        os.close(descriptor)
        self.written = written
        write_whole(written, self.new)
        if self.old is not None:
            copy_extended(self.path, written)
        self.attributes.set_on(written)

    def swap(self, module):
        if self.new is None:
            os.unlink(self.entry)
        elif self.written:
            os.rename(self.written, self.path)
            self.written = None
            if self.old is None:
                module.set_default_selinux_context(self.path, False)
        else:
            self.attributes.set_on(self.path)
        flush_folder(os.path.dirname(self.path))

    def clean_up(self):
        if self.written:
            os.unlink(self.written)


def copy_extended(source, target):
    """Copies access control lists and the like, as far as the file system has them."""
    try:
        for name in os.listxattr(source):
            os.setxattr(target, name, os.getxattr(source, name))
    except OSError as error:
        if error.errno not in (errno.ENOTSUP, errno.EPERM):
            raise


def unpack(staged):
    """Writes the new files into the staging folder. Returns their names in the order of a save."""
    with open(os.path.join(staged, "files.json"), encoding="ascii") as file:
        files = json.load(file)
    for name, data in files.items():
        write_whole(os.path.join(staged, name), base64.b64decode(data))
    return [name for name in FILES if name in files]


def complete(module, staged, names):
    """Copies what the folder keeps and the check needs beside the staged files."""
    folder = module.params["folder"]
    kept = ["jobs.ini", "jobsSTS.ini", "sensor.ini", SCRIPT]
    if not module.params["remove_groups"]:
        kept += GROUPS
    for name in kept:
        if name not in names and os.path.exists(os.path.join(folder, name)):
            shutil.copy2(os.path.join(folder, name), staged)
    for path in language_files(folder) or language_files(module.params["languages"]):
        shutil.copy2(path, staged)


def language_files(folder):
    names = os.listdir(folder) if os.path.isdir(folder or "") else []
    paths = [os.path.join(folder, n) for n in names if re.match(r"lang_[0-9][0-9]\.ini$", n)]
    return [path for path in paths if os.path.exists(path)]


def lock(module, folder):
    """Keeps editors away that lock the folder while they run, until the module ends."""
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except IOError as error:
        if error.errno in (errno.EAGAIN, errno.EWOULDBLOCK):
            raise Refusal("Somebody is editing the files in %s: try again later" % folder)
        # Some file systems have no locks.
        module.warn("%s cannot be locked, so nothing keeps an editor away: %s"
                    % (folder, error.strerror))


def install(module, changes):
    """Writes all files, then swaps them, so that a full disk changes nothing."""
    try:
        for change in changes:
            if change.new is not None and change.other_bytes():
                change.write()
        for change in changes:
            change.swap(module)
    finally:
        for change in changes:
            change.clean_up()


def refuse_modes(params):
    """YAML takes 0640 without quotes for an octal number, which arrives here as 416."""
    for name in ("mode", "script_mode"):
        if not re.match(r"0[0-7]{3}$", params[name]):
            raise Refusal('kestrel_%s must be four octal digits between quotes, such as "0640", not %s'
                          % (name, params[name]))


def run(module):
    staged, folder = module.params["staged"], module.params["folder"]
    refuse_modes(module.params)
    if not os.path.isdir(folder):
        raise Refusal("There is no folder %s: is the service installed?" % folder)
    names = unpack(staged)
    if "kestrel.ini" not in names:
        raise Refusal("There is no kestrel.ini for this host")
    if not module.check_mode:
        lock(module, folder)
    if module.params["secrets"]:
        path = os.path.join(staged, "kestrel.ini")
        write_whole(path, with_secrets(contents(path), module.params["secrets"]))
    changes = [Change(module, name, contents(os.path.join(staged, name))) for name in names]
    for change in changes:  # the check looks at permissions too
        change.attributes.set_on(os.path.join(staged, change.name))
    complete(module, staged, names)
    findings = check(module, staged)
    if module.params["remove_groups"]:
        surplus = [n for n in GROUPS if n not in names and os.path.lexists(os.path.join(folder, n))]
        changes += [Change(module, name, None) for name in surplus]
    changes = [c for c in changes if c.other_bytes() or c.other_attributes() or c.new is None]
    result = {
        "changed": bool(changes),
        "files": [change.name for change in changes if change.new is not None],
        "removed": [change.name for change in changes if change.new is None],
        "findings": findings,
        "diff": [diff for change in changes for diff in change.diffs()],
    }
    if not module.check_mode:
        install(module, changes)
    return result


def main():
    module = AnsibleModule(
        {
            "staged": {"type": "path", "required": True},
            "folder": {"type": "path", "required": True},
            "secrets": {"type": "dict", "no_log": True},
            "strict": {"type": "bool", "default": True},
            "remove_groups": {"type": "bool", "default": True},
            "owner": {"type": "str"},
            "group": {"type": "str"},
            "mode": {"type": "str", "default": "0640"},
            "script_mode": {"type": "str", "default": "0750"},
            "check": {"type": "str", "default": "harrier-check"},
            "languages": {"type": "path"},
        },
        supports_check_mode=True,
    )
    os.umask(0o077)
    try:
        result = run(module)
    except Refusal as refusal:
        module.fail_json(msg=str(refusal), **refusal.result)
    except (OSError, KeyError) as error:
        module.fail_json(msg="The files could not be installed: %s" % error)
    for finding in result["findings"]:
        if ": note: " not in finding:
            module.warn(finding)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
