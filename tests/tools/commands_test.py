"""The command line as a whole: help, version, wrong usage, broken pipes, fingerprint options."""

import os
import subprocess
import unittest

from qxfp_case import BAD_USAGE, CANNOT_RUN, DONE, QXFP, QxfpCase, AWKWARD

COMMANDS = ["create", "index", "info", "search", "matrix", "histogram", "compare", "fp"]
KINDS = ["Path", "Circular", "Tree", "MACCS166", "Lingo", "UHPath", "UHCircular", "UHTree"]


class HelpTest(QxfpCase):
    def test_overview_lists_every_command(self):
        overview, _ = self.run_qxfp()
        for arguments in (["help"], ["--help"], ["-h"]):
            self.assertEqual(self.run_qxfp(*arguments), (overview, b""))
        for command in COMMANDS:
            self.assertIn(f"\n  {command} ".encode(), overview)

    def test_help_of_a_command_is_the_same_however_asked(self):
        for command in COMMANDS:
            text, errors = self.run_qxfp("help", command)
            self.assertEqual(errors, b"")
            self.assertIn(f"usage: qxfp {command} ".encode(), text)
            for flag in ("--help", "-h"):
                self.assertEqual(self.run_qxfp(command, flag)[0], text)

    def test_help_shows_the_library_options_with_their_texts(self):
        text = self.run_qxfp("help", "search")[0].decode()
        for part in ("-limit", "-simfunc", "-cutoff", "-descending", "Maximum number of similarity scores", "Manhattan"):
            self.assertIn(part, text)
        text = self.run_qxfp("help", "create")[0].decode()
        for part in ("-fptype", "-numbits", "-mindistance", "-maxdistance", "-atomtype", "-bondtype", "EqHBAcc"):
            self.assertIn(part, text)

    def test_version_is_one_line(self):
        self.assertRegex(self.run_qxfp("--version")[0].decode(), r"\Aqxfp \d+\.\d+\.\d+\n\Z")


class UsageTest(QxfpCase):
    def test_wrong_usage_is_refused_with_status_2(self):
        self.write("a.smi", AWKWARD)
        cases = [
            ["nonsense"],
            ["help", "nonsense"],
            ["create"],
            ["create", "a.smi"],
            ["create", "a.smi", "a.fpbin", "surplus"],
            ["create", "a.smi", "a.fpbin", "-nonsense", "1"],
            ["create", "a.smi", "a.fpbin", "-threads", "many"],
            ["create", "a.smi", "a.fpbin", "-threads", "-1"],
            ["create", "a.smi", "a.out"],
            ["create", "a.smi", "fpbin"],
            ["fp", "a.smi", "-out", "xml"],
            ["fp", "a.smi", "-out", "text"],
            ["info"],
            ["search", "a.fpbin"],
            ["search", "a.fpbin", "C", "-limit", "-2"],
            ["search", "a.fpbin", "C", "-simfunc", "Nearness"],
            ["search", "a.fpbin", "C", "-alpha", "1.5"],
            ["search", "a.fpbin", "C", "-memory", "tape"],
            ["search", "a.fpbin", "C", "-precision", "99"],
            ["search", "a.fpbin", "C", "-index", "maybe"],
        ]
        for arguments in cases:
            with self.subTest(arguments):
                output, errors = self.run_qxfp(*arguments, status=BAD_USAGE)
                self.assertEqual(output, b"")
                self.assertTrue(errors.startswith(b"qxfp: "), errors)
        self.assertEqual(os.listdir(self.folder), ["a.smi"])

    def test_options_are_written_in_several_ways(self):
        self.write("a.smi", b"CCO ethanol\n")
        expected, _ = self.run_qxfp("fp", "a.smi", "-out", "onbits")
        for arguments in (["--out", "onbits"], ["--out=onbits"], ["-o", "onbits"]):
            self.assertEqual(self.run_qxfp("fp", "a.smi", *arguments)[0], expected)

    def test_files_that_are_not_there_are_named(self):
        for arguments in (["fp", "gone.smi"], ["create", "gone.smi", "a.fpbin"], ["info", "gone.fpbin"],
                          ["search", "gone.fpbin", "C"], ["fp", "folder.smi"]):
            os.makedirs(self.path("folder.smi"), exist_ok=True)
            with self.subTest(arguments):
                _, errors = self.run_qxfp(*arguments, status=CANNOT_RUN)
                self.assertIn(arguments[1].encode(), errors)


class PipeTest(QxfpCase):
    def test_closed_pipe_ends_it_quietly(self):
        molecules = self.sample(4000)
        process = subprocess.Popen([QXFP, "fp", molecules, "-out", "bits"], cwd=self.folder,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertIn(b"\t", process.stdout.readline())
        process.stdout.close()
        self.assertEqual(process.stderr.read(), b"")
        process.stderr.close()
        self.assertEqual(process.wait(timeout=60), DONE)

    def test_full_disk_is_reported(self):
        with open("/dev/full", "wb") as full:
            done = subprocess.run([QXFP, "--version"], stdout=full, stderr=subprocess.PIPE, timeout=60)
        self.assertEqual(done.returncode, CANNOT_RUN)
        self.assertIn(b"cannot write to standard output", done.stderr)


class FingerprintOptionsTest(QxfpCase):
    def type_of(self, *arguments):
        self.write("one.smi", b"CCO\n")
        self.run_qxfp("create", "one.smi", "one.fpbin", *arguments)
        for line in self.run_qxfp("info", "one.fpbin")[0].decode().splitlines():
            if line.startswith("type\t"):
                return line.split("\t")[1]
        return None

    def test_options_make_the_type_string(self):
        default = "Path,ver=2.0.0,size=4096,bonds=0-5,atype=AtmNum|Arom|Chiral|FCharge|HvyDeg|Hyb|EqHalo,btype=Order|Chiral"
        cases = [
            ([], default),
            (["-type", "Path"], default),
            (["-type", default], default),
            (["-fptype", "Path", "-numbits", "2048"], default.replace("4096", "2048")),
            (["-mindistance", "1", "-maxdistance", "4"], default.replace("0-5", "1-4")),
            (["-atomtype", "DefaultTreeAtom"], default.replace("|EqHalo", "")),
            (["-atomtype", "Arom|AtmNum", "-bondtype", "None"],
             "Path,ver=2.0.0,size=4096,bonds=0-5,atype=AtmNum|Arom,btype=None"),
            (["-fptype", "Tree", "-maxdistance", "6"],
             "Tree,ver=2.0.0,size=4096,bonds=0-6,atype=AtmNum|Arom|Chiral|FCharge|HvyDeg|Hyb,btype=Order"),
        ]
        for arguments, expected in cases:
            with self.subTest(arguments):
                self.assertEqual(self.type_of(*arguments), expected)

    def test_options_that_contradict_are_refused(self):
        self.write("one.smi", b"CCO\n")
        cases = [
            (["-type", "Path", "-numbits", "2048"], b"excludes -numbits"),
            (["-type", "Pfad"], b"'Pfad' is no fingerprint type"),
            (["-type", "Path,ver=2.0.0"], b"Size cannot be initialized"),
            (["-type", "Path,ver=1.0.0,size=256,bonds=0-5,atype=AtmNum,btype=Order"], b"old version"),
            (["-fptype", "Lingo"], b"-fptype"),
            (["-numbits", "8"], b"-numbits"),
            (["-maxdistance", "21"], b"-maxdistance"),
            (["-mindistance", "6"], b"-mindistance 6 is above -maxdistance 5"),
            (["-atomtype", "Weight"], b"Weight"),
            (["-bondtype", "Order|"], b"-bondtype"),
            (["-atomtype", "None", "-bondtype", "None"], b"cannot both be None"),
        ]
        for arguments, part in cases:
            with self.subTest(arguments):
                output, errors = self.run_qxfp("fp", "one.smi", *arguments, status=BAD_USAGE)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)

    def test_type_that_a_generator_would_change_is_refused(self):
        self.write("one.smi", b"CCO\n")
        for part in ("Path,ver=2.0.0,size=8,bonds=0-5", "Path,ver=2.0.0,size=256,bonds=0-30",
                     "Path,ver=2.0.0,size=256,bonds=5-3", "Tree,ver=2.0.0,size=256,bonds=0-11"):
            with self.subTest(part):
                text = f"{part},atype=AtmNum,btype=Order"
                _, errors = self.run_qxfp("create", "one.smi", "one.fpbin", "-type", text, status=CANNOT_RUN)
                self.assertIn(b"cannot be made", errors)
        self.assertEqual(os.listdir(self.folder), ["one.smi"])

    def test_every_kind_is_made_or_refused_before_anything_is_written(self):
        self.write("two.smi", b"CCO\nCCN\n")
        for kind in KINDS:
            with self.subTest(kind):
                done = subprocess.run([QXFP, "fp", "two.smi", "-type", kind], cwd=self.folder, capture_output=True)
                if done.returncode == CANNOT_RUN:
                    self.assertEqual(done.stdout, b"")
                    self.assertIn(b"no generator", done.stderr)
                else:
                    self.assertEqual(done.returncode, DONE)
                    self.assertEqual(done.stdout.count(b"\n"), 2)


if __name__ == "__main__":
    unittest.main()
