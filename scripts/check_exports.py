#!/usr/bin/env python3
"""Compares what the shared libraries export with the lists in tests/layout/exports.

Usage: check_exports.py [--update] LIBRARY...
A list holds one name a line, without arguments: a class with all its members is one line.
"""
import pathlib
import re
import subprocess
import sys

LISTS = pathlib.Path(__file__).resolve().parent.parent / "tests/layout/exports"


def exported(library):
    output = subprocess.run(["nm", "-D", "--defined-only", "--demangle", library],
                            capture_output=True, text=True, check=True).stdout
    names = set()
    for line in output.splitlines():
        kind, symbol = line.split(" ", 2)[1:]
        if kind not in "TBDR":  # weak symbols are template instances and inline functions
            continue
        symbol = re.sub(r"^(vtable|typeinfo|typeinfo name|VTT|guard variable) for ", "", symbol)
        symbol = symbol.replace("(anonymous namespace)", "{anonymous}").replace("[abi:cxx11]", "")
        name = re.sub(r"<.*", "", symbol.split("(")[0])
        name = name.split(" ")[-1]
        parts = name.split("::")
        names.add("::".join(parts[:2]))
    return sorted(names)


def main():
    arguments = sys.argv[1:]
    update = "--update" in arguments
    status = 0
    for library in (a for a in arguments if a != "--update"):
        names = exported(library)
        path = LISTS / (pathlib.Path(library).name.split(".")[0].removeprefix("lib") + ".txt")
        if update:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text("\n".join(names) + "\n", encoding="utf-8")
            continue
        expected = path.read_text(encoding="utf-8").split()
        for name in sorted(set(names) - set(expected)):
            print(f"{path.name}: exported but not listed: {name}")
            status = 1
        for name in sorted(set(expected) - set(names)):
            print(f"{path.name}: listed but not exported: {name}")
            status = 1
        for name in names:
            if not name.startswith("QX"):
                print(f"{path.name}: foreign symbol exported: {name}")
                status = 1
    if status:
        print("when the change is meant: scripts/check_exports.py --update LIBRARY...")
    return status


if __name__ == "__main__":
    sys.exit(main())
