// Atom by atom: those that a symmetry can put in this atom's place must have larger indices, and from then on
// only symmetries that keep the atom are left. Grochow, Kellis 2007, doi:10.1007/978-3-540-71681-5_7.
//
// A symmetry is looked for by trying, which can take as many steps as there are permutations. So the atoms are
// first told apart by what lies around them: colours are refined by those of the neighbours until they stay,
// and again after each atom that is to be kept. Little is tried in vain then; a pattern for which it is too
// much all the same gets no bounds.

#include "chem/subsearch/PatternSymmetry.h"

#include <algorithm>
#include <array>

namespace QXChem {
namespace {

constexpr unsigned maxAtoms = 16;
constexpr unsigned maxSteps = 200'000;  // some milliseconds

class SymmetryFinder {
 public:
  explicit SymmetryFinder(const SymmetryGraph& graph)
      : numAtoms_(static_cast<unsigned>(graph.atoms.size())), colors_(graph.atoms) {
    for (const SymmetryGraph::Bond& bond : graph.bonds) {
      bonds_[bond.begin][bond.end] = bonds_[bond.end][bond.begin] = bond.classes;
    }
    image_.fill(none_);
    Refine();
  }

  void Fix(unsigned atom) {
    image_[atom] = atom;
    colors_[atom] = numAtoms_;  // Refine() leaves smaller ones
    Refine();
  }
  bool IsFixed(unsigned atom) const { return image_[atom] == atom; }

  /// Whether a symmetry that keeps all fixed atoms takes an atom to another; false as well once it gave up.
  bool Maps(unsigned from, unsigned to) {
    if (!Fits(from, to)) return false;
    const auto kept = image_;
    image_[from] = to;
    const bool found = Extend();
    image_ = kept;
    return found;
  }
  bool GaveUp() const { return numSteps_ >= maxSteps; }

 private:
  static constexpr unsigned none_ = ~0U;

  // Until atoms of one colour have equally many neighbours of each colour by each kind of bond.
  void Refine() {
    std::vector<std::vector<std::uint64_t>> views(numAtoms_);
    for (std::size_t numColors = 0;;) {
      for (unsigned atom = 0; atom < numAtoms_; ++atom) {
        views[atom].clear();
        for (unsigned other = 0; other < numAtoms_; ++other) {
          if (bonds_[atom][other] == 0) continue;
          // Before the first round colours are wide, and bonds do not fit beside them.
          if (numColors != 0) views[atom].push_back(colors_[other] << numBondBits_ | bonds_[atom][other]);
        }
        std::ranges::sort(views[atom]);
        views[atom].push_back(colors_[atom]);
      }
      auto distinct = views;
      std::ranges::sort(distinct);
      distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
      if (distinct.size() == numColors) return;
      numColors = distinct.size();
      for (unsigned atom = 0; atom < numAtoms_; ++atom) {
        const auto place = std::ranges::lower_bound(distinct, views[atom]);
        colors_[atom] = static_cast<std::uint64_t>(place - distinct.begin());
      }
    }
  }

  bool Fits(unsigned from, unsigned to) {
    ++numSteps_;
    if (colors_[from] != colors_[to]) return false;
    for (unsigned other = 0; other < numAtoms_; ++other) {
      if (image_[other] == none_) continue;
      if (image_[other] == to || bonds_[from][other] != bonds_[to][image_[other]]) return false;
    }
    return true;
  }

  // An atom without an image, next to one that has one if possible: wrong images then show at once.
  unsigned GetNext() const {
    unsigned next = none_;
    for (unsigned atom = 0; atom < numAtoms_; ++atom) {
      if (image_[atom] != none_) continue;
      for (unsigned other = 0; other < numAtoms_; ++other) {
        if (bonds_[atom][other] != 0 && image_[other] != none_) return atom;
      }
      if (next == none_) next = atom;
    }
    return next;
  }

  bool Extend() {
    const unsigned atom = GetNext();
    if (atom == none_) return true;
    for (unsigned to = 0; to < numAtoms_ && !GaveUp(); ++to) {
      if (!Fits(atom, to)) continue;
      image_[atom] = to;
      if (Extend()) return true;
      image_[atom] = none_;
    }
    return false;
  }

  static constexpr unsigned numBondBits_ = 16;

  const unsigned numAtoms_;
  std::vector<std::uint64_t> colors_;
  std::array<std::array<std::uint16_t, maxAtoms>, maxAtoms> bonds_{};
  std::array<unsigned, maxAtoms> image_;
  unsigned numSteps_ = 0;
};

}  // namespace

std::vector<std::pair<unsigned, unsigned>> GetSymmetryBounds(const SymmetryGraph& graph,
                                                             std::span<const unsigned> order,
                                                             bool fixedRoot) {
  std::vector<std::pair<unsigned, unsigned>> bounds;
  if (graph.atoms.size() > maxAtoms) return bounds;
  SymmetryFinder finder(graph);
  if (fixedRoot) finder.Fix(0);
  for (const unsigned atom : order) {
    for (unsigned other = 0; other < graph.atoms.size(); ++other) {
      if (other != atom && !finder.IsFixed(atom) && !finder.IsFixed(other) && finder.Maps(atom, other)) {
        bounds.emplace_back(atom, other);
      }
    }
    finder.Fix(atom);
  }
  if (finder.GaveUp()) bounds.clear();
  return bounds;
}

}  // namespace QXChem
