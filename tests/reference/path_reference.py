#!/usr/bin/env python3
"""Path fingerprints in plain Python, written from the published rules and not from the library's code.

Usage: path_reference.py [--limit N] [--table] MOLECULES.smi TYPE [TYPE ...]

Prints one line for each line of the file: its name, then for every type string a tab and the indices of the bits
that are set, in ascending order, joined by commas. A line that RDKit does not read has "-" in place of the bits.

RDKit reads the molecules and perceives rings, aromaticity and hybridisation. Everything else is done here in
the most direct way: hydrogens are dropped from a list, symmetry classes are refined with dictionaries, paths are
grown as whole lists level by level, and an identifier is the sum over its path.
"""

import argparse
import sys

import numpy as np
from rdkit import Chem, RDLogger

ATOM_BITS = {
    "AtmNum": 1, "Arom": 2, "Chiral": 4, "FCharge": 8, "HvyDeg": 16, "Hyb": 32, "InRing": 64, "EqHalo": 128,
    "EqArom": 256, "EqHBAcc": 512, "EqHBDon": 1024, "HCount": 4096,
    "None": 0, "DefaultAtom": 191, "DefaultPathAtom": 191, "DefaultCircularAtom": 4239, "DefaultTreeAtom": 63,
}
BOND_BITS = {
    "Order": 1, "Chiral": 2, "InRing": 4,
    "None": 0, "DefaultBond": 3, "DefaultPathBond": 3, "DefaultCircularBond": 1, "DefaultTreeBond": 1,
}
HYBRIDISATION = {"SP": 1, "SP2": 2, "SP3": 3, "SP3D": 4, "SP3D2": 5}
COMMON_ELEMENTS = {6: 179, 7: 283, 8: 947, 9: 419, 15: 547, 16: 811, 17: 661}
BOND_PRIMES = [127, 131, 137, 139, 149, 151, 157, 163, 167, 173]


def primes_up_to(n):
    sieve = np.ones(n + 1, dtype=bool)
    sieve[:2] = False
    for p in range(2, int(n ** 0.5) + 1):
        sieve[p * p::p] &= not sieve[p]
    return [int(p) for p in np.flatnonzero(sieve)]


PRIMES = primes_up_to(65537)
ELEMENT_PRIMES = [p for p in PRIMES if p >= 181 and p not in {283, 419, 547, 661, 811, 947}][:133]
POSITION_WEIGHTS = [0] + [int(w) for w in """
    947 983 1019 1049 1087 1109 1153 1193 1229 1277 1297 1321 1381 1429 1453 1487 1523 1559 1597 1619 1663 1699
    1741 1783 1823 1871 1901 1949 1993 2017 2063 2089 2131 2161 2221 2267 2293 2339 2371 2399 2441 2477 2543 2591
    2633 2671 2693 2719 2749 2791""".split()]


class GraphType:
    """The parameters of a type string such as "Path,ver=2.0.0,size=4096,bonds=0-5,atype=...,btype=..."."""

    def __init__(self, text):
        words = text.split(",")
        keys = dict(word.split("=") for word in words[1:])
        self.size = int(keys["size"])
        distances = keys["radius"] if "radius" in keys else keys["bonds"]
        self.min_distance, self.max_distance = (int(n) for n in distances.split("-"))
        self.atom_mask = sum(ATOM_BITS[name] for name in keys["atype"].split("|"))
        self.bond_mask = sum(BOND_BITS[name] for name in keys["btype"].split("|"))
        self.modulus = max(p for p in PRIMES if p <= self.size)

    def has(self, atom_bit):
        return bool(self.atom_mask & ATOM_BITS[atom_bit])

    def bond_has(self, bond_bit):
        return bool(self.bond_mask & BOND_BITS[bond_bit])


class Graph:
    """What the labels need of a molecule whose plain explicit hydrogens are gone."""

    def __init__(self, mol):
        atoms = list(mol.GetAtoms())
        kept = [a for a in atoms if not is_plain_hydrogen(a)]
        index = {a.GetIdx(): i for i, a in enumerate(kept)}
        ring_info = mol.GetRingInfo()
        self.num_atoms = len(kept)
        self.z = [a.GetAtomicNum() for a in kept]
        self.charge = [a.GetFormalCharge() for a in kept]
        self.isotope = [a.GetIsotope() for a in kept]
        self.aromatic = [a.GetIsAromatic() for a in kept]
        self.hyb = [HYBRIDISATION.get(str(a.GetHybridization()), 0) for a in kept]
        # hydrogens that are still in the graph count too
        self.hydrogens = [a.GetTotalNumHs(includeNeighbors=True) for a in kept]
        self.ring_count = [ring_info.NumAtomRings(a.GetIdx()) for a in kept]
        self.min_ring = [ring_info.MinAtomRingSize(a.GetIdx()) for a in kept]
        self.bonds = []
        self.neighbors = [[] for _ in kept]
        Chem.Kekulize(mol)  # leaves the aromatic flags alone and gives every bond an order from 1 to 4
        for bond in mol.GetBonds():
            ends = index.get(bond.GetBeginAtomIdx()), index.get(bond.GetEndAtomIdx())
            if None in ends:
                continue
            record = {
                "ends": ends, "order": int(bond.GetBondTypeAsDouble()), "aromatic": bond.GetIsAromatic(),
                "ring": ring_info.NumBondRings(bond.GetIdx()) > 0,
                "min_ring": ring_info.MinBondRingSize(bond.GetIdx()),
            }
            self.neighbors[ends[0]].append((ends[1], len(self.bonds)))
            self.neighbors[ends[1]].append((ends[0], len(self.bonds)))
            self.bonds.append(record)
        self.heavy_degree = [sum(self.z[n] > 1 for n, _ in nbrs) for nbrs in self.neighbors]
        self.valence = [
            sum(self.bonds[b]["order"] for _, b in self.neighbors[i])
            + self.hydrogens[i] - sum(self.z[n] == 1 for n, _ in self.neighbors[i]) for i in range(self.num_atoms)]
        self.perceive_chirality()

    def symmetry_classes(self):
        """The coarsest partition by atom properties that neighbours cannot split any further."""
        keys = [
            (self.z[i], self.charge[i], self.isotope[i], self.hydrogens[i], len(self.neighbors[i]),
             self.aromatic[i], self.ring_count[i], self.min_ring[i]) for i in range(self.num_atoms)]
        classes = rank(keys)
        while True:
            keys = [
                (classes[i], tuple(sorted((self.bond_kind(b), classes[n]) for n, b in self.neighbors[i])))
                for i in range(self.num_atoms)]
            finer = rank(keys)
            if len(set(finer)) == len(set(classes)):
                return classes
            classes = finer

    def bond_kind(self, bond):
        return 5 if self.bonds[bond]["aromatic"] else self.bonds[bond]["order"]

    def perceive_chirality(self):
        self.chiral_atom = [False] * self.num_atoms
        for bond in self.bonds:
            bond["chiral"] = False
        may_be_centre = [self.could_be_centre(i) for i in range(self.num_atoms)]
        double_bonds = [b for b in self.bonds if self.could_be_stereo_bond(b)]
        if not any(may_be_centre) and not double_bonds:
            return
        classes = self.symmetry_classes()
        for i in range(self.num_atoms):
            around = [classes[n] for n, _ in self.neighbors[i]]
            self.chiral_atom[i] = may_be_centre[i] and len(set(around)) == len(around)
        for bond in double_bonds:
            bond["chiral"] = all(
                self.substituents_differ(a, b, classes) for a, b in (bond["ends"], bond["ends"][::-1]))

    def could_be_centre(self, i):
        """A tetrahedral centre as far as element, charge, hydrogens and connections say."""
        degree, hydrogens, charge = len(self.neighbors[i]), self.hydrogens[i], self.charge[i]
        implicit = hydrogens - sum(self.z[n] == 1 for n, _ in self.neighbors[i])
        connections = degree + implicit
        if self.aromatic[i] or hydrogens > 1:
            return False
        if self.z[i] in (6, 14, 32, 50):
            return connections == 4
        if self.z[i] == 7:
            return charge == 1 and degree == 4 and hydrogens == 0
        if self.z[i] in (16, 34):
            # sulfoxide, drawn with a double bond or with charges, and sulfonium
            return degree == 3 and hydrogens == 0 and self.valence[i] == (3 if charge == 1 else 4)
        if self.z[i] == 15:
            return connections == 4 or (connections == 3 and self.valence[i] == 3)
        return False

    def could_be_stereo_bond(self, bond):
        if bond["order"] != 2 or bond["aromatic"]:
            return False
        # a plane through both ends: not at P, S and their like, whose double bonds are drawn into a pyramid
        if any(self.z[end] not in (6, 7, 14, 32, 50) for end in bond["ends"]):
            return False
        return not (bond["ring"] and bond["min_ring"] < 8)

    def substituents_differ(self, end, other, classes):
        """Two neighbours of different classes, or a neighbour and a hydrogen, or at nitrogen and the lone pair."""
        others = [n for n, _ in self.neighbors[end] if n != other]
        implicit = self.hydrogens[end] - sum(self.z[n] == 1 for n in others)
        if len(others) == 2 and implicit == 0:
            return classes[others[0]] != classes[others[1]]
        if len(others) != 1 or self.z[others[0]] == 1:
            return False
        return implicit == 1 or (implicit == 0 and self.z[end] == 7)

    def is_donor(self, i):
        return self.z[i] in (7, 8, 16) and self.hydrogens[i] > 0

    def is_acceptor(self, i):
        z, charge = self.z[i], self.charge[i]
        if z not in (7, 8, 16) or charge > 0:
            return False
        if z == 8 and charge < 0:
            return True
        if z in (8, 16) and self.aromatic[i]:
            return False
        if z == 7:
            explicit_h = sum(self.z[n] == 1 for n, _ in self.neighbors[i])
            connections = len(self.neighbors[i]) + self.hydrogens[i] - explicit_h
            return connections != 3 and self.valence[i] != 5
        return not (z == 16 and self.valence[i] == 4)

    def atom_label(self, i, t):
        label = self.base_label(i, t)
        if t.has("FCharge"):
            label *= {-4: 128, -3: 32, -2: 8, -1: 2, 0: 1, 1: 4, 2: 16, 3: 64, 4: 256}.get(self.charge[i], 512)
        if t.has("HvyDeg"):
            label *= 3 ** min(self.heavy_degree[i], 6)
        if t.has("Hyb"):
            label *= 5 ** self.hyb[i]
        if t.has("InRing") and self.ring_count[i]:
            label *= 7
        if t.has("Arom") and self.aromatic[i]:
            label *= 11
        if t.has("Chiral") and self.chiral_atom[i]:
            label *= 13
        if t.has("HCount"):
            label *= 17 ** min(self.hydrogens[i], 4)
        return label % 2 ** 32

    def base_label(self, i, t):
        if not t.has("AtmNum"):
            return 1
        z = self.z[i]
        bonding = t.has("EqHBAcc") or t.has("EqHBDon")
        if t.has("EqHalo") and z in (17, 35, 53):
            z = 9
        if t.has("EqArom") and self.aromatic[i]:
            return 179
        if bonding:
            if z == 6:
                return 179
            acceptor = t.has("EqHBAcc") and self.is_acceptor(i)
            if t.has("EqHBDon") and self.is_donor(i):
                return 19 if acceptor else 6859
            if acceptor:
                return 361
        return COMMON_ELEMENTS.get(z) or ELEMENT_PRIMES[z]

    def bond_label(self, bond, t):
        label = 1
        if t.bond_has("Order"):
            label = 151 if bond["aromatic"] else BOND_PRIMES[bond["order"]]
        if t.bond_has("InRing") and bond["ring"]:
            label *= 73
        if t.bond_has("Chiral") and bond["chiral"]:
            label *= 79
        return label

    def paths(self, max_bonds):
        """For every length from 0 to max_bonds: the atoms and the bonds of all paths, one path a row."""
        edges = sorted(
            (a, b, i) for i, bond in enumerate(self.bonds) for a, b in (bond["ends"], bond["ends"][::-1]))
        target = np.array([e[1] for e in edges], dtype=np.int64)
        edge_bond = np.array([e[2] for e in edges], dtype=np.int64)
        degree = np.array([len(n) for n in self.neighbors], dtype=np.int64)
        first = np.concatenate([[0], np.cumsum(degree)])[:-1] if self.num_atoms else degree
        atoms = np.array([[i] for i in range(self.num_atoms) if self.z[i] > 1], dtype=np.int64).reshape(-1, 1)
        bonds = np.zeros((len(atoms), 0), dtype=np.int64)
        for _ in range(max_bonds + 1):
            yield atoms, bonds
            if not len(atoms):
                continue
            end = atoms[:, -1]
            row = np.repeat(np.arange(len(atoms)), degree[end])
            step = np.arange(len(row)) - np.repeat(np.cumsum(degree[end]) - degree[end], degree[end])
            edge = first[end[row]] + step
            fresh = (atoms[row] != target[edge][:, None]).all(axis=1)
            row, edge = row[fresh], edge[fresh]
            atoms = np.column_stack([atoms[row], target[edge]])
            bonds = np.column_stack([bonds[row], edge_bond[edge]])


def is_plain_hydrogen(atom):
    """Hydrogens that belong to the count of their neighbour: nothing special, one bond, to a heavy atom."""
    if atom.GetAtomicNum() != 1 or atom.GetIsotope() or atom.GetFormalCharge() or atom.GetAtomMapNum():
        return False
    if atom.GetDegree() != 1:
        return False
    return atom.GetNeighbors()[0].GetAtomicNum() > 1


def rank(keys):
    order = {key: i for i, key in enumerate(sorted(set(keys)))}
    return [order[key] for key in keys]


def fingerprints(mol, types):
    graph = Graph(mol)
    by_length = list(graph.paths(max(t.max_distance for t in types)))
    for t in types:
        atom_labels = np.array([graph.atom_label(i, t) for i in range(graph.num_atoms)], dtype=np.uint64)
        bond_labels = np.array([graph.bond_label(b, t) for b in graph.bonds], dtype=np.uint64)
        bits = set()
        for length in range(t.min_distance, t.max_distance + 1):
            atoms, bonds = by_length[length]
            if not len(atoms):
                continue
            weights = np.array(POSITION_WEIGHTS, dtype=np.uint64)
            total = (atom_labels[atoms] * weights[1:2 * length + 2:2]).sum(axis=1, dtype=np.uint64)
            if length:
                total += (bond_labels[bonds] * weights[2:2 * length + 1:2]).sum(axis=1, dtype=np.uint64)
            bits.update((total % 2 ** 32 % t.modulus).tolist())
        yield sorted(bits)


def read(smiles):
    params = Chem.SmilesParserParams()
    params.sanitize = False
    params.removeHs = False
    mol = Chem.MolFromSmiles(smiles, params)
    if mol is None:
        return None
    try:
        Chem.SanitizeMol(mol)
    except ValueError:
        return None
    return mol


def main(description, fingerprints):
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--limit", type=int, default=sys.maxsize, help="stop after this many lines")
    parser.add_argument("--table", action="store_true",
                        help="print a header line, and the SMILES after each name")
    parser.add_argument("molecules")
    parser.add_argument("types", nargs="+")
    options = parser.parse_args()
    types = [GraphType(text) for text in options.types]
    RDLogger.DisableLog("rdApp.*")
    if options.table:
        print("name", "SMILES", *options.types, sep="\t")
    with open(options.molecules, encoding="utf-8") as lines:
        for number, line in enumerate(lines):
            if number == options.limit:
                break
            smiles, _, name = line.rstrip("\r\n").partition(" ")
            mol = read(smiles)
            columns = ["-"] * len(types)
            if mol is not None:
                columns = [",".join(map(str, bits)) for bits in fingerprints(mol, types)]
            if options.table:
                columns.insert(0, smiles)
            print(name or str(number), *columns, sep="\t")


if __name__ == "__main__":
    main(__doc__, fingerprints)
