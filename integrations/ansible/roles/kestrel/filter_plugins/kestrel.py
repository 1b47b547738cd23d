"""The files of a folder, and those of the variable kestrel_config.

The table `form` (kestrel_format in vars/main.yml) comes from the program.
"""
import base64
import difflib
import os
import re
from collections.abc import Mapping


def families(name, form):
    """Returns the rows of the table for a file, None for a name that no file has."""
    if re.fullmatch(r"group_0[0-9]\.ini", name):
        name = "group_NN.ini"
    elif name == "group_NN.ini":
        return None
    return form.get(name)


def section_names(family):
    if "entries" not in family:
        return [family["section"]]
    return ["%s%02d" % (family["section"], i) for i in range(family["entries"])]


def plain(value):
    """Returns the text of a value that is encrypted on its own, other values as they are."""
    return str(value) if getattr(value, "__ENCRYPTED__", False) else value


def number_of(value):
    """Returns a number, None for what is none. Results of templates are texts."""
    value = plain(value)
    if isinstance(value, bool):
        return int(value)
    if isinstance(value, int):
        return value
    if isinstance(value, str) and re.fullmatch(r"[0-9]+", value, re.ASCII):
        return int(value)
    return None


def value_fault(value, field):
    """Returns what is wrong with a value, without the value itself: it may be a password."""
    if "number" in field:
        number = number_of(value)
        if number is None:
            return "must be a number, or true or false for a switch"
        if not 0 <= number <= field["number"]:
            return "must be 0 to %d" % field["number"]
        return None
    value = plain(value)
    if not isinstance(value, str):
        return "must be a text: put it between quotes"
    size = len(value.encode("utf-8", "surrogateescape"))
    if size > field["text"]:
        return "has %d bytes, %d fit" % (size, field["text"])
    if re.search('["\n\0]', value):
        return "cannot hold a double quote, a line end or a NUL"
    return None


def unknown(what, name, known):
    near = difflib.get_close_matches(str(name), known, 1)
    return "%s is not known%s" % (what, ", did you mean %s?" % near[0] if near else "")


def section_faults(where, values, keys):
    if not isinstance(values or {}, Mapping):
        yield where + " must hold keys and values"
        return
    for key, value in (values or {}).items():
        what = "%s.%s" % (where, key)
        if key not in keys:
            yield unknown(what, key, list(keys))
            continue
        fault = value_fault(value, keys[key])
        if fault:
            yield "%s %s" % (what, fault)


def file_faults(name, sections, rows):
    if not isinstance(sections or {}, Mapping):
        yield name + " must hold sections"
        return
    known = {section: row["keys"] for row in rows for section in section_names(row)}
    for section, values in (sections or {}).items():
        where = "%s: %s" % (name, section)
        if section in known:
            yield from section_faults(where, values, known[section])
        else:
            yield unknown(where, section, list(known))


def kestrel_faults(config, form):
    """Returns what the template would have to leave out or to change, a sentence each."""
    if not isinstance(config, Mapping):
        return ["kestrel_config must hold files"]
    faults = [] if "kestrel.ini" in config else ["kestrel.ini is missing"]
    for name, sections in config.items():
        rows = families(str(name), form)
        if rows is None:
            faults.append("%s is no file of the service" % name)
        else:
            faults.extend(file_faults(name, sections, rows))
    return faults


def kestrel_secret_faults(secrets, form):
    """Returns what kestrel.ini cannot hold of kestrel_secrets, a sentence each."""
    return list(file_faults("kestrel_secrets", secrets, form["kestrel.ini"]))


def kestrel_blanks(secrets, form):
    """Returns all sections of kestrel.ini, each with the keys that `secrets` has there, and what is
    written for no value."""
    return {
        name: {
            key: '""' if "text" in row["keys"][key] else "0"
            for key in (secrets or {}).get(name) or {}
        }
        for row in form["kestrel.ini"]
        for name in section_names(row)
    }


def line_of(key, value, field):
    if "text" in field:
        return '%s="%s"' % (key, value or field.get("default", ""))
    return "%s=%d" % (key, number_of(value) or field.get("default", 0))


def is_blank(value, field):
    return value == "" if "text" in field else number_of(value) == 0


def entry_lines(values, family):
    """Returns the lines of a section, None if it is not written."""
    used = {k: v for k, v in values.items() if not is_blank(v, family["keys"][k])}
    if family.get("only_used") and not used:
        return None
    return [
        line_of(key, used.get(key, "" if "text" in field else 0), field)
        for key, field in family["keys"].items()
        if key in used or family.get("zeros", True)
    ]


def kestrel_sections(config, name, form):
    """Returns the sections of a file in the order of a save, each with its lines."""
    sections = config[name] or {}
    written = []
    for family in families(name, form):
        for section in section_names(family):
            lines = entry_lines(sections.get(section) or {}, family)
            if lines is not None:
                written.append({"name": section, "lines": lines})
    return written


def kestrel_read(folder):
    """Returns the bytes of the files of the service in a folder by their names, in base64."""
    known = re.compile(r"(kestrel|jobs|jobsSTS|sensor|group_0[0-9])\.ini|ups_shut\.scr")
    files = {}
    for name in sorted(filter(known.fullmatch, os.listdir(folder) if os.path.isdir(folder) else [])):
        with open(os.path.join(folder, name), "rb") as file:
            files[name] = base64.b64encode(file.read()).decode()
    return files


class FilterModule:
    def filters(self):
        return {
            "kestrel_blanks": kestrel_blanks,
            "kestrel_faults": kestrel_faults,
            "kestrel_read": kestrel_read,
            "kestrel_secret_faults": kestrel_secret_faults,
            "kestrel_sections": kestrel_sections,
        }
