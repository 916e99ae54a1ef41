#!/usr/bin/env python3
"""Checks that the API reference documents exactly the exports of the header,
each with the header's prototype, and that each has a result style.

usage: check_api_doc.py HEADER API_MD
"""
import os
import re
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tools"))
import make_api_doc  # noqa: E402

header, document = sys.argv[1:3]
declared = make_api_doc.declared(header)
text = open(document, encoding="utf-8").read()
documented = set(re.findall(r"^##### `(\w+)`$", text, re.M))
problems = ["documented but not exported: " + name for name in sorted(documented - set(declared))]
for name, prototype in sorted(declared.items()):
    if name not in documented:
        problems.append("not documented: " + name)
    elif prototype not in text:
        problems.append("prototype changed: " + name)
    try:
        make_api_doc.style_of(name)
    except SystemExit as e:
        problems.append(str(e))
if problems:
    sys.exit("\n".join(problems + ["run: python3 tools/make_api_doc.py"]))
