"""qxfp search through an index."""

import os
import unittest

from qxfp_case import DATA, QxfpCase

INDEX = b"searching the index\n"
SCAN = b"scanning the records\n"


class SearchIndexTest(QxfpCase):
    def setUp(self):
        super().setUp()
        with open(os.path.join(DATA, "molecules.smi"), "rb") as file:
            self.write("mols.smi", 2 * file.read())  # enough for an index to pay, and every score at least twice
        self.run_qxfp("create", "mols.smi", "a.fpbin", "-fptype", "Circular")

    def expect(self, arguments, index, way, warnings=0):
        """Searches, and expects that it goes that way; answers the hits."""
        output, errors = self.run_qxfp("search", "a.fpbin", *arguments, "-index", index)
        self.assertEqual(errors.count(b"\n"), warnings, errors)
        verbose_output, errors = self.run_qxfp("search", "a.fpbin", *arguments, "-index", index, "-verbose")
        self.assertEqual(verbose_output, output)
        self.assertEqual({INDEX: errors.count(INDEX), SCAN: errors.count(SCAN)}, {INDEX: 0, SCAN: 0, **way}, errors)
        self.assertEqual(errors.count(b"qxfp: verbose: "), sum(way.values()), errors)
        self.assertEqual(errors.count(b"qxfp: warning: "), warnings, errors)
        return output

    def test_hits_do_not_depend_on_the_index(self):
        drugs = os.path.join(DATA, "drugs.smi")
        cases = [
            (["CC(=O)Oc1ccccc1C(=O)O"], INDEX),
            (["@4711", "-limit", "100"], INDEX),
            (["@17", "-cutoff", "0.15", "-limit", "0"], INDEX),
            ([drugs, "-limit", "3", "-threads", "2"], INDEX),
            ([drugs, "-cutoff", "0.4", "-limit", "0", "-simfunc", "Dice"], INDEX),
            (["@5", "-simfunc", "Manhattan", "-descending", "false"], INDEX),
            (["@5", "-descending", "false"], SCAN),  # the least similar: every record has to be counted
        ]
        expected = []
        for arguments, way in cases:
            expected.append(self.expect(arguments, "none", {SCAN: 1}))
            self.assertGreater(expected[-1].count(b"\n"), 5, arguments)
            self.assertEqual(self.expect(arguments, "file", {SCAN: 1}), expected[-1])  # there is none yet
            self.assertEqual(self.expect(arguments, "build", {way: 1}), expected[-1])
        self.run_qxfp("index", "a.fpbin")
        for (arguments, way), hits in zip(cases, expected, strict=True):
            for more in ([], ["-memory", "memory"]):
                self.assertEqual(self.expect(arguments + more, "file", {way: 1}), hits)

    def test_stale_index_is_left_aside_with_a_warning(self):
        self.run_qxfp("index", "a.fpbin")
        query = ["@4711", "-limit", "20"]
        hits = self.expect(query, "file", {INDEX: 1})
        os.utime(self.path("a.fpbin"), (0, 0))
        self.assertEqual(self.expect(query, "file", {SCAN: 1}, warnings=1), hits)
        self.assertEqual(self.expect(query, "build", {INDEX: 1}, warnings=1), hits)
        self.assertEqual(self.expect(query, "none", {SCAN: 1}), hits)
        for arguments in (["matrix", "-limit", "1"], ["histogram", "-query", "@1"]):  # which have no use for an index
            self.assertEqual(self.run_qxfp(arguments[0], "a.fpbin", *arguments[1:])[1], b"")


if __name__ == "__main__":
    unittest.main()
