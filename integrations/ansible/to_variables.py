#!/usr/bin/env python3
"""Prints the files of a folder that Harrier has saved as the variable kestrel_config of the role.

usage: to_variables.py FOLDER

Values that are 0 or empty are left out: the role writes them all the same.
"""
import json
import os
import re
import sys

NAME = re.compile(r"(kestrel|jobs|jobsSTS|sensor|group_0[0-9])\.ini")


def read_sections(path):
    """Returns the keys of each section whose values are not blank. Texts keep their type."""
    sections = {}
    keys = {}
    with open(path, encoding="utf-8", newline="\n") as file:
        for line in file:
            header = re.match(r"\[(.*?)\]", line)
            key, equals, value = line.rstrip("\n").partition("=")
            if header:
                keys = sections.setdefault(header.group(1), {})
            elif equals and not line.startswith(";"):
                text = re.fullmatch('"([^"]*)"', value)
                keys[key] = text.group(1) if text else int(value)
    return {s: {k: v for k, v in keys.items() if v not in ("", 0)} for s, keys in sections.items()}


def yaml_value(value):
    if isinstance(value, int):
        return str(value)
    # Ansible takes braces for a template unless they are marked. YAML folds or refuses some
    # characters unless they are escaped.
    text = re.sub("[\x7f-\x9f\u2028\u2029\ufeff\ufffe\uffff]", escaped,
                  json.dumps(value, ensure_ascii=False))
    return ("!unsafe " if re.search("{[{%#]", value) else "") + text


def escaped(found):
    return "\\u%04x" % ord(found.group())


def main(folder):
    print("kestrel_config:")
    for name in sorted(filter(NAME.fullmatch, os.listdir(folder))):
        print("  %s:" % name)
        for section, keys in read_sections(os.path.join(folder, name)).items():
            if keys:
                print("    %s:" % section)
            for key, value in keys.items():
                print("      %s: %s" % (key, yaml_value(value)))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__.strip())
    try:
        main(sys.argv[1])
    except (OSError, ValueError) as error:
        sys.exit("to_variables.py: %s" % error)
