// Atom by atom: those that a symmetry can put in this atom's place must have larger indices, and from then on
// only symmetries that keep the atom are left. Grochow, Kellis 2007, doi:10.1007/978-3-540-71681-5_7.

#include "chem/subsearch/PatternSymmetry.h"

#include <array>

namespace QXChem {
namespace {

constexpr unsigned maxAtoms = 16;

class SymmetryFinder {
 public:
  explicit SymmetryFinder(const SymmetryGraph& graph)
      : graph_(graph), numAtoms_(static_cast<unsigned>(graph.atoms.size())) {
    for (const SymmetryGraph::Bond& bond : graph.bonds) {
      bonds_[bond.begin][bond.end] = bonds_[bond.end][bond.begin] = bond.classes;
    }
    image_.fill(none_);
  }

  void Fix(unsigned atom) { image_[atom] = atom; }
  bool IsFixed(unsigned atom) const { return image_[atom] == atom; }

  /// Whether a symmetry that keeps all fixed atoms takes an atom to another.
  bool Maps(unsigned from, unsigned to) {
    if (!Fits(from, to)) return false;
    const auto kept = image_;
    image_[from] = to;
    const bool found = Extend(0);
    image_ = kept;
    return found;
  }

 private:
  static constexpr unsigned none_ = ~0U;

  bool Fits(unsigned from, unsigned to) const {
    if (graph_.atoms[from] != graph_.atoms[to]) return false;
    for (unsigned other = 0; other < numAtoms_; ++other) {
      if (image_[other] == none_) continue;
      if (image_[other] == to || bonds_[from][other] != bonds_[to][image_[other]]) return false;
    }
    return true;
  }

  bool Extend(unsigned atom) {
    while (atom < numAtoms_ && image_[atom] != none_) ++atom;
    if (atom == numAtoms_) return true;
    for (unsigned to = 0; to < numAtoms_; ++to) {
      if (!Fits(atom, to)) continue;
      image_[atom] = to;
      if (Extend(atom + 1)) return true;
      image_[atom] = none_;
    }
    return false;
  }

  const SymmetryGraph& graph_;
  const unsigned numAtoms_;
  std::array<std::array<std::uint16_t, maxAtoms>, maxAtoms> bonds_{};
  std::array<unsigned, maxAtoms> image_;
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
  return bounds;
}

}  // namespace QXChem
