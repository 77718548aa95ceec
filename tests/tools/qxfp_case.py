"""What the tests of the command-line tool share: running it, and molecules to run it on."""

import math
import os
import pty
import struct
import subprocess
import tempfile
import unittest
from collections import Counter

QXFP = os.environ["QXFP"]
DATA = os.environ["QX_DATA_DIR"]

DONE, SOME_FAILED, BAD_USAGE, CANNOT_RUN = 0, 1, 2, 3

# One line each: a good molecule, a syntax error, nothing, no title, a title with a tab, with an escape sequence and
# with a comma and quotes, and a title that is not UTF-8.
AWKWARD = (
    b"CCO ethanol\n"
    b"C1CC unclosed\n"
    b"\n"
    b"c1ccccc1\n"
    b"CCN tab\there\n"
    b"CCCl red\x1b[31m\n"
    b'CCC=O say "hi", all\n'
    b"CCBr caf\xe9\n"
)
AWKWARD_UNREADABLE = {1, 2, 7}


class QxfpCase(unittest.TestCase):
    """A test with a folder of its own, in which the tool runs."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, content):
        with open(self.path(name), "wb") as file:
            file.write(content)
        return name

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def run_qxfp(self, *arguments, status=DONE, **options):
        """Runs the tool to its end; answers (standard output, standard error) as bytes."""
        done = subprocess.run([QXFP, *arguments], cwd=self.folder, capture_output=True, timeout=300, **options)
        self.assertEqual(done.returncode, status, done.stderr.decode(errors="replace"))
        return done.stdout, done.stderr

    def run_on_terminal(self, *arguments, stream):
        """Runs the tool with one of its streams on a terminal; answers (exit status, what the terminal got)."""
        try:
            ours, theirs = pty.openpty()
        except OSError as reason:  # a container may have no terminal devices
            self.skipTest(f"no pseudo-terminal: {reason}")
        streams = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        streams[stream] = theirs
        process = subprocess.Popen([QXFP, *arguments], cwd=self.folder, **streams)
        os.close(theirs)
        shown = b""
        while True:
            try:
                piece = os.read(ours, 65536)
            except OSError:  # the other end is closed
                break
            if not piece:
                break
            shown += piece
        os.close(ours)
        return process.wait(timeout=60), shown.replace(b"\r\n", b"\n")

    def sample(self, count, name="sample.smi", start=0):
        """The given number of real molecules in a file."""
        with open(os.path.join(DATA, "molecules.smi"), "rb") as file:
            lines = file.readlines()
        return self.write(name, b"".join(lines[start:start + count]))


def parse_tsv(output):
    """The rows below the header, as dictionaries."""
    header, *rows = [line.split("\t") for line in output.decode(errors="replace").splitlines()]
    return [dict(zip(header, row, strict=True)) for row in rows]


def read_fpbin(content):
    """Header lines, words per fingerprint and records (index, bit count, words) of a fast fingerprint file."""
    lines = content[:784].rstrip(b"\0").decode().splitlines()
    num_words, num_records = struct.unpack_from("<QQ", content, 784)
    records = []
    for i in range(num_records):
        index, count, *words = struct.unpack_from(f"<{num_words + 2}Q", content, 800 + i * (num_words + 2) * 8)
        records.append((index, count, words))
    return lines, num_words, records


def scores(only_a, only_b, both, neither, alpha=0.95, beta=0.05):
    """The six measures of the counts, in the order of the tool."""
    total = only_a + only_b + both + neither
    if only_a + only_b == 0:
        values = [1, 1, 1, 1, 1, 0]
    else:
        values = [both / (only_a + only_b + both), both / math.sqrt((only_a + both) * (only_b + both)) if both else 0,
                  2 * both / (2 * both + only_a + only_b), math.sqrt((both + neither) / total),
                  both / (alpha * only_a + beta * only_b + both) if both else 0, (only_a + only_b) / total]
    return dict(zip(("Tanimoto", "Cosine", "Dice", "Euclid", "Tversky", "Manhattan"), values))


def count_bits(a, b, size):
    """Only in a, only in b, in both, in neither of two sets of bits."""
    return len(a - b), len(b - a), len(a & b), size - len(a | b)


def count_lingos(a, b):
    """The same of the Lingos of two texts; texts too short to have any are equal or have nothing in common."""
    if min(len(a), len(b)) < 4:
        return (0, 0, len(a), 0) if a == b else (len(a), len(b), 0, 0)
    a, b = (Counter(text[i:i + 4] for i in range(len(text) - 3)) for text in (a, b))
    return (a - b).total(), (b - a).total(), (a & b).total(), 0


def token_tanimoto(a, b):
    """Of two texts of tokens; nan when neither has any."""
    a, b = Counter(a.split()), Counter(b.split())
    return (a & b).total() / (a | b).total() if a or b else math.nan


def tanimoto(a, b):
    both = len(a & b)
    return both / (len(a) + len(b) - both) if both else 0.0
