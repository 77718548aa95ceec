#!/usr/bin/env python3
"""Times RDKit and Open Babel beside the sorted search of a .fpbin file, on the same molecules.

usage: compare_peers.py QX_FASTFP_SEARCH [--molecules FILE] [--count 100000] [--limit 10] [--queries 40]

QX_FASTFP_SEARCH is the program qx_fastfp_search that the benchmarks build. FILE holds lines of "SMILES NAME",
or the same compressed as .xz; the molecules of a short one, as of the bundled one, are repeated. All search
for the same molecules on one thread. They take turns of five queries each, so that what else the machine does
hurts all alike, and none finds the caches full of what another has read in most of its searches:

QXFastFPDatabase  GetSortedScores over the mapped file of our path fingerprints of 1,024 bits.
RDKit             BulkTanimotoSimilarity over those very fingerprints in a list, and heapq.nlargest of the
                  scores. It is an error when it finds other scores than we do.
Open Babel        its fast search over an index file of its own path fingerprints, FP2, of 1,021 bits in 1,024.
                  Its binding for Python gives no access to the search alone, so what is timed is a conversion
                  from the index, which loads the index, searches, and reads and writes the molecules found;
                  the same conversion from an index of a few molecules; and a loading of the index. The search
                  is the first less the two others. No process starts. Left out when the binding (Debian:
                  python3-openbabel) is not installed.
"""
import argparse
import heapq
import itertools
import pathlib
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

BITS = 1024
TURN = 5  # queries
HEADER_BYTES = 800
RECORD_BYTES = 16 + BITS // 8


def write_molecules(path, source, count):
    """count lines, from the top of the source again and again; returns their SMILES."""
    lines = list(itertools.islice(peers.read_lines(source), count))
    smiles = []
    with open(path, "w", encoding="utf-8") as out:
        for line in itertools.islice(itertools.cycle(lines), count):
            smiles.append(line.split()[0])
            out.write(line)
    return smiles


def read_fingerprints(fpbin):
    data = fpbin.read_bytes()
    return [DataStructs.CreateFromBinaryText(data[at + 16:at + RECORD_BYTES])
            for at in range(HEADER_BYTES, len(data), RECORD_BYTES)]


def timed(call, *args):
    start = time.perf_counter()
    result = call(*args)
    return time.perf_counter() - start, result


def search_rdkit(fps, query, limit):
    scores = DataStructs.BulkTanimotoSimilarity(fps[query], fps)
    heapq.nlargest(limit, range(len(scores)), key=scores.__getitem__)
    return scores


class BabelIndex:
    """A fast search index that Open Babel has made of the first molecules of a file."""

    def __init__(self, folder, smiles, name):
        self.path = str(folder / f"{name}.fs")
        self.output = str(folder / f"{name}.smi.found")
        molecules = folder / f"{name}.babel.smi"  # the index refers to it
        molecules.write_text("".join(f"{line} {i}\n" for i, line in enumerate(smiles)), encoding="utf-8")
        conversion = openbabel.OBConversion()
        conversion.SetInAndOutFormats("smi", "fs")
        conversion.OpenInAndOutFiles(str(molecules), self.path)
        self.count = conversion.Convert()
        conversion.CloseOutFile()
        self.conversions, self.loadings = [], []  # seconds

    def load(self):
        openbabel.FastSearch().ReadIndexFile(self.path)

    def convert(self, query, limit):
        conversion = openbabel.OBConversion()
        conversion.SetInAndOutFormats("fs", "smi")
        conversion.AddOption("s", conversion.GENOPTIONS, query)
        conversion.AddOption("t", conversion.INOPTIONS, str(limit))
        conversion.OpenInAndOutFiles(self.path, self.output)
        conversion.Convert()
        conversion.CloseOutFile()

    def num_found(self):
        return len(pathlib.Path(self.output).read_text(encoding="utf-8").splitlines())

    def search(self, query, limit):
        self.conversions.append(timed(self.convert, query, limit)[0])
        self.loadings.append(timed(self.load)[0])
        if self.num_found() != limit:
            sys.exit(f"Open Babel found {self.num_found()} molecules instead of {limit} for {query}")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("--molecules", type=pathlib.Path, default=peers.BUNDLED_MOLECULES)
    parser.add_argument("--count", type=int, default=100000)
    parser.add_argument("--limit", type=int, default=10)
    parser.add_argument("--queries", type=int, default=40)
    args = parser.parse_args()

    ours, rdkit = [], []
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        molecules, fpbin = folder / "molecules.smi", folder / "x.fpbin"
        smiles = write_molecules(molecules, args.molecules, args.count)
        with peers.SearchProgram(args.program, molecules, fpbin, BITS, args.limit) as search:
            count = int(search.read_line())
            fps = read_fingerprints(fpbin)
            indices = []
            if openbabel is None:
                print("Open Babel is not installed and left out")
            else:
                openbabel.obErrorLog.StopLogging()
                indices = [BabelIndex(folder, smiles, "all"), BabelIndex(folder, smiles[:2 * args.limit], "few")]
            print(f"{count} fingerprints of {BITS} bits, {args.queries} queries, best {args.limit}", flush=True)
            for turn in range(0, args.queries, TURN):
                queries = [number * 997 % count for number in range(turn, min(turn + TURN, args.queries))]
                hits = []
                for query in queries:
                    seconds, found = search.ask(query)
                    ours.append(seconds)
                    hits.append(found)
                for query, found in zip(queries, hits):
                    seconds, scores = timed(search_rdkit, fps, query, args.limit)
                    rdkit.append(seconds)
                    peers.check_hits(query, found, scores, args.limit)
                for query in queries if indices else []:
                    for index in indices:
                        index.search(smiles[query], args.limit)
    times = [peers.Times("QXFastFPDatabase", ours, count), peers.Times("RDKit", rdkit, count)]
    if indices:
        times.append(peers.Times("Open Babel", indices[0].conversions, indices[0].count))
        for seconds in (indices[0].loadings, indices[1].conversions):
            times[-1].subtract(seconds)
    for each in times:
        each.print()
    for peer in times[1:]:
        times[0].print_ratio(peer)


if __name__ == "__main__":
    main()
