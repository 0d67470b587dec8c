#!/usr/bin/env python3
"""Counts the lines of code and of tests: non-blank lines outside comments,
in the C++ files git knows. A file is a test when a folder on its path is
named tests. Usage: scripts/line-counts.py [--files]"""
import re
import subprocess
import sys
from collections import Counter
from pathlib import Path

root = Path(__file__).resolve().parent.parent
files = subprocess.run(["git", "-C", str(root), "ls-files", "*.cpp", "*.h", "*.h.in"],
                       capture_output=True, text=True, check=True).stdout.split()

# Strings first, so that a "//" or "/*" inside one is not taken for a comment.
token = re.compile(r'R"(?P<d>[^(]*)\(.*?\)(?P=d)"|"(?:\\.|[^"\\\n])*"|'
                   r"'(?:\\.|[^'\\\n])*'|//[^\n]*|/\*.*?\*/", re.S)


def counted(text):
    def blank(m):
        s = m.group(0)
        if s.startswith("//") or s.startswith("/*"):
            return "\n" * s.count("\n")  # a comment keeps its line breaks only
        return s
    return sum(1 for line in token.sub(blank, text).splitlines() if line.strip())


totals = Counter()
per_file = []
for name in files:
    n = counted((root / name).read_text(encoding="utf-8", errors="replace"))
    kind = "tests" if "tests" in Path(name).parts[:-1] else "code"
    totals[kind] += n
    per_file.append((n, kind, name))

if "--files" in sys.argv:
    for n, kind, name in sorted(per_file, reverse=True):
        print(f"{n:6} {kind:5} {name}")
print(f"code  {totals['code']}")
print(f"tests {totals['tests']}")
print(f"tests/code {totals['tests'] / max(totals['code'], 1):.1%}")
