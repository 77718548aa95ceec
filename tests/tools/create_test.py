"""qxfp create and qxfp info."""

import json
import os
import resource
import signal
import struct
import subprocess
import time
import unittest

from qxfp_case import (AWKWARD, AWKWARD_UNREADABLE, BAD_USAGE, CANNOT_RUN, DONE, QXFP, SOME_FAILED, QxfpCase, parse_tsv,
                       read_fpbin)


class CreateTest(QxfpCase):
    def test_file_holds_the_fingerprints_that_fp_prints(self):
        molecules = self.sample(200)
        output, errors = self.run_qxfp("create", molecules, "out.fpbin", "-numbits", "1024")
        self.assertEqual(errors, b"")
        self.assertRegex(output.decode(), r"\Aout\.fpbin: 200 molecules, 0 unreadable, \d+\.\d\d s, \d+ molecules/s\n\Z")
        lines, num_words, records = read_fpbin(self.read("out.fpbin"))
        self.assertEqual(lines[:2] + lines[3:], ["LE", molecules, "200"])
        self.assertEqual(num_words, 16)
        printed = self.run_qxfp("fp", molecules, "-numbits", "1024")[0].decode().splitlines()
        self.assertEqual(len(records), len(printed))
        for i, ((index, count, words), line) in enumerate(zip(records, printed)):
            data = struct.pack("<16Q", *words)
            self.assertEqual(index, i)
            self.assertEqual(count, sum(byte.bit_count() for byte in data))
            self.assertEqual(data.hex(), line.split("\t")[1])

    def test_bytes_do_not_depend_on_the_threads(self):
        molecules = self.sample(700)
        for threads in ("1", "2", "0"):
            self.run_qxfp("create", molecules, f"{threads}.fpbin", "-threads", threads)
        self.assertEqual(self.read("1.fpbin"), self.read("2.fpbin"))
        self.assertEqual(self.read("1.fpbin"), self.read("0.fpbin"))

    def test_unreadable_records_are_named_once_and_listed(self):
        self.write("awkward.smi", AWKWARD)
        output, errors = self.run_qxfp("create", "awkward.smi", "out.fpbin", "-rejects", "bad.tsv", status=SOME_FAILED)
        self.assertIn(b"8 molecules, 3 unreadable", output)
        warnings = errors.splitlines()
        self.assertEqual([w.split(b":")[1] for w in warnings], [b" warning"] * 3)
        self.assertIn(b"awkward.smi, line 2 'unclosed': ", warnings[0])
        self.assertIn(b"awkward.smi, line 3: ", warnings[1])
        rejects = [line.split(b"\t") for line in self.read("bad.tsv").splitlines()]
        self.assertEqual([reject[:2] for reject in rejects[:2]], [[b"2", b"unclosed"], [b"3", b""]])
        self.assertEqual(rejects[2][0], b"8")
        for reject in rejects:
            self.assertEqual(len(reject), 3)
            self.assertTrue(reject[2])
        _, _, records = read_fpbin(self.read("out.fpbin"))
        self.assertEqual({i for i, record in enumerate(records) if record[1] == 0}, AWKWARD_UNREADABLE)

    def test_title_with_a_tab_keeps_the_rejects_in_columns(self):
        self.write("tab.smi", b"C1CC two\tparts\n")
        self.run_qxfp("create", "tab.smi", "out.fpbin", "-rejects", "bad.tsv", status=SOME_FAILED)
        self.assertEqual(self.read("bad.tsv").split(b"\t")[:2], [b"1", b"two parts"])

    def test_what_cannot_be_made_leaves_nothing_behind(self):
        self.write("a.smi", AWKWARD)
        self.write("empty.smi", b"")
        self.write("same.smi", b"C\n")
        os.symlink("same.smi", self.path("same.fpbin"))
        os.makedirs(self.path("occupied.fpbin"))
        long_name = "./" * 500 + "a.smi"
        before = sorted(os.listdir(self.folder))
        cases = [
            (["empty.smi", "out.fpbin"], CANNOT_RUN, b"no molecules"),
            (["a.smi", "gone/out.fpbin"], CANNOT_RUN, b"'gone' is no directory"),
            (["a.smi", "/proc/out.fpbin"], CANNOT_RUN, b"/proc/out.fpbin"),
            (["a.smi", "occupied.fpbin"], CANNOT_RUN, b"occupied.fpbin"),
            (["same.smi", "same.fpbin"], BAD_USAGE, b"is the molecule file"),
            (["a.smi", "out.fpbin", "-rejects", "a.smi"], BAD_USAGE, b"cannot be the file for rejects"),
            (["a.smi", "out.fpbin", "-rejects", "./out.fpbin"], BAD_USAGE, b"cannot be the file for rejects"),
            (["a.smi", "out.fpbin", "-rejects", "gone/bad.tsv"], CANNOT_RUN, b"cannot write 'gone/bad.tsv'"),
            (["a.smi", "out.fpbin", "-numbits", "1000"], CANNOT_RUN, b"multiple of 256"),
            (["a.smi", "out.fpbin", "-type", "Lingo"], BAD_USAGE, b"cannot hold Lingo and unhashed"),
            ([long_name, "out.fpbin"], CANNOT_RUN, b"bytes too long"),
        ]
        for arguments, status, part in cases:
            with self.subTest(arguments[-1]):
                output, errors = self.run_qxfp("create", *arguments, status=status)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)
                self.assertEqual(sorted(os.listdir(self.folder)), before)
        self.assertEqual(self.read("same.smi"), b"C\n")

    def test_longest_name_that_fits_is_read_back(self):
        self.write("a.smi", b"CCO\n")
        tail = len("LE\n\nPath,ver=2.0.0,size=256,bonds=0-5,atype=AtmNum,btype=Order\n1\n")
        options = ["-numbits", "256", "-atomtype", "AtmNum", "-bondtype", "Order"]
        name = "." + "/" * (784 - tail - len(".a.smi")) + "a.smi"
        self.run_qxfp("create", name, "out.fpbin", *options)
        output, _ = self.run_qxfp("info", "out.fpbin", "-check")
        self.assertIn(f"molecule file\t{name}\n".encode(), output)
        _, errors = self.run_qxfp("create", name.replace(".", "./", 1), "out.fpbin", *options, status=CANNOT_RUN)
        self.assertIn(b"1 bytes too long", errors)

    def test_failed_creation_keeps_the_older_file(self):
        self.write("a.smi", b"CCO\n")
        self.run_qxfp("create", "a.smi", "out.fpbin")
        before = self.read("out.fpbin")
        self.run_qxfp("create", "a.smi", "out.fpbin", "-numbits", "1000", status=CANNOT_RUN)
        self.assertEqual(self.read("out.fpbin"), before)

    def test_file_that_may_not_grow_is_called_by_its_own_name(self):
        self.sample(100)

        def limit_files():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (4096, resource.getrlimit(resource.RLIMIT_FSIZE)[1]))

        _, errors = self.run_qxfp("create", "sample.smi", "out.fpbin", status=CANNOT_RUN, preexec_fn=limit_files)
        self.assertIn(b"unable to open fingerprint database file: out.fpbin\n", errors)
        self.assertNotIn(b".qxfp-", errors)
        self.assertEqual(os.listdir(self.folder), ["sample.smi"])

    def test_interrupted_creation_leaves_no_file(self):
        self.sample(4000)
        self.write("many.smi", self.read("sample.smi") * 25)
        for ending in (signal.SIGINT, signal.SIGTERM):
            process = subprocess.Popen([QXFP, "create", "many.smi", "out.fpbin"], cwd=self.folder,
                                       stdout=subprocess.DEVNULL)
            deadline = time.monotonic() + 60
            while not any(name.endswith(".fpbin") for name in os.listdir(self.folder)):
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.005)
            time.sleep(0.1)
            self.assertNotIn("out.fpbin", os.listdir(self.folder))
            process.send_signal(ending)
            self.assertEqual(process.wait(timeout=60), -ending)
            self.assertEqual(sorted(os.listdir(self.folder)), ["many.smi", "sample.smi"])

    def test_progress_is_shown_on_a_terminal_only(self):
        self.sample(4000)
        self.write("many.smi", self.read("sample.smi") * 3)
        status, shown = self.run_on_terminal("create", "many.smi", "out.fpbin", "-threads", "1", stream="stderr")
        self.assertEqual(status, DONE)
        self.assertRegex(shown.decode(), r"\[=* *\] +\d+ %  \d+ of 12000 molecules  \d+/s  \d+:\d\d left")
        self.assertTrue(shown.endswith(b"\r\x1b[K"), "the bar is taken away at the end")
        self.assertEqual(self.run_qxfp("create", "many.smi", "out.fpbin")[1], b"")
        for command in ("histogram", "matrix"):
            status, shown = self.run_on_terminal(command, "out.fpbin", stream="stderr")
            self.assertEqual(status, DONE)
            self.assertRegex(shown.decode(), r"\[=* *\] +\d+ %  \d+ of 72006000 comparisons  \d+/s  \d+:\d\d left")
            self.assertTrue(shown.endswith(b"\r\x1b[K"), "the bar is taken away at the end")
            self.assertEqual(self.run_qxfp(command, "out.fpbin")[1], b"")


class InfoTest(QxfpCase):
    def setUp(self):
        super().setUp()
        self.write("awkward.smi", AWKWARD)
        self.run_qxfp("create", "awkward.smi", "a.fpbin", "-numbits", "512", status=SOME_FAILED)
        self.content = self.read("a.fpbin")

    def fields(self, *arguments, status=DONE):
        return {row["field"]: row["value"] for row in parse_tsv(self.run_qxfp("info", *arguments, status=status)[0])}

    def test_fields_say_what_the_file_holds(self):
        counts = [record[1] for record in read_fpbin(self.content)[2]]
        fields = self.fields("a.fpbin", "-check")
        self.assertEqual(fields["molecule file"], "awkward.smi")
        self.assertEqual(fields["fingerprints"], "8")
        self.assertEqual(fields["bits"], "512")
        self.assertEqual(fields["file size"], str(800 + 8 * (8 + 2) * 8))
        self.assertEqual(fields["without bits"], "3")
        self.assertEqual(fields["most bits set"], str(max(counts)))
        self.assertEqual(fields["mean bits set"], f"{sum(counts) / 8:.2f}")
        self.assertEqual(fields["bad records"], "0")

    def test_every_form_has_the_same_fields(self):
        fields = self.fields("a.fpbin")
        (record,) = json.loads(self.run_qxfp("info", "a.fpbin", "-out", "json")[0])
        self.assertEqual({name: str(value) for name, value in record.items()},
                         {name: str(json.loads(value)) if isinstance(record[name], float) else value
                          for name, value in fields.items()})
        table = self.run_qxfp("info", "a.fpbin", "-out", "table")[0].decode()
        for name, value in fields.items():
            self.assertRegex(table, rf"(?m)^{name} +{value.replace('|', '[|]')}$")

    def test_check_finds_damaged_records(self):
        damaged = bytearray(self.content)
        damaged[800 + 3 * 80] = 9           # the index of record 3
        damaged[800 + 4 * 80 + 16] ^= 1     # a bit of record 4
        self.write("damaged.fpbin", bytes(damaged))
        self.assertNotIn("bad records", self.fields("damaged.fpbin"))
        output, errors = self.run_qxfp("info", "damaged.fpbin", "-check", status=SOME_FAILED)
        self.assertIn(b"bad records\t2", output)
        self.assertIn(b"record 3: it says index 9", errors)
        self.assertIn(b"record 4: ", errors)

    def test_damaged_files_are_told_from_sound_ones(self):
        text = self.content[:784].rstrip(b"\0")
        huge = text.replace(b"\n8\n", b"\n18446744073709551615\n").ljust(784, b"\0") + struct.pack("<QQ", 8, 2**64 - 1)
        cases = {
            "cut": self.content[:-8],
            "longer": self.content + b"x",
            "other byte order": self.content.replace(b"LE\n", b"BE\n", 1),
            "other width": self.content[:784] + struct.pack("<Q", 4) + self.content[792:],
            "huge count": huge + self.content[800:],
        }
        for name, content in cases.items():
            with self.subTest(name):
                self.write("damaged.fpbin", content)
                output, errors = self.run_qxfp("info", "damaged.fpbin", "-check", status=SOME_FAILED)
                self.assertIn(b"is damaged: ", errors)
                self.assertIn(b"awkward.smi", output)
                self.assertNotIn(b"bits set", output)
        for name, content in (("nothing", b""), ("text", b"CCO\n" * 300), ("header only", self.content[:500])):
            with self.subTest(name):
                self.write("damaged.fpbin", content)
                output, errors = self.run_qxfp("info", "damaged.fpbin", status=CANNOT_RUN)
                self.assertEqual(output, b"")
                self.assertIn(b"cannot be read as a fast fingerprint file", errors)


if __name__ == "__main__":
    unittest.main()
