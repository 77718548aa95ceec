#!/usr/bin/env python3
"""Times RDKit and Open Babel beside the sorted search of a .fpbin file, on the same molecules.

usage: compare_peers.py QX_FASTFP_SEARCH [--molecules FILE] [--count 100000] [--type TYPE] [--limit 10]
                        [--queries 40] [--batch 20] [--folder FOLDER]

QX_FASTFP_SEARCH is the program qx_fastfp_search that the benchmarks build. FILE holds lines of "SMILES NAME",
or the same compressed as .xz; the molecules of a short one, as of the bundled one, are repeated. TYPE is the
type string of our fingerprints. Files that were made are looked for in FOLDER, which must have been made with
the same options, and stay there; the second run is then timing alone.

All search for the same molecules on one thread:

scan         GetSortedScores over the mapped file without an index.
index        the same with an index made in memory; a query for which a scan is expected to be faster still scans.
RDKit        BulkTanimotoSimilarity over those very fingerprints in a list, and heapq.nlargest of the scores. It
             is an error when it finds other scores than we do. "Scores alone" is without the heap.
Open Babel   its fast search over an index file of its own path fingerprints, FP2, of 1,021 bits in 1,024. Its
             binding for Python gives no access to the search alone, so what is timed is a conversion from the
             index, which loads the index, searches, and reads and writes the molecules found; the same
             conversion from an index of a few molecules; and a loading of the index. The search is the first
             less the two others, in medians, which leaves it rough; "all of it" is the first. No process
             starts. Left out when the binding (Debian: python3-openbabel) is not installed.

They take turns of whole batches of queries. Searches come one after the other, and what of a collection stays in
the caches from one to the next is to an engine's credit; taking turns query by query would have each find the
caches full of another's data. Turns spread what else the machine does over all of them.
"""
import argparse
import contextlib
import heapq
import itertools
import pathlib
import re
import struct
import sys
import tempfile
import time

from rdkit import DataStructs

try:
    from openbabel import openbabel
except ImportError:
    openbabel = None

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent))
import peers

TYPE = "Path,ver=2.0.0,size=1024,bonds=0-5,atype=DefaultPathAtom,btype=DefaultPathBond"
HEADER_BYTES = 800


def write_molecules(path, source, count):
    """count lines, from the top of the source again and again; returns their SMILES."""
    lines = list(itertools.islice(peers.read_lines(source), count))
    smiles = []
    with open(path, "w", encoding="utf-8") as out:
        for line in itertools.islice(itertools.cycle(lines), count):
            smiles.append(line.split()[0])
            out.write(line)
    return smiles


def read_fingerprints(fpbin, num_bits):
    data = fpbin.read_bytes()
    record = 16 + num_bits // 8
    return [DataStructs.CreateFromBinaryText(data[at + 16:at + record])
            for at in range(HEADER_BYTES, len(data), record)]


def timed(call, *args):
    start = time.perf_counter()
    result = call(*args)
    return time.perf_counter() - start, result


class Ours:
    """A search program of ours, which opens the file in its way."""

    def __init__(self, name, program, way, files, args):
        self.name = name
        self.search = peers.SearchProgram(program, *files, args.type, args.limit, way)
        self.count = int(self.search.read_line())
        self.seconds = []

    def run(self, queries):
        """The hits of each."""
        hits = []
        for query in queries:
            seconds, found = self.search.ask(query)
            self.seconds.append(seconds)
            hits.append(found)
        return hits

    def times(self):
        return [peers.Times(self.name, self.seconds, self.count)]


class RDKit:
    """Fingerprints in a list."""

    def __init__(self, fps, limit):
        self.fps, self.limit = fps, limit
        self.scoring, self.seconds = [], []

    def search(self, query):
        seconds, scores = timed(DataStructs.BulkTanimotoSimilarity, self.fps[query], self.fps)
        self.scoring.append(seconds)
        heapq.nlargest(self.limit, range(len(scores)), key=scores.__getitem__)
        return scores

    def run(self, queries, all_hits):
        for number, query in enumerate(queries):
            seconds, scores = timed(self.search, query)
            self.seconds.append(seconds)
            for hits in all_hits:
                peers.check_hits(query, hits[number], scores, self.limit)

    def times(self):
        return [peers.Times("RDKit", self.seconds, len(self.fps)),
                peers.Times("RDKit, scores alone", self.scoring, len(self.fps))]


class BabelIndex:
    """A fast search index that Open Babel has made of the first molecules of a file."""

    def __init__(self, folder, smiles, name):
        self.path = folder / f"{name}.fs"
        self.output = folder / f"{name}.smi.found"
        self.seconds = []
        if not self.path.exists():
            self.make(folder, smiles, name)
        with open(self.path, "rb") as index:
            self.count = struct.unpack("<II", index.read(8))[1]
        if not 0.99 * len(smiles) < self.count <= len(smiles):
            sys.exit(f"{self.path} has {self.count} records of {len(smiles)} molecules")

    def make(self, folder, smiles, name):
        molecules = folder / f"{name}.babel.smi"  # the index refers to it
        molecules.write_text("".join(f"{line} {i}\n" for i, line in enumerate(smiles)), encoding="utf-8")
        unfinished = folder / f"{name}.fs.unfinished"
        conversion = openbabel.OBConversion()
        conversion.SetInAndOutFormats("smi", "fs")
        conversion.OpenInAndOutFiles(str(molecules), str(unfinished))
        conversion.Convert()
        conversion.CloseOutFile()
        unfinished.rename(self.path)

    def load(self):
        openbabel.FastSearch().ReadIndexFile(str(self.path))

    def convert(self, query, limit):
        conversion = openbabel.OBConversion()
        conversion.SetInAndOutFormats("fs", "smi")
        conversion.AddOption("s", conversion.GENOPTIONS, query)
        conversion.AddOption("t", conversion.INOPTIONS, str(limit))
        conversion.OpenInAndOutFiles(str(self.path), str(self.output))
        conversion.Convert()
        conversion.CloseOutFile()

    def search(self, query, limit):
        self.seconds.append(timed(self.convert, query, limit)[0])
        found = len(self.output.read_text(encoding="utf-8").splitlines())
        if found != limit:
            sys.exit(f"Open Babel found {found} molecules instead of {limit} for {query}")


class OpenBabel:
    """Two indices, of all molecules and of a few."""

    def __init__(self, folder, smiles, limit):
        openbabel.obErrorLog.StopLogging()
        self.smiles, self.limit = smiles, limit
        self.all = BabelIndex(folder, smiles, "all")
        self.few = BabelIndex(folder, smiles[:2 * limit], "few")
        self.loadings = []

    def run(self, queries):
        for query in queries:
            self.all.search(self.smiles[query], self.limit)
        for _ in queries:
            self.loadings.append(timed(self.all.load)[0])
        for query in queries:
            self.few.search(self.smiles[query], self.limit)

    def times(self):
        times = peers.Times("Open Babel", self.all.seconds, self.all.count)
        times.subtract(self.loadings)
        times.subtract(self.few.seconds)
        return [times, peers.Times("Open Babel, all of it", self.all.seconds, self.all.count)]


def compare(args, folder, running):
    molecules, fpbin = folder / "molecules.smi", folder / "molecules.fpbin"
    smiles = write_molecules(molecules, args.molecules, args.count)
    scan, index = (Ours(f"QXFastFPDatabase, {way}", args.program, way, (molecules, fpbin), args)
                   for way in ("scan", "index"))
    running.enter_context(scan.search)
    running.enter_context(index.search)
    if not scan.count == index.count == len(smiles):
        sys.exit(f"{fpbin} has {scan.count} records instead of {len(smiles)}")
    num_bits = int(re.search(r"size=(\d+)", args.type)[1])
    rdkit = RDKit(read_fingerprints(fpbin, num_bits), args.limit)
    babel = OpenBabel(folder, smiles, args.limit) if openbabel else None
    if babel is None:
        print("Open Babel is not installed and left out")
    print(f"{scan.count} fingerprints of {num_bits} bits, {args.queries} queries in batches of {args.batch}, "
          f"best {args.limit}", flush=True)
    queries = [number * 99991 % scan.count for number in range(args.queries)]
    for first in range(0, args.queries, args.batch):
        batch = queries[first:first + args.batch]
        hits = scan.run(batch), index.run(batch)
        rdkit.run(batch, hits)
        if babel:
            babel.run(batch)
    times = [each for side in (scan, index, rdkit, babel) if side for each in side.times()]
    for each in times:
        each.print()
    for ours in times[:2]:
        for peer in times[2:]:
            print(f"{ours.name}: ", end="")
            ours.print_ratio(peer)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("--molecules", type=pathlib.Path, default=peers.BUNDLED_MOLECULES)
    parser.add_argument("--count", type=int, default=100000)
    parser.add_argument("--type", default=TYPE)
    parser.add_argument("--limit", type=int, default=10)
    parser.add_argument("--queries", type=int, default=40)
    parser.add_argument("--batch", type=int, default=20)
    parser.add_argument("--folder", type=pathlib.Path)
    args = parser.parse_args()
    if args.folder:
        args.folder.mkdir(parents=True, exist_ok=True)
    with contextlib.ExitStack() as running:
        folder = args.folder or pathlib.Path(running.enter_context(tempfile.TemporaryDirectory()))
        compare(args, folder, running)


if __name__ == "__main__":
    main()
