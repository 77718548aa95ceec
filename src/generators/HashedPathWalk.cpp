// Depth-first walk over flat arrays. Most paths are those of the greatest length, so the last step of a path
// is not walked: the identifiers of all continuations of a path are computed in one loop without branches,
// where a continuation onto the path itself sets nothing.

#include "generators/HashedPathWalk.h"

#include "generators/FastModulus.h"
#include "generators/PathPrimes.h"

namespace QXFingrix {

class HashedPathWalk::Bits {
 public:
  Bits(std::span<std::uint64_t> words, unsigned hashSize) : words_(words.data()), modulus_(hashSize) {}

  void Set(unsigned id, bool on = true) {
    const unsigned bit = modulus_(id);
    words_[bit / 64] |= std::uint64_t{on} << (bit % 64);
  }

 private:
  std::uint64_t* words_;
  FastModulus modulus_;
};

void HashedPathWalk::SetBits(std::span<std::uint64_t> words, unsigned hashSize, const QXChem::QXMolBase& mol,
                             std::span<const unsigned> atomLabels, std::span<const unsigned> bondLabels,
                             unsigned minbonds, unsigned maxbonds) {
  LoadSteps(mol, atomLabels, bondLabels);
  visited_.assign(mol.NumAtoms(), 0);
  starts_.Reset(mol.NumAtoms());
  Bits bits(words, hashSize);
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    if (!starts_.IsStart(atom)) continue;
    const unsigned start = atom.GetIdx();
    const unsigned id = atomLabels[start] * PATH_PRIMES[1];
    if (minbonds == 0) bits.Set(id);
    if (maxbonds > 0) WalkFrom(start, id, minbonds, maxbonds, bits);
  }
}

void HashedPathWalk::LoadSteps(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                               std::span<const unsigned> bondLabels) {
  firstStep_.clear();
  steps_.clear();
  for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
    firstStep_.push_back(static_cast<unsigned>(steps_.size()));
    for (const QXChem::QXNeighbor& step : mol.Neighbors(atom)) {
      steps_.push_back({step.atom, atomLabels[step.atom], bondLabels[step.bond]});
    }
  }
  firstStep_.push_back(static_cast<unsigned>(steps_.size()));
}

void HashedPathWalk::WalkFrom(unsigned start, unsigned startId, unsigned minbonds, unsigned maxbonds,
                              Bits& bits) {
  struct Level {
    unsigned atom;
    unsigned id;
    const Step* next;
    const Step* end;
  };
  Level levels[maxWeightedBonds + 1];
  const auto enter = [&](Level& level, unsigned atom, unsigned id) {
    level = {atom, id, steps_.data() + firstStep_[atom], steps_.data() + firstStep_[atom + 1]};
    visited_[atom] = 1;
  };

  unsigned depth = 0;  // bonds of the path
  enter(levels[0], start, startId);
  for (;;) {
    Level& level = levels[depth];
    const unsigned bondWeight = PATH_PRIMES[2 * depth + 2];
    const unsigned atomWeight = PATH_PRIMES[2 * depth + 3];
    const auto extend = [&](const Step& step) {
      return level.id + step.bondLabel * bondWeight + step.atomLabel * atomWeight;
    };
    if (depth + 1 == maxbonds) {
      for (; level.next != level.end; ++level.next)
        bits.Set(extend(*level.next), !visited_[level.next->atom]);
    } else {
      while (level.next != level.end && visited_[level.next->atom]) ++level.next;
    }
    if (level.next == level.end) {
      visited_[level.atom] = 0;
      if (depth == 0) return;
      --depth;
      continue;
    }
    const Step& step = *level.next++;
    const unsigned id = extend(step);
    ++depth;
    if (depth >= minbonds) bits.Set(id);
    enter(levels[depth], step.atom, id);
  }
}

}  // namespace QXFingrix
