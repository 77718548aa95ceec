#!/usr/bin/env python3
"""Circular fingerprints in plain Python, written from docs/CircularFingerprint.md and not from the library's code.

Usage and output: as of path_reference.py, which also gives the molecular graph and the labels.

Every environment is extracted as a set of bonds, whatever has been found before, and its identifier is computed
from these bonds alone.
"""

import functools

import path_reference

MASK = 0xFFFFFFFF


def rotate(n, bits):
    return (n << bits | n >> (32 - bits)) & MASK


@functools.cache
def mix(seed, *words):
    """MurmurHash3_x86_32 of 32-bit words."""
    h = seed
    for k in words:
        k = rotate(k * 0xCC9E2D51 & MASK, 15) * 0x1B873593 & MASK
        h = (rotate(h ^ k, 13) * 5 + 0xE6546B64) & MASK
    h ^= 4 * len(words)
    h = (h ^ h >> 16) * 0x85EBCA6B & MASK
    h = (h ^ h >> 13) * 0xC2B2AE35 & MASK
    return h ^ h >> 16


def environments(graph, centre, max_radius):
    """For every radius the bonds at atoms up to radius - 1 bonds away."""
    within, bonds = {centre}, frozenset()
    for _ in range(max_radius + 1):
        yield bonds
        bonds = frozenset(b for atom in within for _, b in graph.neighbors[atom])
        within = within.union(*(graph.bonds[b]["ends"] for b in bonds))


class Identifier:
    """Of the atoms of one environment."""

    def __init__(self, graph, bonds, atom_labels, bond_labels):
        self.atom_labels, self.bond_labels = atom_labels, bond_labels
        self.steps = {}
        for b in bonds:
            for a, other in (graph.bonds[b]["ends"], graph.bonds[b]["ends"][::-1]):
                self.steps.setdefault(a, []).append((other, b))
        self.known = {}

    def of(self, atom, radius):
        key = atom, radius
        if key not in self.known:
            if radius == 0:
                words = [self.atom_labels[atom]]
            else:
                pairs = sorted((self.bond_labels[b], self.of(n, radius - 1)) for n, b in self.steps[atom])
                words = [self.of(atom, radius - 1)] + [word for pair in pairs for word in pair]
            self.known[key] = mix(radius, *words)
        return self.known[key]


def identifiers(graph, sets, t):
    atom_labels = [graph.atom_label(i, t) for i in range(graph.num_atoms)]
    bond_labels = [graph.bond_label(b, t) for b in graph.bonds]
    if t.min_distance == 0:
        yield from (mix(0, label) for label in atom_labels)
    appeared = {frozenset()}
    for radius in range(1, t.max_distance + 1):
        found = {}
        for atom in range(graph.num_atoms):
            bonds = sets[atom][radius]
            if bonds not in appeared:
                identifier = Identifier(graph, bonds, atom_labels, bond_labels).of(atom, radius)
                found.setdefault(bonds, []).append(identifier)
        if radius >= t.min_distance:
            yield from (min(candidates) for candidates in found.values())
        appeared |= found.keys()


def fingerprints(mol, types):
    graph = path_reference.Graph(mol)
    max_radius = max(t.max_distance for t in types)
    sets = [list(environments(graph, atom, max_radius)) for atom in range(graph.num_atoms)]
    for t in types:
        yield sorted({identifier % t.modulus for identifier in identifiers(graph, sets, t)})


if __name__ == "__main__":
    path_reference.main(__doc__, fingerprints)
