#!/usr/bin/env python3
"""Times RDKit's BulkTanimotoSimilarity beside the sorted search of QXFPDatabase, on the same fingerprints.

usage: compare_rdkit.py QX_DATABASE_SEARCH [--molecules FILE] [--fingerprints 100000] [--limit 100]
                        [--queries 40] [--packed]

QX_DATABASE_SEARCH is the program qx_database_search that the benchmarks build. The fingerprints are RDKit's
own path fingerprints of 2,048 bits. The bundled file has 4,000 molecules, so each is taken with paths of up
to 3, 4, 5, 6 and 7 bonds, and copies with one bit in a hundred flipped fill up the rest. FILE (lines of
"SMILES NAME", or the same compressed as .xz) takes its place where there are more molecules.

RDKit's vectors lie where making them one after the other from molecules has put them. With --packed they are
copied once more in a row: RDKit's best case.

Both sides answer the same queries in turn, so that what else the machine does hurts both alike. RDKit
computes the scores only; this library's time includes the choice and the order of the best. It is an error
when scores differ by more than single precision explains, or when a hit is missing.
"""
import argparse
import pathlib
import random
import statistics
import sys
import tempfile
import time

from rdkit import Chem, DataStructs, RDLogger
from rdkit.Chem import rdFingerprintGenerator

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent))
import peers

BITS = 2048


def read_molecules(path):
    for line in peers.read_lines(path):
        mol = Chem.MolFromSmiles(line.split()[0])
        if mol is not None:
            yield mol


def make_fingerprints(path, count):
    """count distinct fingerprints, and how many of them are of molecules as they are."""
    generators = [rdFingerprintGenerator.GetRDKitFPGenerator(maxPath=n, fpSize=BITS, numBitsPerFeature=1)
                  for n in (5, 3, 4, 6, 7)]
    found = {}
    for mol in read_molecules(path):
        for generator in generators:
            fp = generator.GetFingerprint(mol)
            found.setdefault(fp.ToBinary(), fp)
        if len(found) >= count:
            break
    fps = list(found.values())[:count]
    num_real = len(fps)
    dice = random.Random(1)
    while len(fps) < count:
        fp = DataStructs.ExplicitBitVect(fps[len(fps) % num_real].ToBinary())
        for bit in dice.sample(range(BITS), BITS // 100):
            fp.UnSetBit(bit) if fp.GetBit(bit) else fp.SetBit(bit)
        fps.append(fp)
    return fps, num_real


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program")
    parser.add_argument("--molecules", type=pathlib.Path, default=peers.BUNDLED_MOLECULES)
    parser.add_argument("--fingerprints", type=int, default=100000)
    parser.add_argument("--limit", type=int, default=100)
    parser.add_argument("--queries", type=int, default=40)
    parser.add_argument("--packed", action="store_true")
    args = parser.parse_args()
    RDLogger.DisableLog("rdApp.*")

    fps, num_real = make_fingerprints(args.molecules, args.fingerprints)
    if args.packed:
        fps = [DataStructs.ExplicitBitVect(fp.ToBinary()) for fp in fps]
    print(f"{len(fps)} fingerprints of {BITS} bits, {num_real} of {args.molecules.name}, the others with "
          f"noise; {statistics.mean(fp.GetNumOnBits() for fp in fps[:1000]):.0f} bits set on average")
    ours, theirs = [], []
    with tempfile.NamedTemporaryFile(suffix=".words") as words:
        for fp in fps:
            words.write(DataStructs.BitVectToBinaryText(fp))
        words.flush()
        with peers.SearchProgram(args.program, words.name, BITS, args.limit) as search:
            for number in range(args.queries):
                query = number * 997 % len(fps)
                seconds, hits = search.ask(query)
                ours.append(seconds)
                start = time.perf_counter()
                scores = DataStructs.BulkTanimotoSimilarity(fps[query], fps)
                theirs.append(time.perf_counter() - start)
                peers.check_hits(query, hits, scores, args.limit)
    times = [peers.Times("QXFPDatabase", ours, len(fps)), peers.Times("RDKit", theirs, len(fps))]
    for each in times:
        each.print()
    times[0].print_ratio(times[1])
    print(f"{args.queries} queries, all scores agree")


if __name__ == "__main__":
    main()
