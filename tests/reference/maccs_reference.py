"""MACCS keys by RDKit's own substructure matcher, ring perception and elements: a reference for the library.

Prints a line for every line of a file of "SMILES NAME": the name and the keys that are set, joined by commas
("-" for a molecule that cannot be read). The patterns and the table of the elements are taken from the
library's source; whatever decides whether they match is RDKit.
"""

import argparse
import os
import re
import sys

from rdkit import Chem, RDLogger

SOURCE = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir, "src", "generators", "maccs",
                      "KeyRows.cpp")
MANY = 10 ** 6


def read_tables():
    """Rows (key, pattern, repeat key or None), and the key of every atomic number."""
    with open(SOURCE, encoding="utf-8") as file:
        text = re.sub("//.*", "", file.read())
    rows = [(int(key), Chem.MolFromSmarts(smarts), int(repeat) if repeat else None)
            for key, smarts, repeat in re.findall(r'\{(\d+), "([^"]*)"(?:, (\d+))?\}', text)]
    elements = [int(key) for key in re.search(r"AtomicNumBit\[\] = \{(.*?)\};", text, re.DOTALL)[1].split(",")
                if key.strip()]
    assert len(rows) == 135 and len(elements) == 113
    return rows, elements


def is_plain_hydrogen(atom):
    """Hydrogens that belong to the count of their neighbour: nothing special, one bond, to a heavy atom."""
    if atom.GetAtomicNum() != 1 or atom.GetIsotope() or atom.GetFormalCharge() or atom.GetAtomMapNum():
        return False
    if atom.GetDegree() != 1 or atom.GetTotalNumHs():
        return False
    return atom.GetBonds()[0].GetBondType() == Chem.BondType.SINGLE and atom.GetNeighbors()[0].GetAtomicNum() > 1


def read(smiles):
    params = Chem.SmilesParserParams()
    params.sanitize = False
    params.removeHs = False
    mol = Chem.MolFromSmiles(smiles, params)
    if mol is None:
        return None
    for atom in mol.GetAtoms():
        atom.SetChiralTag(Chem.ChiralType.CHI_UNSPECIFIED)
    try:
        Chem.SanitizeMol(mol)
    except ValueError:
        return None
    plain = [atom.GetIdx() for atom in mol.GetAtoms() if is_plain_hydrogen(atom)]
    if not plain:
        return mol
    mol = Chem.RWMol(mol)
    for atom in mol.GetAtoms():
        if atom.GetIdx() not in plain:
            num_removed = sum(nbr.GetIdx() in plain for nbr in atom.GetNeighbors())
            atom.SetNumExplicitHs(atom.GetTotalNumHs() + num_removed)
            atom.SetNoImplicit(True)
    for idx in reversed(plain):
        mol.RemoveAtom(idx)
    mol.UpdatePropertyCache(False)
    Chem.FastFindRings(mol)
    return mol


def count_aromatic_systems(mol):
    """Parts of the molecule that are joined by aromatic bonds."""
    parent = {}

    def root(idx):
        while parent[idx] != idx:
            idx = parent[idx]
        return idx
    for bond in mol.GetBonds():
        if bond.GetIsAromatic():
            for idx in (bond.GetBeginAtomIdx(), bond.GetEndAtomIdx()):
                parent.setdefault(idx, idx)
            parent[root(bond.GetBeginAtomIdx())] = root(bond.GetEndAtomIdx())
    return sum(parent[idx] == idx for idx in parent)


def keys_of(mol, rows, elements):
    keys = {elements[atom.GetAtomicNum()] for atom in mol.GetAtoms() if atom.GetAtomicNum() < len(elements)} - {0}
    for key, pattern, repeat in rows:
        if repeat is None:
            if mol.HasSubstructMatch(pattern):
                keys.add(key)
        elif len(mol.GetSubstructMatches(pattern, uniquify=True, maxMatches=MANY)) > 1:
            keys.add(repeat)
    num_systems = count_aromatic_systems(mol)
    keys.update(key for key, is_set in ((125, num_systems > 1), (162, num_systems > 0),
                                        (166, len(Chem.GetMolFrags(mol)) > 1)) if is_set)
    return sorted(keys)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--limit", type=int, default=sys.maxsize, help="stop after this many lines")
    parser.add_argument("molecules")
    options = parser.parse_args()
    RDLogger.DisableLog("rdApp.*")
    rows, elements = read_tables()
    with open(options.molecules, encoding="utf-8") as lines:
        for number, line in enumerate(lines):
            if number == options.limit:
                break
            smiles, _, name = line.rstrip("\r\n").partition(" ")
            mol = read(smiles)
            print(name or str(number), "-" if mol is None else ",".join(map(str, keys_of(mol, rows, elements))),
                  sep="\t")


if __name__ == "__main__":
    main()
