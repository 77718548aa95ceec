"""qxfp fp."""

import json
import random
import unittest

from qxfp_case import AWKWARD, AWKWARD_UNREADABLE, DONE, SOME_FAILED, QxfpCase


class FpTest(QxfpCase):
    def lines(self, *arguments, status=DONE):
        return [line.split(b"\t") for line in self.run_qxfp("fp", *arguments, status=status)[0].splitlines()]

    def test_forms_say_the_same(self):
        molecules = self.sample(300)
        hexes = self.lines(molecules)
        bits = self.lines(molecules, "-out", "bits")
        on_bits = self.lines(molecules, "-out", "onbits")
        objects = [json.loads(line) for line in self.run_qxfp("fp", molecules, "-out", "json")[0].splitlines()]
        titles = [line.split()[1] for line in self.read(molecules).splitlines()]
        for rows in (hexes, bits, on_bits):
            self.assertEqual([row[0] for row in rows], titles)
        for i, record in enumerate(objects):
            data = bytes.fromhex(hexes[i][1].decode())
            expected = [b for b in range(len(data) * 8) if data[b // 8] >> (b % 8) & 1]
            self.assertTrue(expected)
            self.assertEqual(record, {"index": i, "title": titles[i].decode(), "size": 4096, "onbits": expected})
            self.assertEqual([int(b) for b in on_bits[i][1].split(b",")], expected)
            self.assertEqual([b for b, bit in enumerate(bits[i][1]) if bit == ord("1")], expected)
            self.assertEqual(len(bits[i][1]), 4096)

    def test_lines_do_not_depend_on_the_threads(self):
        molecules = self.sample(1500)
        expected = self.run_qxfp("fp", molecules, "-threads", "1")
        self.assertEqual(expected[0].count(b"\n"), 1500)
        for threads in ("2", "3", "0"):
            self.assertEqual(self.run_qxfp("fp", molecules, "-threads", threads), expected)

    def test_unreadable_records_and_odd_titles_keep_two_columns(self):
        self.write("awkward.smi", AWKWARD)
        for form in ("hex", "bits", "onbits"):
            output, errors = self.run_qxfp("fp", "awkward.smi", "-out", form, status=SOME_FAILED)
            rows = [line.split(b"\t") for line in output.split(b"\n")[:-1]]
            self.assertEqual([len(row) for row in rows], [2] * 8)
            self.assertEqual([row[0] for row in rows[:7]],
                             [b"ethanol", b"unclosed", b"2", b"3", b"tab here", b"red [31m", b'CCC=O say "hi", all'[6:]])
            self.assertEqual({i for i, row in enumerate(rows) if row[1] == b"-"}, AWKWARD_UNREADABLE)
            self.assertEqual(errors.count(b"qxfp: warning: awkward.smi, line "), 3)
            self.assertIn(b"line 2 'unclosed': ", errors)

    def test_json_is_valid_whatever_the_titles_hold(self):
        self.write("awkward.smi", AWKWARD)
        output, _ = self.run_qxfp("fp", "awkward.smi", "-out", "json", status=SOME_FAILED)
        records = [json.loads(line) for line in output.decode("utf-8").splitlines()]
        self.assertEqual([record["index"] for record in records], list(range(8)))
        self.assertEqual([record["title"] for record in records[:7]],
                         ["ethanol", "unclosed", "", "", "tab\there", "red\x1b[31m", 'say "hi", all'])
        self.assertEqual({record["index"] for record in records if record.get("error")}, AWKWARD_UNREADABLE)
        self.assertNotIn("onbits", records[1])

    def test_json_keeps_every_valid_character_of_a_title(self):
        generator = random.Random(7)
        pieces = [b"a", "\u00e9".encode(), "\u2192".encode(), "\U0001f9ea".encode(), b"\x80", b"\xc0\xaf", b"\xe2\x82",
                  b"\xed\xa0\x80", b"\xf0\x9f", b"\xf4\x90\x80\x80", b"\xff", b"\x01", b'"', b"\\"]
        titles = [b"x" + b"".join(generator.choices(pieces, k=6)) + b"x" for _ in range(300)]
        self.write("titles.smi", b"".join(b"C " + title + b"\n" for title in titles))
        output, _ = self.run_qxfp("fp", "titles.smi", "-out", "json", status=SOME_FAILED)
        shown = [json.loads(line)["title"] for line in output.decode("utf-8").splitlines()]
        self.assertEqual([title.replace("\ufffd", "") for title in shown],
                         [title.decode("utf-8", errors="ignore") for title in titles])
        self.assertIn("\ufffd", "".join(shown))

    def test_messages_are_safe_to_show(self):
        self.write("titles.smi", b"C1 a\x1b[2Jb\xc2\x9bc\nC1 " + b"long" * 1000 + b"\n")
        _, errors = self.run_qxfp("fp", "titles.smi", status=SOME_FAILED)
        first, second = errors.decode("utf-8").splitlines()
        self.assertTrue(first.startswith("qxfp: warning: titles.smi, line 1 'a [2Jb c': "), first)
        self.assertLess(len(second), 200)

    def test_empty_file_has_no_lines(self):
        self.write("empty.smi", b"")
        self.assertEqual(self.run_qxfp("fp", "empty.smi"), (b"", b""))

    def test_molecule_without_bits_has_an_empty_list(self):
        # Paths of a bond or more: a lone atom has none.
        self.write("methane.smi", b"C methane\n")
        self.assertEqual(self.lines("methane.smi", "-mindistance", "1", "-out", "onbits"), [[b"methane", b""]])
        self.assertEqual(self.lines("methane.smi", "-mindistance", "1", "-numbits", "32"), [[b"methane", b"00000000"]])


if __name__ == "__main__":
    unittest.main()
