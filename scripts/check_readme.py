#!/usr/bin/env python3
"""Checks that the C++ shown in README.md is, line for line, the example program that the tests compile and run."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def main():
    readme = (ROOT / "README.md").read_text(encoding="utf-8")
    blocks = re.findall(r"^```cpp\n(.*?)^```$", readme, re.S | re.M)
    programs = [p.read_text(encoding="utf-8") for p in sorted((ROOT / "examples").glob("*.cpp"))]
    if not blocks:
        print("README.md shows no C++")
        return 1
    for block in blocks:
        if not any(block in program for program in programs):
            print("README.md shows C++ that no program in examples/ holds:\n" + block)
            return 1
    print(f"README.md: {len(blocks)} C++ block(s), all from examples/")
    return 0


if __name__ == "__main__":
    sys.exit(main())
