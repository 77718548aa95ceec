"""qxfp search -explain."""

import os
import unittest
import xml.etree.ElementTree as ElementTree

from qxfp_case import BAD_USAGE, SOME_FAILED, QxfpCase, parse_tsv

FULLERENE = (b"C12=C3C4=C5C6=C1C7=C8C9=C1C%10=C%11C(=C29)C3=C2C3=C4C4=C5C5=C9C6=C7C6=C7C8=C1C1=C8C%10=C%10C%11"
             b"=C2C2=C3C3=C4C4=C5C5=C%11C%12=C(C6=C95)C7=C1C1=C%12C5=C%11C4=C3C3=C5C(=C81)C%10=C23")
MOLECULES = b"CC(=O)Oc1ccccc1C(=O)O aspirin\nO=C(O)c1ccccc1O salicylic\nCCO ethanol\n"


class SearchExplainTest(QxfpCase):
    def setUp(self):
        super().setUp()
        self.write("mols.smi", MOLECULES)

    def search(self, *arguments, **options):
        return parse_tsv(self.run_qxfp("search", "mols.smi", *arguments, **options)[0])

    def test_rows_tell_what_is_shared(self):
        atoms = "Path,ver=2.0.0,size=4096,bonds=0-2,atype=AtmNum,btype=None"
        rows = self.search("CCO", "-type", atoms, "-explain", "2")
        self.assertEqual([row["title"] for row in rows[:1]], ["ethanol"])
        # C, O; CC, CO, OC; CCO and OCC, which are one path
        texts = "[#8]~[#6]~[#6] [#6]~[#6] [#6]~[#8] [#8] [#6]".split()
        self.assertEqual((rows[0]["shared"], rows[0]["patterns"].split()), ("7", texts))
        for number, shown in (("2", texts[:2]), ("0", texts)):
            rows = self.search("CCO", "-type", atoms, "-explain", "2", "-patterns", number)
            self.assertEqual(rows[0]["patterns"].split(), shown)
        self.assertEqual([row["shared"] != "" for row in rows], [True, True, False])
        for kind in ("Circular", "Tree", "MACCS166", "UHPath", "UHCircular", "UHTree"):
            (row,) = self.search("@0", "-type", kind, "-explain", "1", "-limit", "1")
            self.assertGreater(int(row["shared"]), 10, kind)

    def test_drawings_mark_query_and_hit(self):
        self.write("queries.smi", MOLECULES)
        self.search("queries.smi", "-explain", "2", "-svg", "some/out", "-limit", "2")
        self.assertEqual(sorted(os.listdir(self.path("some/out"))),
                         [f"query{query}_rank{rank}.svg" for query in (1, 2, 3) for rank in (1, 2)])
        drawing = self.read("some/out/query1_rank2.svg")
        self.assertEqual(ElementTree.fromstring(drawing).get("width"), "900px")
        self.assertIn(b"#FF7F7F", drawing)

    def test_what_cannot_be_explained_is_named(self):
        for arguments, part in [
            (["-type", "Lingo", "-explain", "1"], b"is not available for Lingo fingerprint!"),
            (["-svg", "out"], b"-svg is for what -explain explains"),
            (["-patterns", "2"], b"-patterns is for what -explain explains"),
            (["-explain", "1", "-svg", "mols.smi"], b"-svg 'mols.smi' cannot be made"),
        ]:
            self.assertIn(part, self.run_qxfp("search", "mols.smi", "CCO", *arguments, status=BAD_USAGE)[1])
        # a .fpbin file without its molecules
        self.run_qxfp("create", "mols.smi", "mols.fpbin")
        os.remove(self.path("mols.smi"))
        output, errors = self.run_qxfp("search", "mols.fpbin", "CCO", "-explain", "1", status=SOME_FAILED)
        self.assertEqual(parse_tsv(output)[0]["shared"], "")
        self.assertIn(b"record 2 cannot be explained", errors)

    def test_a_molecule_with_too_many_patterns_is_not_explained(self):
        self.write("mols.smi", FULLERENE + b" fullerene\nCCO ethanol\n")
        options = ["-type", "Path,ver=2.0.0,size=4096,bonds=0-16,atype=AtmNum,btype=None", "-explain", "2"]
        for query, explained in (("CCO", ["ethanol"]), ("@0", [])):
            output, errors = self.run_qxfp("search", "mols.smi", query, *options, status=SOME_FAILED)
            rows = parse_tsv(output)
            self.assertEqual(len(rows), 2)
            self.assertEqual([row["title"] for row in rows if row["shared"] + row["patterns"] != ""], explained)
            self.assertEqual(errors.count(b"cannot be explained: QXGetFPPatterns() : more than 2000000"), 1)
            self.assertEqual(errors.count(b"\n"), 1)


if __name__ == "__main__":
    unittest.main()
