#pragma once

#include <algorithm>
#include <limits>
#include <new>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "QXChem/QXMolBase.h"
#include "QXFingrix/QXFPAtomBondSet.h"
#include "generators/PathPrimes.h"
#include "generators/StackScratch.h"
#include "generators/StartAtoms.h"

namespace QXFingrix {

/// Makes an identifier that of a path longer by one step: the bond and the atom that follow `depth` others.
/// Before the first atom stand an empty identifier and the null bond label. In place, so that a long text is
/// not copied for every step. For depth up to maxWeightedBonds; wraps at 32 bits.
inline void LengthenPathId(unsigned& id, unsigned bondLabel, unsigned atomLabel, unsigned depth) {
  id += bondLabel * PATH_PRIMES[2 * depth] + atomLabel * PATH_PRIMES[2 * depth + 1];
}
inline void LengthenPathId(std::string& id, const std::string& bondLabel, const std::string& atomLabel,
                           unsigned) {
  id.append(bondLabel).append(atomLabel);
}

/// Undoes LengthenPathId() with the same arguments.
inline void ShortenPathId(unsigned& id, unsigned bondLabel, unsigned atomLabel, unsigned depth) {
  id -= bondLabel * PATH_PRIMES[2 * depth] + atomLabel * PATH_PRIMES[2 * depth + 1];
}
inline void ShortenPathId(std::string& id, const std::string& bondLabel, const std::string& atomLabel,
                          unsigned) {
  id.resize(id.size() - bondLabel.size() - atomLabel.size());
}

/// Walks every path of a prepared molecule and gives each its identifier: Id is unsigned (hashed form) or
/// std::string (readable form).
///
/// Walks start at the heavy atoms, one of each symmetry class, and go depth first over the bonds of the
/// current end atom in their order, never onto an atom of the path. Every path of minbonds to maxbonds bonds
/// is recorded, in both directions. This is the plain form that fixes which walks there are and in what
/// order; HashedPathWalk is the fast one for fingerprints.
///
/// While a generator lives each label array carries one more element, the null label. It stands for the
/// missing bond before the first atom of a walk.
template <class Id>
class PathGenerator {
 public:
  using Pattern = QXFPAtomBondSet<Id>;

  /// The label arrays must hold one label per atom and per bond, and must outlive the generator. When
  /// `patterns` is given, every recorded path is appended to it too.
  PathGenerator(const QXChem::QXMolBase& mol, std::vector<Id>& atomLabels, std::vector<Id>& bondLabels,
                unsigned minbonds, unsigned maxbonds, const Id& nullLabel,
                std::vector<Pattern>* patterns = nullptr);
  ~PathGenerator();
  PathGenerator(const PathGenerator&) = delete;
  PathGenerator& operator=(const PathGenerator&) = delete;

  /// Recursive walk; distinct identifiers. With explicit stacks where paths may be very long.
  void GeneratePathIds(std::set<Id>& ids) const;
  /// Walk with explicit stacks; identifiers in walk order, duplicates kept.
  void GeneratePathIdsStack(std::vector<Id>& ids) const;

 private:
  // A path under way: atoms[0 .. depth - 1], joined by bonds[1 .. depth - 1]; bonds[0] is the null bond.
  struct Path {
    unsigned* atoms;
    unsigned* bonds;
    unsigned char* visited;  // by atom index
  };

  // Longer paths are not walked by recursion, which would need a call stack as long.
  static constexpr std::size_t maxRecursion = 1000;

  static unsigned OneMore(unsigned n) { return n == std::numeric_limits<unsigned>::max() ? n : n + 1; }
  // No path is longer than the molecule, whatever maxbonds allows.
  std::size_t DeepestPath() const { return std::min(maxAtoms_, mol_.NumAtoms()); }
  template <class Walk>
  void ForEachStart(Walk&& walk) const;
  void NextPath(const Path& path, unsigned atom, unsigned depth, unsigned numBonds, std::set<Id>& ids) const;
  template <class Record>
  void WalkWithStacks(Record record) const;
  template <class Record>
  void WalkFrom(unsigned start, const Path& path, std::vector<std::size_t>& numTried, Record& record) const;
  Id WholeId(const Path& path, unsigned depth) const;
  void AddPattern(const Path& path, unsigned depth, const Id& id) const;

  const QXChem::QXMolBase& mol_;
  std::vector<Id>& atomLabels_;
  std::vector<Id>& bondLabels_;
  unsigned minAtoms_;
  unsigned maxAtoms_;
  Id nullLabel_;
  std::vector<Pattern>* patterns_;
};

template <class Id>
PathGenerator<Id>::PathGenerator(const QXChem::QXMolBase& mol, std::vector<Id>& atomLabels,
                                 std::vector<Id>& bondLabels, unsigned minbonds, unsigned maxbonds,
                                 const Id& nullLabel, std::vector<Pattern>* patterns)
    : mol_(mol),
      atomLabels_(atomLabels),
      bondLabels_(bondLabels),
      minAtoms_(OneMore(minbonds)),
      maxAtoms_(OneMore(maxbonds)),
      nullLabel_(nullLabel),
      patterns_(patterns) {
  atomLabels_.push_back(nullLabel_);
  try {
    bondLabels_.push_back(nullLabel_);
  } catch (...) {
    atomLabels_.pop_back();
    throw;
  }
}

template <class Id>
PathGenerator<Id>::~PathGenerator() {
  atomLabels_.pop_back();
  bondLabels_.pop_back();
}

template <class Id>
template <class Walk>
void PathGenerator<Id>::ForEachStart(Walk&& walk) const {
  const std::size_t deepest = DeepestPath();
  const std::size_t numAtoms = mol_.GetMaxAtomIdx();
  const std::size_t stackBytes = deepest * sizeof(unsigned);
  WithScratch(2 * stackBytes + numAtoms, [&](std::byte* memory) {
    const Path path{new (memory) unsigned[deepest], new (memory + stackBytes) unsigned[deepest],
                    new (memory + 2 * stackBytes) unsigned char[numAtoms]};
    // Every walk clears the flags that it has set: to fill them again before each start would cost the
    // square of the number of atoms.
    std::fill_n(path.visited, numAtoms, 0);
    StartAtoms starts;
    starts.Reset(mol_.GetMaxAtomIdx());
    for (const QXChem::QXAtomBase& atom : mol_.Atoms()) {
      if (!starts.IsStart(atom)) continue;
      path.bonds[0] = static_cast<unsigned>(bondLabels_.size() - 1);
      walk(atom.GetIdx(), path);
    }
  });
}

template <class Id>
void PathGenerator<Id>::GeneratePathIds(std::set<Id>& ids) const {
  if (DeepestPath() > maxRecursion) return WalkWithStacks([&](const Id& id) { ids.insert(id); });
  ForEachStart([&](unsigned start, const Path& path) { NextPath(path, start, 1, 0, ids); });
}

template <class Id>
void PathGenerator<Id>::NextPath(const Path& path, unsigned atom, unsigned depth, unsigned numBonds,
                                 std::set<Id>& ids) const {
  path.atoms[depth - 1] = atom;
  path.visited[atom] = 1;
  if (depth >= minAtoms_) {
    const Id id = WholeId(path, depth);
    ids.insert(id);
    AddPattern(path, depth, id);
  }
  if (depth < maxAtoms_) {
    for (const QXChem::QXNeighbor& step : mol_.Neighbors(atom)) {
      if (path.visited[step.atom]) continue;
      path.bonds[numBonds + 1] = step.bond;
      NextPath(path, step.atom, depth + 1, numBonds + 1, ids);
    }
  }
  path.visited[atom] = 0;
}

template <class Id>
Id PathGenerator<Id>::WholeId(const Path& path, unsigned depth) const {
  Id id{};
  for (unsigned i = 0; i < depth; ++i) {
    LengthenPathId(id, bondLabels_[path.bonds[i]], atomLabels_[path.atoms[i]], i);
  }
  return id;
}

template <class Id>
void PathGenerator<Id>::GeneratePathIdsStack(std::vector<Id>& ids) const {
  WalkWithStacks([&](const Id& id) { ids.push_back(id); });
}

template <class Id>
template <class Record>
void PathGenerator<Id>::WalkWithStacks(Record record) const {
  std::vector<std::size_t> numTried;
  ForEachStart([&](unsigned start, const Path& path) { WalkFrom(start, path, numTried, record); });
}

// numTried: for each atom of the path, how many of its bonds have been tried; empty before and after.
template <class Id>
template <class Record>
void PathGenerator<Id>::WalkFrom(unsigned start, const Path& path, std::vector<std::size_t>& numTried,
                                 Record& record) const {
  Id id{};
  const auto enter = [&](unsigned atom, unsigned bond) {
    const auto depth = static_cast<unsigned>(numTried.size());
    path.atoms[depth] = atom;
    path.bonds[depth] = bond;
    path.visited[atom] = 1;
    LengthenPathId(id, bondLabels_[bond], atomLabels_[atom], depth);
    numTried.push_back(0);
    if (depth + 1 < minAtoms_) return;
    record(std::as_const(id));
    AddPattern(path, depth + 1, id);
  };
  enter(start, path.bonds[0]);
  while (!numTried.empty()) {
    const auto depth = static_cast<unsigned>(numTried.size() - 1);
    const unsigned end = path.atoms[depth];
    const auto steps = mol_.Neighbors(end);
    std::size_t& next = numTried.back();
    while (next < steps.size() && path.visited[steps[next].atom]) ++next;
    if (numTried.size() < maxAtoms_ && next < steps.size()) {
      const QXChem::QXNeighbor step = steps[next++];
      enter(step.atom, step.bond);
    } else {
      path.visited[end] = 0;
      numTried.pop_back();
      ShortenPathId(id, bondLabels_[path.bonds[depth]], atomLabels_[end], depth);
    }
  }
}

template <class Id>
void PathGenerator<Id>::AddPattern(const Path& path, unsigned depth, const Id& id) const {
  if (!patterns_) return;
  Pattern& pattern = patterns_->emplace_back(id);
  for (unsigned i = 0; i < depth; ++i) pattern.AddAtom(path.atoms[i]);
  for (unsigned i = 1; i < depth; ++i) pattern.AddBond(path.bonds[i]);
}

}  // namespace QXFingrix
