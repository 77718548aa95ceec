"""What the comparisons with other search programs share: reading molecules, asking ours, checking, printing."""
import lzma
import pathlib
import statistics
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUNDLED_MOLECULES = ROOT / "data/molecules.smi"


def read_lines(path):
    """Lines of a SMILES file, or of one compressed as .xz."""
    opener = lzma.open if path.suffix == ".xz" else open
    with opener(path, "rt", encoding="utf-8") as lines:
        yield from lines


class SearchProgram:
    """One of our programs that answers queries in step: see AnswerQueries in SearchLoop.h."""

    def __init__(self, *command):
        self.process = subprocess.Popen([str(word) for word in command], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, text=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.wait()

    def read_line(self):
        line = self.process.stdout.readline()
        if not line:
            sys.exit(f"{self.process.args[0]} gave no answer")
        return line

    def ask(self, query):
        """Seconds, and (index, score) of every hit, best first."""
        print(query, file=self.process.stdin, flush=True)
        answer = self.read_line().split()
        return int(answer[0]) * 1e-9, [(int(i), float(s)) for i, s in zip(answer[1::2], answer[2::2])]


def check_hits(query, hits, scores, limit):
    """hits: (index, score) in order; scores: RDKit's, of every entry."""
    best = sorted((score for score in scores if score > 0), reverse=True)[:limit]
    if len(hits) != len(best):
        sys.exit(f"query {query}: {len(hits)} hits instead of {len(best)}")
    for (index, score), expected in zip(hits, best):
        if abs(score - scores[index]) > 1e-6 or abs(score - expected) > 1e-6:
            sys.exit(f"query {query}: entry {index} scores {score}, RDKit says {scores[index]}, "
                     f"expected {expected}")


class Times:
    """Median and best of the seconds that comparing with `comparisons` entries took."""

    def __init__(self, name, seconds, comparisons):
        self.name = name
        self.median = statistics.median(seconds)
        self.best = min(seconds)
        self.comparisons = comparisons

    def subtract(self, seconds):
        """Takes off what is no comparing: median from median, best from best."""
        self.median -= statistics.median(seconds)
        self.best -= min(seconds)

    def print(self):
        print(f"{self.name:28} median {self.median * 1e3:8.3f} ms, best {self.best * 1e3:8.3f} ms, "
              f"{self.comparisons / self.median / 1e6:8.2f} million comparisons/s")

    def print_ratio(self, peer):
        """How many times as many comparisons per second as the peer."""
        scale = self.comparisons / peer.comparisons
        print(f"ratio of comparisons/s to {peer.name}: median {scale * peer.median / self.median:.1f}, "
              f"best {scale * peer.best / self.best:.1f}")
