#!/usr/bin/env python3
"""Writes tests/COVERAGE.md from the conformance runner's registry.

usage: coverage.py [--check] RUNNER TESTS_DIR

RUNNER is the built verimond_conformance program; TESTS_DIR the tests/
directory (exports.txt, COVERAGE.md). With --check nothing is
written: the exit status says whether COVERAGE.md is current.
"""
import os
import subprocess
import sys

REGENERATE = "python3 tests/conformance/coverage.py build/tests/verimond_conformance tests"


def registry(runner):
    out = subprocess.run([runner, "--registry"], check=True, capture_output=True, text=True).stdout
    suites = []
    for line in out.splitlines():
        group, name, expected, algorithms, source, exports = line.split("\t")
        suites.append({"group": group, "name": name, "cases": int(expected), "algorithms": algorithms,
                       "source": source, "exports": exports.split()})
    return sorted(suites, key=lambda s: (s["group"] != "Vectors", s["name"]))


def render(suites, exports):
    lines = ["# Conformance coverage", "",
             "Generated from the registry of the conformance runner (`tests/conformance/`) by",
             f"`{REGENERATE}`; do not edit by hand.",
             "Every suite runs through the library's public exports only. Vector suites check every record of",
             "the files named; differential suites compare with an independent implementation over random",
             "inputs from fixed seeds (`VERIMOND_SEED` replaces them). Cases are the records or generated",
             "inputs each suite must check; the runner fails when the count differs.", ""]
    titles = {"Vectors": "Published vectors", "Differential": "Differential tests"}
    for group in ("Vectors", "Differential"):
        chosen = [s for s in suites if s["group"] == group]
        lines += [f"## {titles[group]}", "", "| Suite | Algorithms | Proven against | Cases | Exports driven |",
                  "|---|---|---|---:|---|"]
        for s in chosen:
            lines.append(f"| {s['name']} | {s['algorithms']} | {s['source']} | {s['cases']} | "
                         f"{', '.join(s['exports'])} |")
        lines += [f"", f"{len(chosen)} suites, {sum(s['cases'] for s in chosen)} cases.", ""]

    by_export = {}
    for s in suites:
        for e in s["exports"]:
            by_export.setdefault(e, {"Vectors": [], "Differential": []})[s["group"]].append(s["name"])
    lines += ["## By export", "", "| Export | Vector suites | Differential suites |", "|---|---|---|"]
    for e in sorted(by_export):
        lines.append(f"| {e} | {', '.join(by_export[e]['Vectors']) or '-'} | "
                     f"{', '.join(by_export[e]['Differential']) or '-'} |")
    rest = [e for e in exports if e not in by_export]
    lines += ["", f"{len(by_export)} of {len(exports)} exports are driven here. Not driven here, and left to",
              f"their families' unit tests ({len(rest)}):", "", ", ".join(rest), ""]
    return "\n".join(lines)


def main():
    args = sys.argv[1:]
    check = args[:1] == ["--check"]
    if check:
        args = args[1:]
    runner, tests = args
    exports = sorted(open(os.path.join(tests, "exports.txt")).read().split())
    suites = registry(runner)
    unknown = sorted({e for s in suites for e in s["exports"]} - set(exports))
    if unknown:
        sys.exit("registry names exports that do not exist: " + ", ".join(unknown))
    text = render(suites, exports)
    target = os.path.join(tests, "COVERAGE.md")
    if check:
        current = open(target).read() if os.path.exists(target) else ""
        if current != text:
            sys.exit(f"{target} is stale; regenerate it with: {REGENERATE}")
        return
    with open(target, "w") as f:
        f.write(text)


if __name__ == "__main__":
    main()
