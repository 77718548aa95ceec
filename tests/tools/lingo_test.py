"""Lingo texts of one molecule written in different ways, through qxfp fp."""

import os
import unittest
from collections import Counter

from qxfp_case import DATA, QxfpCase

try:
    from rdkit import Chem, RDLogger
    RDLogger.DisableLog("rdApp.*")
except ImportError:
    Chem = None

SHARED = os.path.join(DATA, "..", "..", "shared", "data", "drug_5k.smi")


def lingos(text):
    return Counter(text[i:i + 4] for i in range(len(text) - 3)) if len(text) >= 4 else Counter([text])


def similarity(a, b):
    a, b = lingos(a), lingos(b)
    return (a & b).total() / (a | b).total()


def rewritten(smiles, seed):
    """The same molecule as RDKit writes it in a random order, twice."""
    mol = Chem.MolFromSmiles(smiles)
    return list(Chem.MolToRandomSmilesVect(mol, 2, randomSeed=seed)) if mol else []


@unittest.skipUnless(Chem, "no RDKit for Python")
class LingoTest(QxfpCase):
    def texts(self, smiles):
        self.write("written.smi", "".join(f"{s} m\n" for s in smiles).encode())
        output, _ = self.run_qxfp("fp", "written.smi", "-type", "Lingo", "-out", "text", "-threads", "2")
        return [line.split("\t")[1] for line in output.decode().splitlines()]

    def check(self, path):
        with open(path, encoding="utf-8") as file:
            smiles = [line.split()[0] for line in file]
        pairs = [rewritten(s, seed) for seed, s in enumerate(smiles)]
        self.assertTrue(all(len(pair) == 2 for pair in pairs))
        self.assertGreater(sum(a != b for a, b in pairs), 0.9 * len(pairs))
        first, second = (self.texts(column) for column in zip(*pairs))
        self.assertEqual((len(first), len(second)), (len(smiles), len(smiles)))
        unlike = [(pair, a, b) for pair, a, b in zip(pairs, first, second) if similarity(a, b) != 1.0]
        self.assertEqual(unlike, [])

    def test_bundled_molecules_are_like_themselves_however_written(self):
        self.check(os.path.join(DATA, "molecules.smi"))

    def test_drug_like_molecules_are_like_themselves_however_written(self):
        if not os.path.exists(SHARED):
            self.skipTest(f"no {os.path.normpath(SHARED)}")
        self.check(SHARED)


if __name__ == "__main__":
    unittest.main()
