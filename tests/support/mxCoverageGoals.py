#!/usr/bin/env python3
"""Sums gcovr's per-file summary by folder and checks the folders' coverage goals.

    mxCoverageGoals.py <gcovr --json-summary file>

Prints the line and branch coverage of every folder of src/ and of src/ as a whole, then one
line per goal; exits 1 when a goal is missed.
"""
import json
import sys
from collections import defaultdict

# (folder, what, least percentage)
GOALS = [
    ("src/node", "lines", 100.0),
    ("src/node", "branches", 95.0),
    ("src/controller", "lines", 100.0),
    ("src/controller", "branches", 95.0),
    ("src/host", "lines", 90.0),
]


def percentage(covered, total):
    return 100.0 * covered / total if total else 100.0


def main():
    if len(sys.argv) != 2:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    with open(sys.argv[1], encoding="utf-8") as summary:
        files = json.load(summary)["files"]

    # folder -> [lines covered, lines, branches covered, branches]
    totals = defaultdict(lambda: [0, 0, 0, 0])
    for entry in files:
        path = entry["filename"]
        parts = path.split("/")
        # src/ as a whole, and the file's own folder below src/ (src/node, src/host, ...).
        folders = ["src"]
        if len(parts) > 2:
            folders.append("/".join(parts[:2]))
        for folder in folders:
            total = totals[folder]
            total[0] += entry["line_covered"]
            total[1] += entry["line_total"]
            total[2] += entry["branch_covered"]
            total[3] += entry["branch_total"]

    print(f"{'Folder':<16}{'Lines':>22}{'Branches':>22}")
    for folder in sorted(totals):
        lc, lt, bc, bt = totals[folder]
        print(f"{folder:<16}{lc:>7} / {lt:<6}{percentage(lc, lt):6.1f}%"
              f"{bc:>7} / {bt:<6}{percentage(bc, bt):6.1f}%")

    missed = 0
    for folder, what, least in GOALS:
        lc, lt, bc, bt = totals[folder]
        measured = percentage(lc, lt) if what == "lines" else percentage(bc, bt)
        met = measured >= least
        missed += not met
        print(f"{'ok    ' if met else 'MISSED'} {folder} {what}: {measured:.2f}% "
              f"(goal {'' if least == 100.0 else 'at least '}{least:g}%)")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
