#!/usr/bin/env python3
"""Doxygen's filter for Markdown: gives each heading the anchor that code-hosting sites give it, and points links there.

Doxygen numbers headings by itself, so that `page.md#heading` leads nowhere. Anchors are global in Doxygen; each gets
the name of its page in front.

usage: headings.py FILE
"""
import os
import re
import sys


def page_of(path):
    return os.path.splitext(os.path.basename(path))[0].lower()


def slug_of(heading):
    text = re.sub(r"[`*]|\[([^]]*)\]\([^)]*\)", r"\1", heading).strip().lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def main():
    path = sys.argv[1]
    page = page_of(path)
    in_code = False
    for line in open(path, encoding="utf-8"):
        if line.startswith("```"):
            in_code = not in_code
        if not in_code:
            heading = re.match(r"^(#{2,6} )(.*)\n$", line)
            if heading:
                line = f"{heading[1]}{heading[2]} {{#{page}-{slug_of(heading[2])}}}\n"
            line = re.sub(r"\]\(#([^)]+)\)", rf"](#{page}-\1)", line)
            line = re.sub(r"\]\(([^)#:]+\.md)#([^)]+)\)",
                          lambda link: f"](#{page_of(link[1])}-{link[2]})", line)
        sys.stdout.write(line)


if __name__ == "__main__":
    main()
