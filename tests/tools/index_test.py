"""qxfp index, and what qxfp info says of an index."""

import os
import resource
import signal
import unittest

from qxfp_case import BAD_USAGE, CANNOT_RUN, DONE, SOME_FAILED, QxfpCase, parse_tsv


class IndexTest(QxfpCase):
    def setUp(self):
        super().setUp()
        self.run_qxfp("create", self.sample(700), "a.fpbin", "-numbits", "512")

    def expect_index(self, state, *options, status=DONE, warnings=0):
        output, errors = self.run_qxfp("info", "a.fpbin", *options, status=status)
        self.assertEqual({row["field"]: row["value"] for row in parse_tsv(output)}["index"], state)
        self.assertEqual(errors.count(b"\n"), warnings, errors)
        self.assertEqual(errors.count(b"a.fpbin.slices"), warnings)

    def test_info_tells_of_the_index(self):
        self.expect_index("none")
        output, errors = self.run_qxfp("index", "a.fpbin")
        self.assertEqual(errors, b"")
        size = os.path.getsize(self.path("a.fpbin.slices"))
        self.assertRegex(output.decode(), rf"\Aa\.fpbin\.slices: {size} bytes, \d+\.\d\d s\n\Z")
        self.expect_index("usable", "-check")
        whole = self.read("a.fpbin.slices")

        self.write("a.fpbin.slices", whole[:-1])
        self.expect_index("damaged", status=SOME_FAILED, warnings=1)
        middle = len(whole) // 2
        self.write("a.fpbin.slices", whole[:middle] + bytes([whole[middle] ^ 4]) + whole[middle + 1:])
        self.expect_index("usable")  # the header is whole; the rest is read with -check
        self.expect_index("damaged", "-check", status=SOME_FAILED, warnings=1)

        self.write("a.fpbin.slices", whole)
        os.utime(self.path("a.fpbin"), (0, 0))
        self.expect_index("stale", "-check", warnings=1)
        self.run_qxfp("index", "a.fpbin", "-threads", "1")
        self.expect_index("usable", "-check")
        renewed = self.read("a.fpbin.slices")
        self.assertEqual(renewed[80:], whole[80:])

    def test_failures_are_told_and_leave_nothing(self):
        self.write("text.fpbin", b"CCO\n" * 300)
        os.makedirs(self.path("b.fpbin.slices"))
        os.link(self.path("a.fpbin"), self.path("b.fpbin"))
        before = sorted(os.listdir(self.folder))

        def limit_files():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (8192, resource.getrlimit(resource.RLIMIT_FSIZE)[1]))

        cases = [
            (["gone.fpbin"], CANNOT_RUN, b"gone.fpbin.slices' was not made", {}),
            (["text.fpbin"], CANNOT_RUN, b"cannot make an index of text.fpbin: ", {}),
            (["b.fpbin"], CANNOT_RUN, b"cannot make b.fpbin.slices: Is a directory", {}),
            (["a.fpbin"], CANNOT_RUN, b"cannot make a.fpbin.slices: File too large", {"preexec_fn": limit_files}),
            (["a.fpbin", "-threads", "x"], BAD_USAGE, b"-threads", {}),
        ]
        for arguments, status, part, options in cases:
            with self.subTest(arguments):
                output, errors = self.run_qxfp("index", *arguments, status=status, **options)
                self.assertEqual(output, b"")
                self.assertIn(part, errors)
                self.assertEqual(sorted(os.listdir(self.folder)), before)


if __name__ == "__main__":
    unittest.main()
