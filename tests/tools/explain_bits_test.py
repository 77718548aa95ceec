"""qxfp explain for fingerprints whose patterns are hashed into bits."""

import json
import os
import unittest

try:
    from rdkit import Chem
except ImportError:
    Chem = None

from qxfp_case import BAD_USAGE, CANNOT_RUN, DATA, QxfpCase, parse_tsv

ASPIRIN = "CC(=O)Oc1ccccc1C(=O)O"
SALICYLIC = "O=C(O)c1ccccc1O"


class ExplainBitsTest(QxfpCase):
    def explain(self, *arguments):
        output, errors = self.run_qxfp("explain", *arguments)
        self.assertEqual(errors, b"")
        return parse_tsv(output)

    def test_bits_are_those_of_the_fingerprint(self):
        self.write("one.smi", ASPIRIN.encode() + b" one\n")
        for kind in ("Path", "Circular", "Tree"):
            line = self.run_qxfp("fp", "one.smi", "-type", kind, "-out", "onbits")[0].decode().split()[1]
            rows = self.explain(ASPIRIN, "-type", kind)
            self.assertEqual(sorted({int(row["bit"]) for row in rows}), [int(bit) for bit in line.split(",")])
            shared = self.explain(ASPIRIN, SALICYLIC, "-type", kind)
            ids = {row["id"] for row in rows} & {row["id"] for row in self.explain(SALICYLIC, "-type", kind)}
            self.assertEqual({row["id"] for row in shared}, ids)

    def test_a_bit_names_its_patterns_and_atoms(self):
        words = "Path,ver=2.0.0,size={},bonds=1-1,atype=AtmNum,btype=Order"
        (row,) = self.explain("[H]OC([H])([H])C", "-type", words.format(4096), "-bit", "548")
        self.assertEqual((row["pattern"], row["matches"], row["atoms"]), ("[#8]-[#6]", "1", "1,2"))
        # in few bits several patterns share one
        rows = self.explain("CCOC(=O)CN", "-type", words.format(16), "-bit", "12")
        self.assertEqual({row["pattern"] for row in rows}, {"[#6]-[#6]", "[#6]-[#7]", "[#7]-[#6]"})

    def test_the_number_has_to_fit_the_kind(self):
        for arguments, part in [
            (["-type", "Tree", "-key", "1"], b"-key is not for"),
            (["-bit", "1"], b"-bit is not for"),
            (["-type", "UHTree", "-bit", "1"], b"-bit is not for"),
            (["-type", "Tree", "-bit", "4096"], b"-bit 4096 is not from 0 to 4095"),
        ]:
            self.assertIn(part, self.run_qxfp("explain", "CCO", *arguments, status=BAD_USAGE)[1])

    def test_the_type_is_taken_as_it_is_or_refused(self):
        (row,) = self.explain("CCO", "-fptype", "Tree", "-maxdistance", "0", "-numbits", "64", "-atomtype", "None")
        self.assertEqual((row["pattern"], row["atoms"]), ("*", "0,1,2"))
        for arguments, part in [
            (["CCO", "-type", "Tree,ver=2.0.0,size=4096,bonds=0-11,atype=AtmNum,btype=Order"], b"max bonds 11"),
            (["CCO", "-type", "Path,ver=2.0.0,size=10,bonds=0-4,atype=AtmNum,btype=Order"], b"size 10"),
        ]:
            output, errors = self.run_qxfp("explain", *arguments, status=CANNOT_RUN)
            self.assertEqual((output, errors.count(b"\n")), (b"", 1))
            self.assertIn(part, errors)

    def test_too_many_patterns_are_an_error_and_no_bit_without_them(self):
        star = "*" + "(*)" * 90
        output, errors = self.run_qxfp("explain", "CCO", star, "-type", "Tree", "-bit", "7", status=CANNOT_RUN)
        self.assertEqual(output, b"")
        self.assertIn(b"QXGetFPPatterns() : more than 2000000 patterns with max bonds 4 for tree", errors)
        self.assertNotIn(b"set in B", errors)

    def test_tokens_are_those_of_the_fingerprint(self):
        self.write("one.smi", ASPIRIN.encode() + b" one\n")
        for kind in ("UHPath", "UHCircular", "UHTree"):
            text = self.run_qxfp("fp", "one.smi", "-type", kind, "-out", "text")[0].decode().split("\t")[1]
            rows = self.explain(ASPIRIN, "-type", kind)
            self.assertEqual([row["token"] for row in rows for _ in range(int(row["matches"]))], text.split())
            shared = self.explain(ASPIRIN, SALICYLIC, "-type", kind)
            tokens = {row["token"] for row in rows} & {row["token"] for row in self.explain(SALICYLIC, "-type", kind)}
            self.assertEqual({row["token"] for row in shared}, tokens)

    @unittest.skipIf(Chem is None, "no RDKit")
    def test_rdkit_finds_the_patterns_where_they_are(self):
        with open(os.path.join(DATA, "molecules.smi"), encoding="utf-8") as file:
            molecules = [line.split()[0] for line in file][:400:10]
        molecules += ["C/C=C/C(N)O", "[NH3]->[Cu]Cl", "CC~CC"]
        for smiles in molecules:
            mol = Chem.MolFromSmiles(smiles)
            for kind in ("Path", "Circular", "Tree"):
                for row in json.loads(self.run_qxfp("explain", smiles, "-type", kind, "-out", "json")[0]):
                    matches = mol.GetSubstructMatches(Chem.MolFromSmarts(row["pattern"]), maxMatches=100000)
                    atoms = {int(atom) for atom in row["atoms"].split(",")}
                    found = [match for match in matches if atoms.issuperset(match)]
                    self.assertTrue(found, (smiles, row))
                    if row["matches"] == 1:
                        self.assertTrue(any(atoms == set(match) for match in found), (smiles, row))


if __name__ == "__main__":
    unittest.main()
