#include "QXChem/QXAtomBondSet.h"

#include <algorithm>

namespace QXChem {
namespace {

bool Contains(std::span<const unsigned> values, unsigned value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

std::vector<unsigned> SortedUnique(std::span<const unsigned> values) {
  std::vector<unsigned> sorted(values.begin(), values.end());
  std::sort(sorted.begin(), sorted.end());
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
  return sorted;
}

}  // namespace

void QXAtomBondSet::Clear() {
  atoms_.clear();
  bonds_.clear();
}

bool QXAtomBondSet::HasAtom(unsigned idx) const {
  return Contains(atoms_, idx);
}
bool QXAtomBondSet::HasBond(unsigned idx) const {
  return Contains(bonds_, idx);
}

bool operator==(const QXAtomBondSet& a, const QXAtomBondSet& b) {
  return SortedUnique(a.Atoms()) == SortedUnique(b.Atoms()) &&
         SortedUnique(a.Bonds()) == SortedUnique(b.Bonds());
}

}  // namespace QXChem
