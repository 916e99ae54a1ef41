#!/usr/bin/env python3
"""Compares the dynamic symbols a library defines with the functions its header declares.

usage: check_exports.py LIBRARY HEADER [EXPORT_LIST]
With EXPORT_LIST, the header may declare only names in that list. Listed names
that the header does not declare yet are printed, and fail the check only when
the environment sets VERIMOND_REQUIRE_ALL_EXPORTS=1.
"""
import os
import re
import subprocess
import sys


def exported(library):
    out = subprocess.run(["nm", "-D", "--defined-only", library],
                         check=True, capture_output=True, text=True).stdout
    names, unversioned = set(), set()
    for line in out.splitlines():
        parts = line.split()
        if len(parts) == 3 and parts[1] in ("T", "W", "i", "D", "B", "R"):
            name, _, version = parts[2].partition("@@")
            names.add(name.split("@")[0])
            # Unversioned exports would take over same-named calls of other
            # libraries in the process (libcrypto's SHA1_Init, MD5_Init).
            if version != "VERIMOND_6":
                unversioned.add(name)
    return names, unversioned


def declared(header):
    text = open(header, encoding="utf-8").read()
    return set(re.findall(r"VERIMOND_API\s+int32_t\s+([A-Za-z0-9_]+)\s*\(", text))


def main():
    library, header = sys.argv[1], sys.argv[2]
    (have, unversioned), want = exported(library), declared(header)
    ok = True
    if unversioned:
        print("exported without the version VERIMOND_6:", " ".join(sorted(unversioned)))
        ok = False
    if have - want:
        print("exported but not declared:", " ".join(sorted(have - want)))
        ok = False
    if want - have:
        print("declared but not exported:", " ".join(sorted(want - have)))
        ok = False
    if len(sys.argv) > 3:
        listed = set(open(sys.argv[3]).read().split())
        if want - listed:
            print("declared but not in the export list:", " ".join(sorted(want - listed)))
            ok = False
        missing = listed - want
        if missing:
            required = os.environ.get("VERIMOND_REQUIRE_ALL_EXPORTS") == "1"
            print(f"listed but not declared ({len(missing)}):", " ".join(sorted(missing)))
            ok = ok and not required
    print(f"{len(have)} exported, {len(want)} declared")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
