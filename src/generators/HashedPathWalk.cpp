// A walk in blocks instead of single steps. Walking depth first, one path after the other, a processor spends
// most of its time on wrong guesses: how many bonds the next atom has, whether the atom across is on the
// path. Here a block of paths of one length is extended at once by a loop that does not depend on such
// things:
// - every atom has at least three steps; missing ones lead back to the atom itself and so onto the path;
// - every extension is written down, and counts only if it leads to an atom that is not on the path;
// - which atoms are on a path is a 64-bit set carried along with it. Beyond 64 atoms, atoms share its bits,
//   and an atom that seems to be on the path is looked for among the path's ancestors.
// The extensions of a block are extended in turn before the next block, so each length needs one block of
// memory however many paths there are.
//
// The bits are those of the identifiers that PathGenerator lists: the paths are the same, only reached in
// another order, and a bit is on whenever and however often it is set. A list would hold every path at once,
// and in cages their number grows exponentially with the length.

#include "generators/HashedPathWalk.h"

#include <algorithm>

#include "generators/PathPrimes.h"

namespace QXFingrix {
namespace {

constexpr std::size_t blockSize = 512;
constexpr std::size_t minSteps = 3;
constexpr unsigned setSize = 64;

constexpr std::uint64_t MemberBit(unsigned atom) {
  return std::uint64_t{1} << (atom % setSize);
}

}  // namespace

void HashedPathWalk::SetBits(std::span<std::uint64_t> words, unsigned hashSize, const QXChem::QXMolBase& mol,
                             std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels,
                             unsigned minbonds, unsigned maxbonds) {
  LoadSteps(mol, atomLabels, bondLabels);
  if (levels_.size() < maxbonds + std::size_t{1}) levels_.resize(maxbonds + std::size_t{1});
  for (unsigned bonds = 1; bonds < maxbonds; ++bonds) {
    auto& [paths, parents, count, next] = levels_[bonds];
    if (paths.size() < blockSize + maxSteps_) paths.resize(blockSize + maxSteps_);
    if (parents.size() < paths.size()) parents.resize(paths.size());
  }
  if (lastIds_.size() < blockSize + maxSteps_) lastIds_.resize(blockSize + maxSteps_);
  LoadStarts(mol, atomLabels);
  HashedBits bits(words, hashSize);
  mol.NumAtoms() > setSize ? Walk<true>(minbonds, maxbonds, bits) : Walk<false>(minbonds, maxbonds, bits);
}

void HashedPathWalk::LoadSteps(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                               std::span<const unsigned> bondLabels) {
  firstStep_.clear();
  steps_.clear();
  maxSteps_ = minSteps;
  for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
    firstStep_.push_back(steps_.size());
    const auto neighbors = mol.Neighbors(atom);
    for (const QXChem::QXNeighbor& step : neighbors) {
      steps_.push_back({step.atom, atomLabels[step.atom], bondLabels[step.bond]});
    }
    for (std::size_t i = neighbors.size(); i < minSteps; ++i) steps_.push_back({atom, 0, 0});
    maxSteps_ = std::max(maxSteps_, neighbors.size());
  }
  firstStep_.push_back(steps_.size());
}

void HashedPathWalk::LoadStarts(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels) {
  auto& [paths, parents, count, next] = levels_[0];
  paths.clear();
  starts_.Reset(mol.NumAtoms());
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    if (!starts_.IsStart(atom)) continue;
    const unsigned start = atom.GetIdx();
    paths.push_back({MemberBit(start), atomLabels[start] * PATH_PRIMES[1], start});
  }
  count = static_cast<unsigned>(paths.size());
  next = 0;
}

template <bool isLarge>
void HashedPathWalk::Walk(unsigned minbonds, unsigned maxbonds, HashedBits& bits) {
  const auto setLevel = [&](const Level& level) {
    for (unsigned i = 0; i < level.count; ++i) bits.Set(level.paths[i].id);
  };
  if (minbonds == 0) setLevel(levels_[0]);
  if (maxbonds == 0) return;
  for (unsigned depth = 0;;) {
    Level& level = levels_[depth];
    if (level.next == level.count) {
      if (depth == 0) return;
      --depth;
    } else if (depth + 1 == maxbonds) {
      unsigned* const ids = lastIds_.data();
      const unsigned count =
          Extend<isLarge>(depth, [ids](unsigned i, const Path& path, unsigned) { ids[i] = path.id; });
      for (unsigned i = 0; i < count; ++i) bits.Set(ids[i]);
    } else {
      ++depth;
      Level& longer = levels_[depth];
      Path* const paths = longer.paths.data();
      unsigned* const parents = longer.parents.data();
      longer.count =
          Extend<isLarge>(depth - 1, [paths, parents](unsigned i, const Path& path, unsigned parent) {
            paths[i] = path;
            if constexpr (isLarge) parents[i] = parent;
          });
      longer.next = 0;
      if (depth >= minbonds) setLevel(longer);
    }
  }
}

// Extends paths of `depth` bonds by one bond, about a block of them. Gives each extension to
// take(i, path, parent), where i counts the valid ones so far: an extension that is not valid is overwritten
// by the next. Returns how many are valid.
template <bool isLarge, class Take>
unsigned HashedPathWalk::Extend(unsigned depth, Take take) {
  Level& level = levels_[depth];
  const unsigned bondWeight = PATH_PRIMES[2 * depth + 2];
  const unsigned atomWeight = PATH_PRIMES[2 * depth + 3];
  const std::size_t* const firstStep = firstStep_.data();
  const Step* const steps = steps_.data();
  unsigned count = 0;
  unsigned place = level.next;
  for (; place < level.count && count < blockSize; ++place) {
    // copied one by one into registers
    const std::uint64_t members = level.paths[place].members;
    const unsigned id = level.paths[place].id;
    const unsigned atom = level.paths[place].atom;
    const auto extend = [&](const Step& step) {
      bool isOnPath = (members >> (step.atom % setSize)) & 1;
      if constexpr (isLarge) isOnPath = isOnPath && IsOnPath(step.atom, depth, place);
      const unsigned longerId = id + step.bondLabel * bondWeight + step.atomLabel * atomWeight;
      take(count, Path{members | MemberBit(step.atom), longerId, step.atom}, place);
      count += !isOnPath;
    };
    const Step* step = steps + firstStep[atom];
    const Step* const end = steps + firstStep[atom + 1];
    for (std::size_t i = 0; i < minSteps; ++i) extend(*step++);
    for (; step != end; ++step) extend(*step);
  }
  level.next = place;
  return count;
}

bool HashedPathWalk::IsOnPath(unsigned atom, unsigned depth, unsigned place) const {
  while (levels_[depth].paths[place].atom != atom) {
    if (depth == 0) return false;
    place = levels_[depth].parents[place];
    --depth;
  }
  return true;
}

}  // namespace QXFingrix
