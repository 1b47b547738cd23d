#!/usr/bin/env python3
"""Prints a random kestrel_config, for the tests: values of every kind, up to their widths.

usage: random_values.py SEED TABLE
"""
import random
import sys

import yaml

from to_variables import yaml_value

PIECES = [" ", ";", "#", "=", "[x]", "'", "\\", "\t", "{{ x }}", "{% if %}", ": ", "%s", "\u00e9",
          "\u2028", "\u4e2d", "\U0001f50b", "a", "B", "7", "null", "~", "\x7f"]


def text(width):
    wanted = random.choice([0, 1, width // 2, width, width])
    made = ""
    while True:
        piece = random.choice(PIECES)
        if len((made + piece).encode()) > wanted:
            return made + "x" * (wanted - len(made.encode()))
        made += piece


def value(name, section, key, field):
    if section.startswith("Schedule_"):  # a code, not any text
        return "%08X%04X%02X%02X01" % (random.randrange(2**31), random.randrange(16),
                                       random.randint(1, 7), random.randint(1, 4))
    if "text" in field:
        return text(field["text"])
    if name == "jobs.ini" and key == "Shutdown":  # not every job can have it
        return 0
    return random.choice([0, 1, field["number"], random.randint(0, field["number"])])


def entry(name, section, family):
    values = {key: value(name, section, key, field) for key, field in family["keys"].items()}
    first = next(iter(values))
    if family.get("only_used") or section == "Common":  # in use by its first value
        values[first] = values[first] or ("x" if "text" in family["keys"][first] else 1)
    if family.get("zeros") is False:  # members of a group have no gaps
        values = dict(list(values.items())[:random.randint(0, 8)])
        values = {key: number or 1 for key, number in values.items()}
    else:  # absent ones are blank
        values = {k: v for k, v in values.items() if k == first or random.random() < 0.7}
    return values


def show(name, families):
    print("  %s:" % name)
    for family in families:
        count = family.get("entries")
        used = random.randint(0, count) if family.get("only_used") else count
        for i in range(used) if count else [None]:
            section = family["section"] + ("%02d" % i if count else "")
            print("    %s:" % section)
            for key, number in entry(name, section, family).items():
                print("      %s: %s" % (key, yaml_value(number)))


def main(seed, table):
    random.seed(int(seed))
    with open(table, encoding="utf-8") as file:
        form = yaml.safe_load(file)["kestrel_format"]
    print("kestrel_config:")
    for name, families in form.items():
        if name != "group_NN.ini":
            show(name, families)
    for i in range(random.randint(0, 3)):
        show("group_%02d.ini" % i, form["group_NN.ini"])


if __name__ == "__main__":
    main(*sys.argv[1:])
