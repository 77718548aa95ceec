"""qxfp matrix and qxfp histogram."""

import csv
import io
import json
import math
import re
import struct
import unittest

from qxfp_case import BAD_USAGE, CANNOT_RUN, SOME_FAILED, QxfpCase, count_bits, parse_tsv, scores

SIZE = 1024
# Weights that floating-point numbers hold exactly.
TVERSKY = ["-simfunc", "Tversky", "-alpha", "0.25", "-beta", "0.75"]


def single(value):
    return struct.unpack("f", struct.pack("f", value))[0]


class PairsCase(QxfpCase):
    """Some molecules twice, so that scores are equal and others come before a record itself."""

    def setUp(self):
        super().setUp()
        self.sample(120)
        self.write("all.smi", self.read("sample.smi") + self.read(self.sample(15, "again.smi")) + b"C1CC unclosed\n")
        self.run_qxfp("create", "all.smi", "all.fpbin", "-numbits", str(SIZE), status=SOME_FAILED)
        lines = self.run_qxfp("fp", "all.smi", "-numbits", str(SIZE), "-out", "onbits", status=SOME_FAILED)[0]
        cells = [line.split("\t") for line in lines.decode().splitlines()]
        self.titles = [title for title, _ in cells]
        self.bits = [set() if bits == "-" else {int(bit) for bit in bits.split(",")} for _, bits in cells]

    def score(self, i, j, measure):
        if not self.bits[i] and not self.bits[j] and measure == "Tversky":
            return 0.0  # in a fast fingerprint file nothing has nothing in common with nothing
        return scores(*count_bits(self.bits[i], self.bits[j], SIZE), alpha=0.25, beta=0.75)[measure]


class MatrixTest(PairsCase):
    def matrix(self, *arguments):
        output, errors = self.run_qxfp("matrix", "all.fpbin", *arguments)
        self.assertEqual(errors, b"")
        return parse_tsv(output)

    def neighbours(self, measure, limit, keeps=lambda score: True, descending=True):
        for i in range(len(self.bits)):
            found = [(single(self.score(i, j, measure)), j) for j in range(len(self.bits)) if j != i]
            found = sorted(found, key=lambda pair: (-pair[0] if descending else pair[0], pair[1]))
            for score, j in [pair for pair in found if keeps(pair[0])][:limit]:
                yield {"i": str(i), "j": str(j), "score": f"{score:.6f}"}

    def test_neighbours_are_those_of_a_naive_comparison(self):
        every = len(self.bits)
        cases = [
            ([], self.neighbours("Tanimoto", 10)),
            (["-limit", "1"], self.neighbours("Tanimoto", 1)),
            (["-limit", "0"], self.neighbours("Tanimoto", every)),
            (["-limit", str(every - 1), "-memory", "memory"], self.neighbours("Tanimoto", every)),
            (["-limit", str(every)], self.neighbours("Tanimoto", every)),
            (["-limit", "100000", "-cutoff", "0.5"], self.neighbours("Tanimoto", every, lambda s: s >= 0.5)),
            ([*TVERSKY, "-limit", "4"], self.neighbours("Tversky", 4)),
            (["-simfunc", "Manhattan", "-descending", "false", "-limit", "3"],
             self.neighbours("Manhattan", 3, descending=False)),
        ]
        for arguments, expected in cases:
            with self.subTest(arguments):
                self.assertEqual(self.matrix(*arguments), list(expected))

    def test_titles_belong_to_the_records(self):
        rows = self.matrix("-titles", "-limit", "2")
        for row in rows:
            self.assertEqual((row["title_i"], row["title_j"]), (self.titles[int(row["i"])], self.titles[int(row["j"])]))
        _, errors = self.run_qxfp("matrix", "all.fpbin", "-titles", "-mols", "sample.smi", status=CANNOT_RUN)
        self.assertIn(b"sample.smi", errors)

    def test_small_files_have_few_neighbours(self):
        for count in (1, 2, 3):
            molecules = self.sample(count, "few.smi")
            self.run_qxfp("create", molecules, "few.fpbin")
            output, errors = self.run_qxfp("matrix", "few.fpbin")
            self.assertEqual((len(parse_tsv(output)), errors), (count * (count - 1), b""))


class HistogramTest(PairsCase):
    def histogram(self, *arguments):
        return parse_tsv(self.run_qxfp("histogram", "all.fpbin", *arguments)[0])

    def assert_counts(self, rows, values, num_bins):
        counts = [0] * num_bins
        for value in values:
            counts[min(math.floor(value / (1 / num_bins)), num_bins - 1)] += 1
        self.assertEqual([int(row["count"]) for row in rows], counts)
        self.assertEqual([row["fraction"] for row in rows], [f"{count / len(values):.6f}" for count in counts])
        self.assertEqual([(row["from"], row["to"]) for row in rows],
                         [(f"{k / num_bins:.6f}", f"{(k + 1) / num_bins:.6f}") for k in range(num_bins)])

    def test_counts_are_those_of_a_naive_comparison(self):
        n = len(self.bits)
        pairs = [(i, j) for i in range(n) for j in range(i)]
        self.assert_counts(self.histogram(), [self.score(i, j, "Tanimoto") for i, j in pairs], 20)
        rows = self.histogram("-simfunc", "Manhattan", "-bins", "64", "-memory", "memory")
        self.assert_counts(rows, [self.score(i, j, "Manhattan") for i, j in pairs], 64)
        both_ways = [self.score(i, j, "Tversky") for i in range(n) for j in range(n)]
        self.assert_counts(self.histogram(*TVERSKY, "-bins", "7"), both_ways, 7)

    def test_query_is_counted_against_every_record(self):
        expected = [self.score(17, j, "Tversky") for j in range(len(self.bits))]
        smiles = self.read("all.smi").decode().splitlines()[17].split()[0]
        for query in ("@17", smiles):
            self.assert_counts(self.histogram("-query", query, *TVERSKY), expected, 20)

    def test_forms_hold_the_same_rows_and_the_table_has_bars(self):
        rows = self.histogram("-bins", "8")
        output = {form: self.run_qxfp("histogram", "all.fpbin", "-bins", "8", "-out", form)[0].decode()
                  for form in ("csv", "json", "table")}
        self.assertEqual(list(csv.DictReader(io.StringIO(output["csv"]))), rows)
        self.assertEqual([o["count"] for o in json.loads(output["json"])], [int(row["count"]) for row in rows])
        table, summary = output["table"].split("\n\n")
        highest = max(int(row["count"]) for row in rows)
        for line, row in zip(table.splitlines()[1:], rows, strict=True):
            bar = "#" * math.ceil(50 * int(row["count"]) / highest)
            self.assertEqual(line.split(), [*row.values(), bar] if bar else list(row.values()))
        centers = [(k + 0.5) / 8 for k in range(8)]
        mean = sum(float(row["fraction"]) * center for row, center in zip(rows, centers))
        self.assertTrue(summary.startswith(f"{sum(int(row['count']) for row in rows)} scores; "))
        self.assertAlmostEqual(float(re.search(r"mean (\S+),", summary)[1]), mean, delta=1e-5)

    def test_one_record_has_no_pairs(self):
        self.run_qxfp("create", self.sample(1, "one.smi"), "one.fpbin")
        rows = parse_tsv(self.run_qxfp("histogram", "one.fpbin", "-bins", "2")[0])
        self.assertEqual([(row["count"], row["fraction"]) for row in rows], [("0", "0.000000")] * 2)


class RefusalTest(QxfpCase):
    def test_what_cannot_be_compared_is_refused(self):
        self.run_qxfp("create", self.sample(5, "a.smi"), "a.fpbin")
        self.write("cut.fpbin", self.read("a.fpbin")[:-8])
        cases = [
            (["matrix", "a.smi"], CANNOT_RUN, b"'a.smi' is a molecule file"),
            (["matrix", "cut.fpbin"], CANNOT_RUN, b"cut.fpbin"),
            (["matrix", "a.fpbin", "-limit", "-1"], BAD_USAGE, b"-limit"),
            (["histogram", "gone.fpbin"], CANNOT_RUN, b"gone.fpbin"),
            (["histogram", "a.fpbin", "-bins", "0"], BAD_USAGE, b"-bins"),
            (["histogram", "a.fpbin", "-query", "a.smi"], BAD_USAGE, b"'a.smi' names a molecule file"),
            (["histogram", "a.fpbin", "-query", "@5"], CANNOT_RUN, b"query '@5': there are only 5 fingerprints"),
            (["histogram", "a.fpbin", "-query", "C1CC"], CANNOT_RUN, b"query 'C1CC': unclosed"),
        ]
        for arguments, status, part in cases:
            with self.subTest(arguments):
                output, errors = self.run_qxfp(*arguments, status=status)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)


if __name__ == "__main__":
    unittest.main()
