"""qxfp explain for fingerprints whose patterns are hashed into bits."""

import unittest

from qxfp_case import BAD_USAGE, QxfpCase, parse_tsv

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
            (["-type", "Tree", "-bit", "4096"], b"-bit 4096 is not from 0 to 4095"),
        ]:
            self.assertIn(part, self.run_qxfp("explain", "CCO", *arguments, status=BAD_USAGE)[1])


if __name__ == "__main__":
    unittest.main()
