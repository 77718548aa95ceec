"""qxfp search."""

import csv
import io
import json
import os
import shutil
import unittest

from qxfp_case import (AWKWARD, CANNOT_RUN, DATA, DONE, SOME_FAILED, QxfpCase, parse_tsv, tanimoto)

COUNT = 1500
ASPIRIN = "CC(=O)Oc1ccccc1C(=O)O"


class SearchTest(QxfpCase):
    def setUp(self):
        super().setUp()
        self.molecules = self.sample(COUNT)
        self.run_qxfp("create", self.molecules, "all.fpbin", "-numbits", "1024")
        self.records = [line.split() for line in self.read(self.molecules).decode().splitlines()]

    def bits_of(self, molecules):
        lines = self.run_qxfp("fp", molecules, "-numbits", "1024", "-out", "onbits")[0].decode().splitlines()
        return [{int(bit) for bit in line.split("\t")[1].split(",")} for line in lines]

    def search(self, *arguments, status=DONE):
        return parse_tsv(self.run_qxfp("search", "all.fpbin", *arguments, status=status)[0])

    def test_hits_are_those_of_a_naive_search(self):
        with open(os.path.join(DATA, "drugs.smi"), "rb") as drugs:  # and more than are searched for at once
            self.write("queries.smi", drugs.read() + self.read(self.sample(150, "other.smi", start=COUNT)))
        names = [line.split()[1] for line in self.read("queries.smi").decode().splitlines()]
        stored = self.bits_of(self.molecules)
        expected = []
        for name, query in zip(names, self.bits_of("queries.smi"), strict=True):
            scores = [tanimoto(query, bits) for bits in stored]
            best = sorted(range(COUNT), key=lambda i: (-scores[i], i))[:25]
            for rank, i in enumerate(best, 1):
                expected.append({"query": name, "rank": str(rank), "index": str(i), "score": f"{scores[i]:.6f}",
                                 "title": self.records[i][1], "smiles": self.records[i][0]})
        for threads in ("1", "2", "0"):
            self.assertEqual(self.search("queries.smi", "-limit", "25", "-threads", threads), expected)

    def test_library_options_shape_the_hits(self):
        query = self.bits_of(self.write("query.smi", ASPIRIN.encode() + b"\n"))[0]
        stored = self.bits_of(self.molecules)
        scores = sorted((tanimoto(query, bits) for bits in stored), reverse=True)
        self.assertEqual(len(self.search(ASPIRIN)), 10)
        cutoff = self.search(ASPIRIN, "-cutoff", "0.25", "-limit", "0")
        self.assertEqual([row["score"] for row in cutoff], [f"{score:.6f}" for score in scores if score > 0.25])
        lowest = self.search(ASPIRIN, "-descending", "false", "-limit", "3", "-precision", "2")
        self.assertEqual([row["score"] for row in lowest], [f"{score:.2f}" for score in scores[:-4:-1]])
        dice = self.search(ASPIRIN, "-simfunc", "Dice", "-limit", "1")[0]
        self.assertAlmostEqual(float(dice["score"]), 2 * scores[0] / (1 + scores[0]), places=6)
        weights = ["-simfunc", "Tversky", "-alpha", "1", "-beta", "1"]
        self.assertEqual([row["score"] for row in self.search(ASPIRIN, *weights)], [f"{s:.6f}" for s in scores[:10]])

    def test_distance_is_ordered_as_asked_and_hinted_at(self):
        output, errors = self.run_qxfp("search", "all.fpbin", "@7", "-simfunc", "Manhattan", "-limit", "1")
        self.assertIn(b"qxfp: info: Manhattan is a distance", errors)
        self.assertNotEqual(parse_tsv(output)[0]["index"], "7")
        output, errors = self.run_qxfp("search", "all.fpbin", "@7", "-simfunc", "Manhattan", "-descending", "false",
                                       "-limit", "1")
        self.assertEqual(errors, b"")
        self.assertEqual(parse_tsv(output)[0]["score"], "0.000000")

    def test_stored_record_finds_itself_and_the_hits_of_its_molecule(self):
        rows = self.search("@123")
        self.assertEqual((rows[0]["index"], rows[0]["score"]), ("123", "1.000000"))
        self.assertEqual(self.search(self.records[123][0]), rows)

    def test_forms_hold_the_same_rows(self):
        rows = self.search("@5")
        arguments = ["search", "all.fpbin", "@5", "-out"]
        self.assertEqual(list(csv.DictReader(io.StringIO(self.run_qxfp(*arguments, "csv")[0].decode()))), rows)
        objects = json.loads(self.run_qxfp(*arguments, "json")[0])
        self.assertEqual([(o["rank"], o["index"], f"{o['score']:.6f}", o["title"], o["smiles"]) for o in objects],
                         [(int(r["rank"]), int(r["index"]), r["score"], r["title"], r["smiles"]) for r in rows])
        table = self.run_qxfp(*arguments, "table")[0].decode().splitlines()
        self.assertEqual([line.split() for line in table], [list(rows[0])] + [list(row.values()) for row in rows])
        self.assertEqual(len({line.index(line.split()[3]) for line in table}), 1, "titles begin in one column")

    def test_terminal_gets_a_table(self):
        status, shown = self.run_on_terminal("search", "all.fpbin", "@5", stream="stdout")
        self.assertEqual(status, DONE)
        self.assertEqual(shown, self.run_qxfp("search", "all.fpbin", "@5", "-out", "table")[0])

    def test_awkward_titles_do_not_break_the_forms(self):
        self.write("awkward.smi", AWKWARD)
        self.run_qxfp("create", "awkward.smi", "awkward.fpbin", status=SOME_FAILED)
        arguments = ["search", "awkward.fpbin", "CC", "-limit", "0", "-descending", "false"]
        rows = parse_tsv(self.run_qxfp(*arguments)[0])
        self.assertEqual(sorted(int(row["index"]) for row in rows), list(range(8)))
        titles = {int(row["index"]): row["title"] for row in rows if row["index"] != "7"}
        self.assertEqual(titles[4], "tab here")
        self.assertEqual(titles[5], "red [31m")
        text = self.run_qxfp(*arguments, "-out", "csv")[0]
        self.assertIn(b',"say ""hi"", all",CCC=O\n', text)
        json.loads(self.run_qxfp(*arguments, "-out", "json")[0].decode("utf-8"))
        self.assertNotIn(b"\x1b", self.run_qxfp(*arguments, "-out", "table")[0])

    def test_several_queries_go_on_after_a_bad_one(self):
        self.write("queries.smi", ASPIRIN.encode() + b" aspirin\nC1CC unclosed\nCCO\n")
        output, errors = self.run_qxfp("search", "all.fpbin", "queries.smi", "-limit", "2", status=SOME_FAILED)
        self.assertEqual([row["query"] for row in parse_tsv(output)], ["aspirin", "aspirin", "2", "2"])
        self.assertEqual(errors.count(b"qxfp: warning: query 'unclosed': "), 1)

    def test_queries_that_cannot_run(self):
        cases = [("@1500", b"only 1500"), ("@99999999999999999999", b"query"), ("@x", b"query '@x'"), ("C1CC", b"query 'C1CC'"),
                 ("gone.smi", b"gone.smi"), ("", b"query ''"), ("[", b"query '['"), ("empty.smi", b"holds no molecules"),
                 ("one.smi", b"query 'unclosed'")]
        self.write("empty.smi", b"")
        self.write("one.smi", b"C1CC unclosed\n")
        for query, part in cases:
            with self.subTest(query):
                output, errors = self.run_qxfp("search", "all.fpbin", query, status=CANNOT_RUN)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)

    def test_every_memory_type_gives_the_same_rows(self):
        rows = self.search("@5")
        for memory in ("mmap", "memory", "gpu"):
            self.assertEqual(self.search("@5", "-memory", memory), rows)

    def test_damaged_file_is_refused(self):
        self.write("cut.fpbin", self.read("all.fpbin")[:-8])
        _, errors = self.run_qxfp("search", "cut.fpbin", "C", status=CANNOT_RUN)
        self.assertIn(b"cut.fpbin", errors)


class TitleTest(QxfpCase):
    def setUp(self):
        super().setUp()
        os.makedirs(self.path("first"))
        self.sample(50, "first/mols.smi")

    def titles(self, *arguments, status=DONE):
        output, errors = self.run_qxfp("search", *arguments, "-limit", "2", status=status)
        return [row["title"] for row in parse_tsv(output)], errors

    def test_molecule_file_is_found_where_it_was_or_beside(self):
        self.run_qxfp("create", "first/mols.smi", "first/all.fpbin")
        titles, errors = self.titles("first/all.fpbin", "@3")
        self.assertTrue(all(titles))
        self.assertEqual(errors, b"")
        os.rename(self.path("first"), self.path("second"))
        self.assertEqual(self.titles("second/all.fpbin", "@3"), (titles, b""))

    def test_missing_molecule_file_costs_titles_and_one_warning(self):
        self.run_qxfp("create", "first/mols.smi", "all.fpbin")
        titles, _ = self.titles("all.fpbin", "@3")
        os.rename(self.path("first/mols.smi"), self.path("moved.smi"))
        self.assertEqual(self.titles("all.fpbin", "@3", "-mols", "moved.smi"), (titles, b""))
        empty, errors = self.titles("all.fpbin", "@3")
        self.assertEqual(empty, ["", ""])
        self.assertEqual(errors.count(b"warning: "), 1)
        self.assertIn(b"first/mols.smi", errors)

    def test_other_molecules_are_not_taken_for_the_right_ones(self):
        self.run_qxfp("create", "first/mols.smi", "all.fpbin")
        self.sample(50, "other.smi", start=100)
        self.sample(49, "fewer.smi")
        for name in ("other.smi", "fewer.smi", "gone.smi"):
            _, errors = self.run_qxfp("search", "all.fpbin", "@3", "-mols", name, status=CANNOT_RUN)
            self.assertIn(name.encode(), errors)
        shutil.copy(self.path("other.smi"), self.path("first/mols.smi"))
        empty, errors = self.titles("all.fpbin", "@3")
        self.assertEqual(empty, ["", ""])
        self.assertEqual(errors.count(b"warning: "), 1)

    def test_smiles_of_other_formats_are_made(self):
        block = ("{title}\n\n\n  2  1  0  0  0  0  0  0  0  0999 V2000\n"
                 "    0.0000    0.0000    0.0000 C   0  0\n    1.5000    0.0000    0.0000 {element}   0  0\n"
                 "  1  2  1  0\nM  END\n$$$$\n")
        records = "".join(block.format(title=t, element=e) for t, e in (("methanol", "O"), ("methylamine", "N")))
        self.write("mols.sdf", records.encode())
        self.run_qxfp("create", "mols.sdf", "mols.fpbin")
        rows = parse_tsv(self.run_qxfp("search", "mols.fpbin", "mols.sdf", "-limit", "1")[0])
        self.assertEqual([(row["query"], row["title"], row["smiles"]) for row in rows],
                         [("methanol", "methanol", "CO"), ("methylamine", "methylamine", "CN")])


if __name__ == "__main__":
    unittest.main()
