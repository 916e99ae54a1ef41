#!/usr/bin/env python3
"""Compares the dynamic symbols a library defines with the functions its
header declares and with the list of exports.

usage: check_exports.py LIBRARY HEADER EXPORT_LIST
"""
import re
import subprocess
import sys


def main():
    library, header, export_list = sys.argv[1:4]
    nm = subprocess.run(["nm", "-D", "--defined-only", library],
                        check=True, capture_output=True, text=True).stdout
    symbols = [p[2] for p in map(str.split, nm.splitlines()) if len(p) == 3 and p[1] in "TWiDBR"]
    have = {symbol.split("@")[0] for symbol in symbols}
    want = set(re.findall(r"VERIMOND_API\s+int32_t\s+(\w+)\s*\(", open(header).read()))
    listed = set(open(export_list).read().split())
    problems = {
        # Unversioned exports would take over same-named calls of other
        # libraries in the process (libcrypto's SHA1_Init, MD5_Init).
        "exported without the version VERIMOND_6":
            {s for s in symbols if s.partition("@@")[2] != "VERIMOND_6"},
        "exported but not declared": have - want,
        "declared but not exported": want - have,
        "declared but not in the export list": want - listed,
        "listed but not declared": listed - want,
    }
    for what, names in problems.items():
        if names:
            print(what + ":", " ".join(sorted(names)))
    print(f"{len(have)} exported, {len(want)} declared, {len(listed)} listed")
    return int(any(problems.values()))


if __name__ == "__main__":
    sys.exit(main())
