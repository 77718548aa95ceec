#!/usr/bin/env python3
"""Tells how well fingerprints find molecules that act on the same target, ours beside RDKit's.

usage: screening.py QXFP DATA [--type TYPE ...] [--no-rdkit] [--check]

QXFP is our command line program. DATA is a folder with, for every target T:
  T_actives.smi        the active molecules, lines of "SMILES NAME"
  T_queries5.txt       lists of queries, a line each: places of five actives in that file, counted from 0
  T_decoys.smi.xz      molecules taken as inactive, or P_zinc_decoys.smi.xz for all targets whose names start
                       with P_
Without such files there is a notice and nothing to do. --type, which may be repeated, measures the types
given instead of the default ones of all kinds that have bits or Lingos; --no-rdkit leaves RDKit out. --check
also holds some numbers of the first target against others (see check_measures and check_scores).

Protocol: of each list the five queries are taken out, and the other actives and all decoys are ranked by the
best of their five Tanimoto coefficients. A ranking has an area under the ROC curve (AUC) and a BEDROC, which
weighs the top of the ranking most; both are averaged over the lists of a target, then over the targets.
Molecules with the same score share their places: AUC and BEDROC are those expected when chance orders them. A
molecule that cannot be read counts as one without a feature. The tables are Markdown, on standard output.

Source: Riniker, Landrum, J. Cheminf. 2013, 5, 26, doi:10.1186/1758-2946-5-26 (protocol and data). BEDROC:
Truchon, Bayly, J. Chem. Inf. Model. 2007, 47, 488, doi:10.1021/ci600426e.
"""
import argparse
import collections
import lzma
import pathlib
import subprocess
import sys
import tempfile

import numpy
import rdkit
from rdkit import Chem, RDLogger
from rdkit.Chem import MACCSkeys, rdFingerprintGenerator
from rdkit.ML.Scoring import Scoring

KINDS = ["Path", "Circular", "Tree", "MACCS166", "Lingo"]
BEDROC_ALPHA = 20.0
ROWS = 2000  # molecules compared at a time, so that a table of their features stays small
LINGO_LENGTH = 4


def rdkit_fingerprints():
    """Name and function, from a molecule to a bit vector, of what ours are held against."""
    ecfp = rdFingerprintGenerator.GetMorganGenerator(radius=2, fpSize=1024)
    return [("RDKit ECFP4, 1,024 bits", ecfp.GetFingerprint),
            ("RDKit 1 to 5 bonds, 1,024 bits", lambda mol: Chem.RDKFingerprint(mol, maxPath=5, fpSize=1024)),
            ("RDKit MACCS", MACCSkeys.GenMACCSKeys)]


def read_lines(path):
    opener = lzma.open if path.suffix == ".xz" else open
    with opener(path, "rt", encoding="utf-8") as lines:
        return [line.rstrip("\n") for line in lines]


class Target:
    """The actives, then the decoys, and the lists of queries."""

    def __init__(self, name, folder):
        decoys = folder / f"{name}_decoys.smi.xz"
        if not decoys.exists():
            decoys = folder / f"{name.split('_')[0]}_zinc_decoys.smi.xz"
        self.name = name
        actives = read_lines(folder / f"{name}_actives.smi")
        self.actives = len(actives)
        self.lines = actives + read_lines(decoys)
        lists = read_lines(folder / f"{name}_queries5.txt")
        self.lists = [[int(word) for word in line.split()] for line in lists]


class Features:
    """The features of many molecules as numbers, each at most once in a molecule: `ids` one molecule after
    the other, of which those of molecule i begin at starts[i]."""

    def __init__(self, molecules):
        self.sizes = numpy.array([len(ids) for ids in molecules])
        self.starts = numpy.concatenate([[0], numpy.cumsum(self.sizes)])
        self.ids = numpy.concatenate([numpy.asarray(ids, dtype=numpy.int64) for ids in molecules])

    def tanimoto(self, queries):
        """Tanimoto coefficients of the first `queries` molecules, the rows, with all molecules. Two molecules
        without features have 0."""
        # What no query has adds to the sizes only.
        known, columns = numpy.unique(self.ids[:self.starts[queries]], return_inverse=True)
        table = numpy.zeros((queries, len(known)), dtype=numpy.float32)
        table[numpy.repeat(numpy.arange(queries), self.sizes[:queries]), columns] = 1
        shared = numpy.empty((queries, len(self.sizes)))
        for begin in range(0, len(self.sizes), ROWS):
            end = min(begin + ROWS, len(self.sizes))
            ids = self.ids[self.starts[begin]:self.starts[end]]
            rows = numpy.repeat(numpy.arange(end - begin), self.sizes[begin:end])
            columns = numpy.minimum(numpy.searchsorted(known, ids), len(known) - 1)
            held = known[columns] == ids
            block = numpy.zeros((end - begin, len(known)), dtype=numpy.float32)
            block[rows[held], columns[held]] = 1
            shared[:, begin:end] = table @ block.T  # whole numbers below 2^24: exact
        united = self.sizes[:queries, None] + self.sizes[None, :] - shared
        return numpy.divide(shared, united, out=numpy.zeros_like(shared), where=united > 0)


def our_features(qxfp, kind, molecules):
    """Features of the molecules of a file: set bits, or Lingos, of which the second of a kind is another
    feature."""
    lingo = kind.startswith("Lingo")
    command = [qxfp, "fp", molecules, "-type", kind, "-out", "text" if lingo else "onbits"]
    answer = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout
    fields = [line.rsplit("\t", 1)[1] for line in answer.splitlines()]
    numbers = {}
    features = []
    for field in fields:
        if field == "-":
            features.append([])
        elif lingo:
            counts = collections.Counter()
            ids = []
            for begin in range(max(len(field) - LINGO_LENGTH, 0) + 1):
                piece = field[begin:begin + LINGO_LENGTH]
                counts[piece] += 1
                ids.append(numbers.setdefault((piece, counts[piece]), len(numbers)))
            features.append(ids)
        else:
            features.append([int(bit) for bit in field.split(",") if bit])
    return Features(features)


def peer_features(fingerprint, molecules):
    return Features([list(fingerprint(mol).GetOnBits()) if mol else [] for mol in molecules])


def auc(scores, active):
    """Area under the ROC curve: how often an active stands before a decoy, a tie counting half."""
    decoys = numpy.sort(scores[~active])
    below, not_above = (numpy.searchsorted(decoys, scores[active], side) for side in ("left", "right"))
    return (below + not_above).mean() / (2 * len(decoys))


def bedroc(scores, active, alpha=BEDROC_ALPHA):
    """Boltzmann-enhanced discrimination of the ROC curve: robust initial enhancement (RIE) scaled,
    from 0 to 1."""
    count = len(scores)
    order = numpy.argsort(-scores, kind="stable")
    weights = numpy.exp(-alpha * numpy.arange(1, count + 1) / count)
    begins = numpy.flatnonzero(numpy.diff(scores[order], prepend=numpy.inf))
    lengths = numpy.diff(begins, append=count)
    tied = numpy.repeat(numpy.add.reduceat(weights, begins) / lengths, lengths)
    rie = tied[active[order]].mean() / weights.mean()
    share = active.sum() / count
    lowest = numpy.expm1(alpha * share) / (share * numpy.expm1(alpha))
    highest = numpy.expm1(-alpha * share) / (share * numpy.expm1(-alpha))
    return (rie - lowest) / (highest - lowest)


def rankings(target, features):
    """For every list of queries: the scores of the molecules to be ranked, and which of them are active."""
    tanimoto = features.tanimoto(target.actives)
    active = numpy.arange(len(target.lines)) < target.actives
    for queries in target.lists:
        ranked = numpy.ones(len(target.lines), dtype=bool)
        ranked[queries] = False
        yield tanimoto[queries].max(axis=0)[ranked], active[ranked]


def measure(target, features):
    """Mean AUC and BEDROC over the lists."""
    return numpy.mean([(auc(*ranking), bedroc(*ranking)) for ranking in rankings(target, features)], axis=0)


def check_measures(target, features):
    """Both measures against RDKit's, which know no ties: on an order without any, and on the mean of many
    orders in which chance breaks the ties."""
    scores, active = next(rankings(target, features))
    random = numpy.random.default_rng(1)

    def rdkits(order):
        ranking = active[order][:, None]
        return Scoring.CalcAUC(ranking, 0), Scoring.CalcBEDROC(ranking, 0, BEDROC_ALPHA)

    shuffled = [numpy.lexsort((random.random(len(scores)), -scores)) for _ in range(100)]
    places = numpy.empty(len(scores))
    places[shuffled[0]] = -numpy.arange(len(scores))
    untied = numpy.array([auc(places, active), bedroc(places, active)])
    difference = numpy.abs(untied - rdkits(shuffled[0])).max()
    values = numpy.array([rdkits(order) for order in shuffled])
    deviation = numpy.abs((auc(scores, active), bedroc(scores, active)) - values.mean(axis=0))
    error = values.std(axis=0) / numpy.sqrt(len(shuffled))
    print(f"check: AUC and BEDROC differ from RDKit's by {difference:.1e}, "
          f"with ties by {deviation.max():.1e}, standard errors {error[0]:.1e} and {error[1]:.1e}",
          file=sys.stderr)
    if difference > 1e-9 or (deviation > 5 * error + 1e-9).any():
        sys.exit("AUC or BEDROC differs from RDKit's")


def check_scores(qxfp, kind, molecules, features):
    """The scores of the first active as query against those that our own search finds."""
    command = [qxfp, "search", molecules, "@0", "-type", kind, "-limit", "0", "-out", "tsv"]
    answer = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True).stdout
    head, *lines = [line.split("\t") for line in answer.splitlines()]
    found = {int(line[head.index("index")]): float(line[head.index("score")]) for line in lines}
    expected = features.tanimoto(1)[0]
    difference = max(abs(expected[i] - found.get(i, 0)) for i in range(len(expected)))
    print(f"check: {kind}: scores differ from those of qxfp search by {difference:.1e}", file=sys.stderr)
    if difference > 1e-6:
        sys.exit(f"{kind}: qxfp search finds other scores")


def run(options, targets):
    """Results by name of the fingerprint, then of the target."""
    results = collections.defaultdict(dict)
    check = options.check
    for name in targets:
        target = Target(name, options.data)
        with tempfile.NamedTemporaryFile("w", suffix=".smi", encoding="utf-8") as file:
            file.writelines(line + "\n" for line in target.lines)
            file.flush()
            for kind in options.type or KINDS:
                features = our_features(options.qxfp, kind, file.name)
                if len(features.sizes) != len(target.lines):
                    sys.exit(f"{name}: {len(features.sizes)} fingerprints of {len(target.lines)} molecules")
                if check:
                    check_scores(options.qxfp, kind, file.name, features)
                results[kind][name] = measure(target, features)
        if check:
            check_measures(target, features)
        if options.rdkit:
            molecules = [Chem.MolFromSmiles(line.split()[0]) for line in target.lines]
            for kind, fingerprint in rdkit_fingerprints():
                results[kind][name] = measure(target, peer_features(fingerprint, molecules))
        decoys = len(target.lines) - target.actives
        print(f"{name}: {target.actives} actives, {decoys} decoys", file=sys.stderr)
        check = False
    return results


def print_tables(results):
    names = list(next(iter(results.values())))
    print(f"RDKit {rdkit.__version__}, means over {len(names)} targets\n")
    print("| fingerprint | AUC | BEDROC 20 |\n|---|---|---|")
    for kind, values in results.items():
        mean = numpy.mean(list(values.values()), axis=0)
        print(f"| {kind.replace('|', chr(92) + '|')} | {mean[0]:.3f} | {mean[1]:.3f} |")
    print("\nAUC, BEDROC of every target\n")
    print("| target | " + " | ".join(kind.replace("|", "\\|") for kind in results) + " |")
    print("|---" * (len(results) + 1) + "|")
    for name in names:
        cells = (f"{values[name][0]:.3f}, {values[name][1]:.3f}" for values in results.values())
        print(f"| {name} | " + " | ".join(cells) + " |")


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("qxfp")
    parser.add_argument("data", type=pathlib.Path)
    parser.add_argument("--type", action="append", help="a fingerprint type instead of the default ones")
    parser.add_argument("--no-rdkit", dest="rdkit", action="store_false")
    parser.add_argument("--check", action="store_true")
    options = parser.parse_args()
    targets = sorted(path.name[:-len("_actives.smi")] for path in options.data.glob("*_actives.smi"))
    if not targets:
        print(f"skipped: no *_actives.smi in {options.data}")
        return
    RDLogger.DisableLog("rdApp.*")
    print_tables(run(options, targets))


if __name__ == "__main__":
    main()
