"""The measures on real fingerprints against tests/reference/similarity_reference.py, bit by bit, and against RDKit."""

import os
import subprocess
import unittest

import numpy as np
from rdkit import Chem, DataStructs
from similarity_reference import bit_counts, score

NUM_MOLECULES = 290
PLAIN = ["QXTanimoto", "QXCosine", "QXDice", "QXEuclid", "QXManhattan"]
# The defaults of searches and of databases, and what RDKit forms without rounding; RDKit takes 0 to 1 only.
ROUNDED = [("0x1.e66666p-1", "0x1.99999ap-5"), ("0x1.e66666p-1", "0x1.9999ap-5"), ("0.1", "0.7"), ("-0.5", "3")]
EXACT = [("1", "1"), ("0.5", "0.5"), ("1", "0"), ("0.25", "0.75"), ("0", "0")]
RDKIT = {
    "QXTanimoto": DataStructs.BulkTanimotoSimilarity,
    "QXCosine": DataStructs.BulkCosineSimilarity,
    "QXDice": DataStructs.BulkDiceSimilarity,
}


def fingerprints(num_bits, max_path):
    """Of real molecules, some of them twice, and some without any bit; as hexadecimal digits."""
    with open(os.path.join(os.environ["QX_DATA_DIR"], "molecules.smi")) as file:
        smiles = [file.readline().split()[0] for _ in range(NUM_MOLECULES)]
    hexes = [
        DataStructs.BitVectToFPSText(Chem.RDKFingerprint(Chem.MolFromSmiles(s), maxPath=max_path, fpSize=num_bits,
                                                         nBitsPerHash=1))
        for s in smiles
    ]
    return hexes + hexes[:5] + ["0" * (num_bits // 4)] * 5


def library_scores(hexes, num_bits):
    """(measure, alpha, beta) -> matrix."""
    keys = [(name, "0", "0") for name in PLAIN] + [("QXTversky", *pair) for pair in ROUNDED + EXACT]
    coefficients = [word for pair in ROUNDED + EXACT for word in pair]
    done = subprocess.run([os.environ["QX_SCORE_TABLE"], str(num_bits), *coefficients], check=True,
                          input="".join(line + "\n" for line in hexes).encode(), stdout=subprocess.PIPE)
    tables = np.frombuffer(done.stdout, dtype=np.float32).reshape(len(keys), len(hexes), len(hexes))
    return dict(zip(keys, tables))


def as_number(text):
    return float.fromhex(text) if "x" in text else float(text)


class Scores(unittest.TestCase):
    def check(self, num_bits, hexes):
        data = np.frombuffer(bytes.fromhex("".join(hexes)), dtype=np.uint8).reshape(len(hexes), -1)
        counts = bit_counts(np.unpackbits(data, axis=1, bitorder="little"))
        for what, count in zip("abcd", counts):
            self.assertGreater(np.count_nonzero(count), count.size // 2, f"{what} should be frequent")
        vectors = [DataStructs.CreateFromFPSText(line) for line in hexes]
        for (measure, alpha, beta), scores in library_scores(hexes, num_bits).items():
            with self.subTest(measure=measure, alpha=alpha, beta=beta):
                expected = score(measure, counts, as_number(alpha), as_number(beta))
                np.testing.assert_array_equal(scores.view(np.uint32), expected.view(np.uint32))
                if measure in RDKIT:
                    self.check_rdkit(scores, counts, vectors, RDKIT[measure])
                elif measure == "QXTversky" and (alpha, beta) in EXACT:
                    self.check_rdkit(scores, counts, vectors,
                                     lambda v, vs: DataStructs.BulkTverskySimilarity(v, vs, float(alpha), float(beta)))

    def check_rdkit(self, scores, counts, vectors, bulk):
        """Within one unit in the last place wherever two fingerprints share a bit.

        Without one, RDKit's answer is a matter of convention: two without bits score 1 by Tanimoto and Tversky and 0
        by Cosine and Dice, and Tversky scores 1 where its denominator is 0. Here two without bits score 1 by every
        similarity, and Tversky scores 0 where nothing is shared; the reference has these pairs.
        """
        rdkit = np.array([bulk(vector, vectors) for vector in vectors]).astype(np.float32)
        shared = counts[2] > 0
        np.testing.assert_array_max_ulp(scores[shared], rdkit[shared], maxulp=1)

    def test_path_fingerprints(self):
        self.check(1000, fingerprints(1000, 5))  # no power of two: quotients by the size are rounded

    def test_small_fingerprints_where_all_counts_are_frequent(self):
        self.check(64, fingerprints(64, 3))

    def test_many_bits_whose_products_a_float_rounds(self):
        random = np.random.default_rng(1)
        bits = random.random((100, 16384)) < random.random((100, 1))
        self.check(16384, [row.tobytes().hex() for row in np.packbits(bits, axis=1, bitorder="little")])


if __name__ == "__main__":
    unittest.main()
