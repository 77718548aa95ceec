"""Lingo texts of one molecule written in different ways, through qxfp fp."""

import os
import subprocess
import sys
import unittest
from collections import Counter

from qxfp_case import DATA, QxfpCase

# Writes every molecule of its input in two random orders, one line each.
WRITER = """
import sys
from rdkit import Chem
for seed, smiles in enumerate(sys.stdin):
    print(*Chem.MolToRandomSmilesVect(Chem.MolFromSmiles(smiles), 2, randomSeed=seed))
"""


def has_rdkit(python):
    try:
        return subprocess.run([python, "-c", "import rdkit.Chem"], stderr=subprocess.DEVNULL).returncode == 0
    except OSError:
        return False


PYTHON = next(filter(has_rdkit, [sys.executable, "/usr/bin/python3", "python3"]), None)
SHARED = os.path.join(DATA, "..", "..", "shared", "data", "drug_5k.smi")


def lingos(text):
    return Counter(text[i:i + 4] for i in range(len(text) - 3)) if len(text) >= 4 else Counter([text])


def similarity(a, b):
    a, b = lingos(a), lingos(b)
    return (a & b).total() / (a | b).total()


@unittest.skipUnless(PYTHON, "no Python with RDKit")
class LingoTest(QxfpCase):
    def texts(self, smiles):
        self.write("written.smi", "".join(f"{s} m\n" for s in smiles).encode())
        output, _ = self.run_qxfp("fp", "written.smi", "-type", "Lingo", "-out", "text", "-threads", "2")
        return [line.split("\t")[1] for line in output.decode().splitlines()]

    def check(self, path):
        with open(path, encoding="utf-8") as file:
            smiles = [line.split()[0] for line in file]
        written = subprocess.run([PYTHON, "-c", WRITER], input="\n".join(smiles), capture_output=True, text=True)
        self.assertEqual(written.returncode, 0, written.stderr)
        pairs = [line.split() for line in written.stdout.splitlines()]
        self.assertEqual(len(pairs), len(smiles))
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
