"""qxfp explain."""

import json
import unittest
import xml.etree.ElementTree as ElementTree

from qxfp_case import BAD_USAGE, CANNOT_RUN, QxfpCase, parse_tsv

ASPIRIN = "CC(=O)Oc1ccccc1C(=O)O"
SALICYLIC = "O=C(O)c1ccccc1O"


class ExplainTest(QxfpCase):
    def explain(self, *arguments):
        output, errors = self.run_qxfp("explain", *arguments)
        self.assertEqual(errors, b"")
        return parse_tsv(output)

    def keys_of(self, smiles):
        self.write("one.smi", smiles.encode() + b" one\n")
        line = self.run_qxfp("fp", "one.smi", "-type", "MACCS166", "-out", "onbits")[0].decode().split()[1]
        return [str(int(bit) + 1) for bit in line.split(",")]

    def test_keys_are_those_of_the_fingerprint(self):
        self.assertEqual([row["key"] for row in self.explain(ASPIRIN)], self.keys_of(ASPIRIN))
        shared = set(self.keys_of(ASPIRIN)) & set(self.keys_of(SALICYLIC))
        self.assertEqual({row["key"] for row in self.explain(ASPIRIN, SALICYLIC)}, shared)

    def test_a_key_names_its_pattern_and_atoms(self):
        (row,) = self.explain("[H]OC([H])([H])C", "-key", "139")
        self.assertEqual(row, {"key": "139", "pattern": "[#8H]", "matches": "1", "atoms": "1"})
        (row,) = self.explain("CC(=O)O", "OCC=O", "-key", "154", "-type", "MACCS166,ver=2.2.0")
        self.assertEqual(list(row.values()), ["154", "[#6]=[#8]", "1", "1,2", "1", "2,3"])
        output, errors = self.run_qxfp("explain", "C", "CO", "-key", "139")
        self.assertEqual((parse_tsv(output), errors), ([], b"qxfp: warning: key 139 is not set in A\n"))
        (record,) = json.loads(self.run_qxfp("explain", "CO", "-key", "139", "-out", "json")[0])
        self.assertEqual(record, {"key": 139, "pattern": "[#8H]", "matches": 1, "atoms": "1"})

    def test_drawings_mark_what_is_explained(self):
        def marks(*arguments):
            self.explain(*arguments, "-svg", "out.svg")
            root = ElementTree.fromstring(self.read("out.svg"))
            self.assertTrue(root.tag.endswith("svg"))
            return root.get("width"), self.read("out.svg").count(b"#FF7F7F")
        self.assertEqual(marks(ASPIRIN), ("450px", 0))
        one_atom = marks(ASPIRIN, "-key", "139")[1]
        width, count = marks(ASPIRIN, SALICYLIC)
        self.assertEqual(width, "900px")
        self.assertGreater(count, 10 * one_atom)
        self.assertGreater(one_atom, 0)

    def test_matches_beyond_counting_are_said(self):
        output, errors = self.run_qxfp("explain", "*" + "(*)(*)(*)(*)(*)(*)(*)(*)(*)(*)" * 3, "-key", "106")
        self.assertEqual(parse_tsv(output)[0]["matches"], "4060")
        self.assertEqual(errors, b"")
        output, errors = self.run_qxfp("explain", "*" + "(*)(*)(*)(*)(*)(*)(*)(*)(*)(*)" * 5, "-key", "106")
        self.assertEqual(parse_tsv(output)[0]["matches"], "10000")
        self.assertEqual(errors, b"qxfp: warning: key 106: only the first 10000 matches in A are counted\n")

    def test_what_cannot_be_explained_is_named(self):
        cases = [
            (["C1CC"], CANNOT_RUN, b"A 'C1CC': unclosed"),
            (["C", "C("], CANNOT_RUN, b"B 'C('"),
            (["C", "-key", "167"], BAD_USAGE, b"-key 167 is not from 1 to 166"),
            (["C", "-key", "0"], BAD_USAGE, b"-key 0 is not from 1 to 166"),
            (["C", "-type", "Lingo"], BAD_USAGE, b"is not available for Lingo fingerprint!"),
            (["C", "-type", "Pfad"], BAD_USAGE, b"no fingerprint type"),
            ([], BAD_USAGE, b""),
        ]
        for arguments, status, part in cases:
            with self.subTest(arguments):
                output, errors = self.run_qxfp("explain", *arguments, status=status)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)
        for smiles, name, part in [("C", "no/out.svg", b"cannot make 'no/out.svg'"),
                                   ("C" * 501, "out.svg", b"501 atoms")]:
            output, errors = self.run_qxfp("explain", smiles, "-svg", name, status=CANNOT_RUN)
            self.assertEqual(output, b"")
            self.assertIn(part, errors)


if __name__ == "__main__":
    unittest.main()
