"""qxfp search over a molecule file."""

import os
import unittest

from qxfp_case import (AWKWARD, AWKWARD_UNREADABLE, BAD_USAGE, CANNOT_RUN, DATA, DONE, SOME_FAILED, QxfpCase,
                       count_lingos, parse_tsv, scores, token_tanimoto)

ASPIRIN = "CC(=O)Oc1ccccc1C(=O)O"
COUNT = 700
UNHASHED = "UHPath,ver=2.0.0,bonds=0-3,atype=AtmNum|Arom,btype=Order"


class SearchMoleculesTest(QxfpCase):
    def search(self, *arguments, status=DONE):
        return parse_tsv(self.run_qxfp("search", *arguments, status=status)[0])

    def assert_same_hits(self, rows, expected):
        """The same rows; scores over a molecule file are in single precision."""
        def without_scores(given):
            return [{name: cell for name, cell in row.items() if name != "score"} for row in given]
        self.assertEqual(without_scores(rows), without_scores(expected))
        for row, other in zip(rows, expected):
            self.assertAlmostEqual(float(row["score"]), float(other["score"]), delta=1.5e-6)

    def test_hits_are_those_of_the_fingerprint_file(self):
        molecules = self.sample(COUNT)
        drugs = os.path.join(DATA, "drugs.smi")
        options = ["-numbits", "1024", "-maxdistance", "4"]
        self.run_qxfp("create", molecules, "all.fpbin", *options)
        cases = [
            [ASPIRIN],
            [ASPIRIN, "-simfunc", "Cosine", "-limit", "50"],
            [drugs, "-simfunc", "Dice", "-cutoff", "0.4", "-limit", "0"],
            ["@123", "-simfunc", "Tversky", "-alpha", "0.2", "-beta", "0.9"],
            [drugs, "-simfunc", "Manhattan", "-descending", "false", "-limit", "20"],
            ["@7", "-simfunc", "Euclid", "-descending", "false", "-cutoff", "0.8"],
        ]
        for arguments in cases:
            with self.subTest(arguments):
                expected = self.search("all.fpbin", *arguments)
                self.assertTrue(expected)
                for threads in ("1", "3"):
                    self.assert_same_hits(self.search(molecules, *arguments, *options, "-threads", threads), expected)

    def brute_force(self, molecules, kind, score):
        """The 30 best of every drug by the texts that fp prints."""
        drugs = os.path.join(DATA, "drugs.smi")
        queries, stored = ([line.split("\t") for line in self.run_qxfp("fp", file, "-type", kind, "-out", "text")[0]
                            .decode().splitlines()] for file in (drugs, molecules))
        smiles = [line.split()[0] for line in self.read(molecules).decode().splitlines()]
        for name, query in queries:
            found = [score(query, text) for _, text in stored]
            for rank, i in enumerate(sorted(range(len(found)), key=lambda i: (-found[i], i))[:30], 1):
                yield {"query": name, "rank": str(rank), "index": str(i), "score": f"{found[i]:.6f}",
                       "title": stored[i][0], "smiles": smiles[i]}

    def test_lingo_and_unhashed_hits_are_those_of_a_naive_search(self):
        molecules = self.sample(COUNT)
        drugs = os.path.join(DATA, "drugs.smi")
        for measure in ("Tanimoto", "Cosine", "Tversky"):
            expected = self.brute_force(molecules, "Lingo", lambda a, b: scores(*count_lingos(a, b))[measure])
            rows = self.search(molecules, drugs, "-type", "Lingo", "-simfunc", measure, "-limit", "30")
            self.assert_same_hits(rows, list(expected))
        rows = self.search(molecules, drugs, "-type", UNHASHED, "-limit", "30")
        self.assert_same_hits(rows, list(self.brute_force(molecules, UNHASHED, token_tanimoto)))

    def test_unreadable_records_are_named_and_not_found(self):
        self.write("awkward.smi", AWKWARD)
        arguments = ["search", "awkward.smi", "CCO", "-limit", "0", "-simfunc", "Manhattan", "-descending", "false"]
        output, errors = self.run_qxfp(*arguments, status=SOME_FAILED)
        rows = parse_tsv(output)
        self.assertEqual({int(row["index"]) for row in rows}, set(range(8)) - AWKWARD_UNREADABLE)
        self.assertEqual((rows[0]["index"], rows[0]["score"]), ("0", "0.000000"))
        self.assertEqual({row["index"]: row["title"] for row in rows}["4"], "tab here")
        self.assertEqual(errors.count(b"qxfp: warning: awkward.smi, line "), 3)
        self.assertIn(b"line 2 'unclosed': ", errors)
        self.assertEqual(self.search("awkward.smi", "@4", "-limit", "1", status=SOME_FAILED)[0]["title"], "tab here")
        _, errors = self.run_qxfp("search", "awkward.smi", "@1", status=CANNOT_RUN)
        self.assertIn(b"query '@1': unclosed", errors)

    def test_two_molecules_without_bits_are_alike(self):
        self.write("two.smi", b"CC ethane\nC methane\nN ammonia\n")
        self.run_qxfp("create", "two.smi", "two.fpbin", "-mindistance", "1")
        arguments = ["C", "-limit", "0"]
        self.assertEqual(self.search("two.fpbin", *arguments), [])
        rows = self.search("two.smi", *arguments, "-mindistance", "1")
        self.assertEqual([(row["title"], row["score"]) for row in rows], [("methane", "1.000000"), ("ammonia", "1.000000")])

    def test_what_cannot_be_searched_is_refused(self):
        self.sample(5, "a.smi")
        self.write("empty.smi", b"")
        self.write("bad.smi", b"C1CC\nC(\n")
        self.run_qxfp("create", "a.smi", "a.fpbin")
        cases = [
            (["a.fpbin", "C", "-numbits", "1024"], BAD_USAGE, b"-numbits is for a molecule file"),
            (["a.fpbin", "C", "-type", "Path"], BAD_USAGE, b"-type is for a molecule file"),
            (["a.smi", "C", "-mols", "a.smi"], BAD_USAGE, b"-mols is for a .fpbin file"),
            (["a.smi", "C", "-memory", "mmap"], BAD_USAGE, b"-memory is for a .fpbin file"),
            (["a.smi", "C", "-index", "none"], BAD_USAGE, b"-index is for a .fpbin file"),
            (["a.smi", "C", "-type", "UHPath", "-simfunc", "Dice"], BAD_USAGE, b"-simfunc Dice: unhashed"),
            (["a.smi", "C", "-type", "Pfad"], BAD_USAGE, b"'Pfad' is no fingerprint type"),
            (["a.smi", "C1CC"], CANNOT_RUN, b"query 'C1CC': unclosed"),
            (["a.smi", "@5"], CANNOT_RUN, b"query '@5': there are only 5 records"),
            (["a.smi", "empty.smi"], CANNOT_RUN, b"'empty.smi' holds no molecules"),
            (["empty.smi", "C"], CANNOT_RUN, b"'empty.smi' holds no molecules"),
            (["bad.smi", "C"], CANNOT_RUN, b"'bad.smi' holds no molecule that can be searched"),
            (["gone.smi", "C"], CANNOT_RUN, b"gone.smi"),
        ]
        for arguments, status, part in cases:
            with self.subTest(arguments):
                output, errors = self.run_qxfp("search", *arguments, status=status)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)

    def test_terminal_shows_progress(self):
        molecules = self.sample(4000)
        status, shown = self.run_on_terminal("search", molecules, "C", "-threads", "1", stream="stderr")
        self.assertEqual(status, DONE)
        self.assertRegex(shown, rb" %  \d+ of 4000 molecules")
        self.assertTrue(shown.endswith(b"\r\x1b[K"))


if __name__ == "__main__":
    unittest.main()
