"""qxfp search -explain."""

import os
import unittest
import xml.etree.ElementTree as ElementTree

from qxfp_case import BAD_USAGE, SOME_FAILED, QxfpCase, parse_tsv

MOLECULES = b"CC(=O)Oc1ccccc1C(=O)O aspirin\nO=C(O)c1ccccc1O salicylic\nCCO ethanol\n"


class SearchExplainTest(QxfpCase):
    def setUp(self):
        super().setUp()
        self.write("mols.smi", MOLECULES)
        os.mkdir(self.path("out"))

    def search(self, *arguments, **options):
        return parse_tsv(self.run_qxfp("search", "mols.smi", *arguments, **options)[0])

    def test_rows_tell_what_is_shared(self):
        atoms = "Path,ver=2.0.0,size=4096,bonds=0-2,atype=AtmNum,btype=None"
        rows = self.search("CCO", "-type", atoms, "-explain", "2")
        self.assertEqual([row["title"] for row in rows[:1]], ["ethanol"])
        # C, O; CC, CO, OC; CCO and OCC, which are one path
        self.assertEqual((rows[0]["shared"], rows[0]["largest"]), ("7", "[#8]~[#6]~[#6] [#6]~[#6] [#6]~[#8]"))
        self.assertEqual([row["shared"] != "" for row in rows], [True, True, False])
        for kind in ("Circular", "Tree", "MACCS166"):
            (row,) = self.search("@0", "-type", kind, "-explain", "1", "-limit", "1")
            self.assertGreater(int(row["shared"]), 10, kind)

    def test_drawings_mark_query_and_hit(self):
        self.write("queries.smi", MOLECULES)
        self.search("queries.smi", "-explain", "2", "-svg", "out", "-limit", "2")
        self.assertEqual(sorted(os.listdir(self.path("out"))),
                         [f"query{query}_rank{rank}.svg" for query in (1, 2, 3) for rank in (1, 2)])
        drawing = self.read("out/query1_rank2.svg")
        self.assertEqual(ElementTree.fromstring(drawing).get("width"), "900px")
        self.assertIn(b"#FF7F7F", drawing)

    def test_what_cannot_be_explained_is_named(self):
        for arguments, part in [
            (["-type", "Lingo", "-explain", "1"], b"cannot be explained"),
            (["-svg", "out"], b"-svg draws what -explain explains"),
            (["-explain", "1", "-svg", "no"], b"-svg 'no' is not a folder"),
        ]:
            self.assertIn(part, self.run_qxfp("search", "mols.smi", "CCO", *arguments, status=BAD_USAGE)[1])
        # a .fpbin file without its molecules
        self.run_qxfp("create", "mols.smi", "mols.fpbin")
        os.remove(self.path("mols.smi"))
        output, errors = self.run_qxfp("search", "mols.fpbin", "CCO", "-explain", "1", status=SOME_FAILED)
        self.assertEqual(parse_tsv(output)[0]["shared"], "")
        self.assertIn(b"record 2 cannot be explained", errors)


if __name__ == "__main__":
    unittest.main()
