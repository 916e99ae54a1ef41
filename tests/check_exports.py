#!/usr/bin/env python3
"""Compares the dynamic symbols a library defines with the functions its header declares.

usage: check_exports.py LIBRARY HEADER [EXPORT_LIST]
With EXPORT_LIST, the header must also declare exactly the names in that list.
"""
import re
import subprocess
import sys


def exported(library):
    out = subprocess.run(["nm", "-D", "--defined-only", library],
                         check=True, capture_output=True, text=True).stdout
    names = set()
    for line in out.splitlines():
        parts = line.split()
        if len(parts) == 3 and parts[1] in ("T", "W", "i", "D", "B", "R"):
            names.add(parts[2].split("@")[0])
    return names


def declared(header):
    text = open(header, encoding="utf-8").read()
    return set(re.findall(r"VERIMOND_API\s+int32_t\s+([A-Za-z0-9_]+)\s*\(", text))


def main():
    library, header = sys.argv[1], sys.argv[2]
    have, want = exported(library), declared(header)
    ok = True
    if have - want:
        print("exported but not declared:", " ".join(sorted(have - want)))
        ok = False
    if want - have:
        print("declared but not exported:", " ".join(sorted(want - have)))
        ok = False
    if len(sys.argv) > 3:
        listed = set(open(sys.argv[3]).read().split())
        if listed != want:
            print("header differs from the export list; missing:",
                  " ".join(sorted(listed - want)), "extra:", " ".join(sorted(want - listed)))
            ok = False
    print(f"{len(have)} exported, {len(want)} declared")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
