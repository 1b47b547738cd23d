#!/usr/bin/python
"""Copies kestrel.ini without its passwords."""
import re

from ansible.module_utils.basic import AnsibleModule

DOCUMENTATION = r"""
module: kestrel_blank
short_description: Copy kestrel.ini without some of its values
description:
  - Empties the values wherever they stand, also in remarks and in a section that stands twice.
options:
  source: {description: The file., type: path, required: true}
  target: {description: The copy., type: path, required: true}
  blanks:
    description: All sections that the file can have, each with the keys to empty and what is written.
    type: dict
    required: true
author: Harrier developers
"""


def blanked(data, blanks):
    """Returns the bytes of the file with other values. A header of no known section leaves the one
    before open, as the service reads it."""
    section = ""
    lines = data.decode("latin-1").split("\n")  # a character for each byte
    for i, line in enumerate(lines):
        header = re.match(r"\[([^]]*)\]", line)
        if header and header.group(1) in blanks:
            section = header.group(1)
        key, equals, value = line.partition("=")
        blank = blanks.get(section, {}).get(key.strip("; #\t"))
        if equals and blank is not None:
            lines[i] = key + equals + blank + ("\r" if value.endswith("\r") else "")
    return "\n".join(lines).encode("latin-1")


def main():
    module = AnsibleModule({
        "source": {"type": "path", "required": True},
        "target": {"type": "path", "required": True},
        # The keys are no secrets.
        "blanks": {"type": "dict", "required": True, "no_log": False},
    })
    try:
        with open(module.params["source"], "rb") as file:
            data = file.read()
        with open(module.params["target"], "wb") as file:
            file.write(blanked(data, module.params["blanks"]))
    except (IOError, OSError) as error:
        module.fail_json(msg="kestrel.ini could not be copied: %s" % error)
    module.exit_json(changed=True)


if __name__ == "__main__":
    main()
