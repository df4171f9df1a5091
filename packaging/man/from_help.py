#!/usr/bin/env python3
"""Writes gpbtool's manual page: the text of a template, with the options of every subcommand as --help lists them.

usage: from_help.py TEMPLATE PROGRAM VERSION OUTPUT.gz
"""
import gzip
import os
import re
import subprocess
import sys

# A line of a list in the help text: a term, and after two blanks or on lines of their own what it means.
TERM = re.compile(r"^  (\S.*?)(?:\s{2,}(\S.*))?$")


def help_of(program, words):
    environment = dict(os.environ, LC_ALL="C")
    return subprocess.run([program, *words, "--help"], check=True, capture_output=True, text=True,
                          env=environment).stdout


def sections_of(text):
    """The help text as (introduction, {heading: [(term, meaning)]}), the usage line left out."""
    introduction, lists, current = [], {}, None
    for line in text.splitlines():
        if line.startswith("Usage:"):
            continue
        if re.match(r"^[A-Z][A-Za-z ]*:$", line):
            current = lists.setdefault(line[:-1], [])
        elif current is None:
            if line:
                introduction.append(line)
        elif line.startswith("   ") and current:
            term, meaning = current[-1]
            current[-1] = (term, f"{meaning} {line.strip()}".strip())
        elif (match := TERM.match(line)):
            current.append((match.group(1), match.group(2) or ""))
        elif line:
            current.append(("", line.strip()))
    return " ".join(introduction), lists


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def list_lines(entries):
    lines = []
    for term, meaning in entries:
        lines += [".TP", f".B {escaped(term)}", escaped(meaning)] if term else [".P", escaped(meaning)]
    return lines


def command_lines(program, words):
    """One subsection per subcommand that does something, in the order of the help text."""
    introduction, lists = sections_of(help_of(program, words))
    subcommands = lists.get("Subcommands", [])
    if subcommands:
        return [line for name, _ in subcommands for line in command_lines(program, [*words, name])]
    lines = [f'.SS "gpbtool {" ".join(words)}"', escaped(introduction) + "."]
    for heading in ("Positionals", "Options"):
        lines += list_lines(lists.get(heading, []))
    return lines


def main():
    template, program, version, output = sys.argv[1:]
    _, lists = sections_of(help_of(program, []))
    parts = {
        "@VERSION@": version,
        "@COMMANDS@": "\n".join(command_lines(program, [])),
        "@EXIT_STATUS@": "\n".join(list_lines(lists["Exit codes"])),
    }
    with open(template, encoding="utf-8") as file:
        page = file.read()
    for mark, text in parts.items():
        page = page.replace(mark, text)
    # Neither the time nor a name goes into the archive: the same page gives the same bytes.
    with open(output, "wb") as file, gzip.GzipFile("", "wb", 9, file, mtime=0) as archive:
        archive.write(page.encode("utf-8"))


if __name__ == "__main__":
    main()
