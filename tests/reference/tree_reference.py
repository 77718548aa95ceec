#!/usr/bin/env python3
"""Tree fingerprints in plain Python, written from docs/TreeFingerprint.md and not from the library's code.

Usage and output are those of path_reference.py, from which the graph and its labels come.

The trees of a size are found in the most direct way: every bond next to a tree of one bond less is added to it, and
sets of bonds that come out several times or hold as many atoms as bonds are dropped. The centre of a tree is where
the greatest distance to another of its atoms is smallest.
"""

import struct

from path_reference import Graph, main


def murmur3_32(data):
    """MurmurHash3_x86_32 with seed 0, of bytes whose number is a multiple of four."""
    h = 0
    for (k,) in struct.iter_unpack("<I", data):
        k = k * 0xCC9E2D51 % 2 ** 32
        k = (k << 15 | k >> 17) % 2 ** 32
        k = k * 0x1B873593 % 2 ** 32
        h ^= k
        h = (h << 13 | h >> 19) % 2 ** 32
        h = (h * 5 + 0xE6546B64) % 2 ** 32
    h ^= len(data)
    h ^= h >> 16
    h = h * 0x85EBCA6B % 2 ** 32
    h ^= h >> 13
    h = h * 0xC2B2AE35 % 2 ** 32
    return h ^ h >> 16


def hash_words(*words, cache={}):
    if words not in cache:
        cache[words] = murmur3_32(struct.pack(f"<{len(words)}I", *words))
    return cache[words]


def trees(graph, max_bonds):
    """For every size from 1 to max_bonds the sets of bonds."""
    level = {frozenset([bond]) for bond in range(len(graph.bonds))}
    for size in range(1, max_bonds + 1):
        yield level
        longer = set()
        for tree in level:
            for atom in atoms_of(graph, tree):
                for _, bond in graph.neighbors[atom]:
                    grown = tree | {bond}
                    if len(grown) > size and len(atoms_of(graph, grown)) == size + 2:
                        longer.add(grown)
        level = longer


def atoms_of(graph, tree):
    return {atom for bond in tree for atom in graph.bonds[bond]["ends"]}


class Labels:
    def __init__(self, graph, t):
        self.atom = [graph.atom_label(i, t) for i in range(graph.num_atoms)]
        self.bond = [graph.bond_label(b, t) for b in graph.bonds]


def distances_from(start, around):
    distance = {start: 0}
    todo = [start]
    for atom in todo:
        for other, _ in around[atom]:
            if other not in distance:
                distance[other] = distance[atom] + 1
                todo.append(other)
    return distance


def neighbourhood(graph, tree):
    around = {atom: [] for atom in atoms_of(graph, tree)}
    for bond in tree:
        a, b = graph.bonds[bond]["ends"]
        around[a].append((b, bond))
        around[b].append((a, bond))
    return around


def centres_of(around):
    reach = {atom: max(distances_from(atom, around).values()) for atom in around}
    return [atom for atom in around if reach[atom] == min(reach.values())]


def node_id(atom, came_from, around, labels):
    branches = sorted((labels.bond[bond], node_id(other, atom, around, labels))
                      for other, bond in around[atom] if other != came_from)
    return hash_words(labels.atom[atom], *(word for branch in branches for word in branch))


def tree_id(centres, around, labels):
    if len(centres) == 1:
        return node_id(centres[0], None, around, labels)
    a, b = centres
    bond = next(bond for other, bond in around[a] if other == b)
    return hash_words(labels.bond[bond], *sorted((node_id(a, b, around, labels), node_id(b, a, around, labels))))


def fingerprints(mol, types):
    graph = Graph(mol)
    found = [(0, [i], {i: []}) for i in range(graph.num_atoms) if graph.z[i] > 1]
    for size, level in enumerate(trees(graph, max(t.max_distance for t in types)), start=1):
        for tree in level:
            around = neighbourhood(graph, tree)
            if any(graph.z[atom] > 1 for atom in around):
                found.append((size, centres_of(around), around))
    for t in types:
        labels = Labels(graph, t)
        yield sorted({tree_id(centres, around, labels) % t.modulus for size, centres, around in found
                      if t.min_distance <= size <= t.max_distance})


if __name__ == "__main__":
    main(__doc__, fingerprints)
