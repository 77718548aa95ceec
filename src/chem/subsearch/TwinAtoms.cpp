#include "chem/subsearch/TwinAtoms.h"

#include <algorithm>
#include <numeric>

namespace QXChem {
namespace {

// What the word does not say exactly and the neighbours do not settle.
constexpr AtomProperty ownProperties[] = {AtomProperty::Type,
                                          AtomProperty::Charge,
                                          AtomProperty::Isotope,
                                          AtomProperty::Hydrogens,
                                          AtomProperty::ImplicitHydrogens,
                                          AtomProperty::Valence,
                                          AtomProperty::Hybridization};

class TwinOrder {
 public:
  explicit TwinOrder(const Target& target)
      : target_(target), neighbors_(target.Neighbors(), target.Neighbors() + 2 * target.NumBonds()) {
    for (unsigned atom = 0; atom < target.NumAtoms(); ++atom) {
      std::sort(Begin(atom), Begin(atom + 1));
    }
  }

  // Below, equal to or above 0.
  std::strong_ordering Compare(unsigned a, unsigned b) {
    if (const auto order = target_.Words()[a] <=> target_.Words()[b]; order != 0) return order;
    const auto order = std::lexicographical_compare_three_way(Begin(a), Begin(a + 1), Begin(b), Begin(b + 1));
    if (order != 0) return order;
    for (const AtomProperty property : ownProperties) {
      const auto byValue = target_.GetValue(property, a) <=> target_.GetValue(property, b);
      if (byValue != 0) return byValue;
    }
    return std::strong_ordering::equal;
  }

 private:
  std::vector<Target::Neighbor>::iterator Begin(unsigned atom) {
    return neighbors_.begin() + target_.Offsets()[atom];
  }

  const Target& target_;
  std::vector<Target::Neighbor> neighbors_;  // of each atom, sorted
};

}  // namespace

void LinkTwins(const Target& target, std::vector<unsigned>& previous) {
  std::vector<unsigned> atoms(target.NumAtoms());
  std::iota(atoms.begin(), atoms.end(), 0U);
  TwinOrder order(target);
  std::ranges::sort(atoms, [&](unsigned a, unsigned b) {
    const auto result = order.Compare(a, b);
    return result != 0 ? result < 0 : a < b;
  });
  previous.assign(atoms.size(), Target::noTwin);
  for (std::size_t i = 1; i < atoms.size(); ++i) {
    if (order.Compare(atoms[i - 1], atoms[i]) == 0) previous[atoms[i]] = atoms[i - 1];
  }
}

}  // namespace QXChem
