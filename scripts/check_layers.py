#!/usr/bin/env python3
"""Checks the #include lines: a layer uses itself and lower layers only, and foreign libraries stay in their rooms."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TARGETS = (ROOT / "cmake/QXTargets.cmake").read_text(encoding="utf-8")
LAYERS = re.search(r"set\(QX_LAYERS ([^)]*)\)", TARGETS).group(1).split()  # lowest first
PUBLIC = ["QXSystem", "QXPlatform", "QXChem", "QXFingrix"]
# The public headers that a layer may use, besides its own private ones.
PUBLIC_OF_LAYER = {"system": 1, "platform": 2, "chem": 3}
RDKIT = re.compile(r"^(GraphMol|RDGeneral|Geometry|DataStructs|boost)/")
INTRINSICS = re.compile(r"^(\w*intrin|cpuid)\.h$")
INTRINSICS_PLACES = ("src/system/bitcount/", "src/fastfp/scan/PopCount.cpp")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def includes(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        found = INCLUDE.match(line)
        if found:
            yield number, found.group(2)


def complaint(path, target):
    """What is wrong with this include, or None."""
    place = path.relative_to(ROOT).parts
    first = target.split("/")[0]
    if place[0] == "include":
        if first in PUBLIC:
            if PUBLIC.index(first) > PUBLIC.index(place[1]):
                return f"a {place[1]} header may not use {first}"
        elif "/" in target or target.endswith(".h"):
            return "a public header includes QX headers and the standard library only"
        return None
    if RDKIT.match(target) and place[:2] != ("src", "chem") and place[0] not in ("tests", "bench"):
        return "RDKit and Boost belong to src/chem"
    if place[0] == "tools":
        return "the tools are built on public headers only" if first in LAYERS else None
    if place[0] == "src":
        layer = LAYERS.index(place[1])
        if first in LAYERS and LAYERS.index(first) > layer:
            return f"layer {place[1]} may not use the higher layer {first}"
        if first in PUBLIC and PUBLIC.index(first) >= PUBLIC_OF_LAYER.get(place[1], 4):
            return f"layer {place[1]} may not use {first}"
        if INTRINSICS.match(target) and not "/".join(place).startswith(INTRINSICS_PLACES):
            return "processor-specific headers belong to " + " and ".join(INTRINSICS_PLACES)
    return None


def fingrix_owner():
    """Which folder of src/ implements each QXFingrix header, judged by the sources that bear its name."""
    owner = {}
    for header in (ROOT / "include/QXFingrix").glob("QX*.h"):
        for layer in LAYERS[3:]:
            if (ROOT / "src" / layer / (header.stem.removeprefix("QX") + ".cpp")).exists():
                owner[header.name] = layer
    return owner


def main():
    complaints = []
    owner = fingrix_owner()
    for top in ("include", "src", "tools", "tests", "bench", "examples"):
        for path in sorted((ROOT / top).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            if top == "include" and not path.name.startswith("QX"):
                complaints.append(f"{path.relative_to(ROOT)}: a public header is named QX*.h")
            for number, target in includes(path):
                text = complaint(path, target)
                place = path.relative_to(ROOT).parts
                if not text and place[0] == "src" and target.startswith("QXFingrix/"):
                    home = owner.get(target.split("/")[1])
                    if home and LAYERS.index(home) > LAYERS.index(place[1]):
                        text = f"layer {place[1]} may not use the higher layer {home}"
                if text:
                    complaints.append(f"{path.relative_to(ROOT)}:{number}: {target}: {text}")
    print("\n".join(complaints) if complaints else "layers: every include looks down")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
