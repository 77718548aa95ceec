"""qxfp compare."""

import csv
import io
import json
import os
import unittest

from qxfp_case import (BAD_USAGE, CANNOT_RUN, DATA, QxfpCase, count_bits, count_lingos, parse_tsv, scores,
                       token_tanimoto)

ASPIRIN = "CC(=O)Oc1ccccc1C(=O)O"
UNHASHED = "UHPath,ver=2.0.0,bonds=1-4,atype=AtmNum|Arom,btype=Order"


class CompareTest(QxfpCase):
    def setUp(self):
        super().setUp()
        with open(os.path.join(DATA, "drugs.smi"), encoding="utf-8") as file:
            self.smiles = [line.split()[0] for line in file] + [ASPIRIN, "CCO", "OCC", "C", "CC"]
        self.write("all.smi", "".join(smiles + "\n" for smiles in self.smiles).encode())

    def fingerprints(self, *arguments):
        lines = self.run_qxfp("fp", "all.smi", *arguments)[0].decode().splitlines()
        return [line.split("\t")[1] for line in lines]

    def compare(self, *arguments):
        output, errors = self.run_qxfp("compare", *arguments)
        self.assertEqual(errors, b"")
        return parse_tsv(output)

    def check(self, expect, fingerprints, *arguments):
        """Compares all pairs; expect tells counts and scores of two fingerprints."""
        for i, a in enumerate(self.smiles):
            for j, b in enumerate(self.smiles):
                counts, expected = expect(fingerprints[i], fingerprints[j])
                rows = self.compare(a, b, *arguments)
                self.assertEqual([row["measure"] for row in rows], list(expected))
                for row in rows:
                    self.assertAlmostEqual(float(row["score"]), expected[row["measure"]], delta=1e-6, msg=(a, b, row))
                    self.assertEqual([int(cell) for cell in list(row.values())[2:]], list(counts), (a, b))

    def test_scores_and_counts_are_those_of_the_bits(self):
        options = ["-numbits", "512", "-mindistance", "1"]  # "C" has no bits
        bits = [{int(bit) for bit in text.split(",") if bit} for text in self.fingerprints(*options, "-out", "onbits")]
        self.assertIn(set(), bits)

        def expect(a, b):
            counts = count_bits(a, b, 512)
            return counts, scores(*counts, 0.25, 1)
        self.check(expect, bits, *options, "-alpha", "0.25", "-beta", "1")

    def test_lingos_are_counted_as_often_as_they_occur(self):
        texts = self.fingerprints("-type", "Lingo", "-out", "text")
        self.assertLess(min(len(text) for text in texts), 4)

        def expect(a, b):
            counts = count_lingos(a, b)
            # Texts too short to have Lingos score 0 by every measure unless they are equal.
            is_short = min(len(a), len(b)) < 4 and a != b
            return counts[:3], {name: 0 if is_short else value for name, value in scores(*counts).items()}
        self.check(expect, texts, "-type", "Lingo")

    def test_unhashed_fingerprints_have_a_tanimoto_only(self):
        texts = self.fingerprints("-type", UNHASHED, "-out", "text")
        for i, a in enumerate(self.smiles):
            (row,) = self.compare(ASPIRIN, a, "-type", UNHASHED)
            self.assertEqual(row["measure"], "Tanimoto")
            self.assertAlmostEqual(float(row["score"]), token_tanimoto(texts[self.smiles.index(ASPIRIN)], texts[i]), 6)
        self.assertEqual(self.compare("C", "N", "-type", UNHASHED), [{"measure": "Tanimoto", "score": "nan"}])
        (record,) = json.loads(self.run_qxfp("compare", "C", "N", "-type", UNHASHED, "-out", "json")[0])
        self.assertEqual(record, {"measure": "Tanimoto", "score": None})

    def test_forms_hold_the_same_rows(self):
        rows = self.compare(ASPIRIN, "CCO", "-precision", "3")
        self.assertTrue(all(len(row["score"]) == 5 for row in rows))
        arguments = ["compare", ASPIRIN, "CCO", "-precision", "3", "-out"]
        self.assertEqual(list(csv.DictReader(io.StringIO(self.run_qxfp(*arguments, "csv")[0].decode()))), rows)
        objects = json.loads(self.run_qxfp(*arguments, "json")[0])
        self.assertEqual([list(o.values())[2:] for o in objects], [[int(n) for n in list(r.values())[2:]] for r in rows])
        table = [line.split() for line in self.run_qxfp(*arguments, "table")[0].decode().splitlines()]
        self.assertEqual(table, [list(rows[0])] + [list(row.values()) for row in rows])

    def test_what_cannot_be_compared_is_named(self):
        cases = [
            (["C1CC", "C"], CANNOT_RUN, b"A 'C1CC': unclosed"),
            (["C", "C("], CANNOT_RUN, b"B 'C('"),
            (["", "C"], CANNOT_RUN, b"A ''"),
            (["all.smi", "C"], BAD_USAGE, b"'all.smi' names a file: compare takes two SMILES"),
            (["C", "gone.SDF.gz"], BAD_USAGE, b"'gone.SDF.gz' names a file"),
            (["all.fpbin", "C"], BAD_USAGE, b"'all.fpbin' names a file"),
            (["C"], BAD_USAGE, b""),
            (["C", "C", "-simfunc", "Dice"], BAD_USAGE, b"-simfunc"),
            (["C", "C", "-type", "Path", "-numbits", "64"], BAD_USAGE, b"excludes -numbits"),
            (["C", "C", "-maxdistance", "5", "-numbits", "16", "-type", "Pfad"], BAD_USAGE, b"excludes"),
        ]
        for arguments, status, part in cases:
            with self.subTest(arguments):
                output, errors = self.run_qxfp("compare", *arguments, status=status)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)


if __name__ == "__main__":
    unittest.main()
