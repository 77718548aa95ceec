#include "chem/subsearch/SearchOrder.h"

#include <utility>

#include "chem/subsearch/AtomWord.h"

namespace QXChem {

std::vector<unsigned> GetSearchOrder(const Query& query, std::span<const std::uint64_t> forbidden,
                                     bool fixedRoot) {
  const std::size_t numAtoms = query.atoms.size();
  std::vector<double> share(numAtoms);
  for (std::size_t i = 0; i < numAtoms; ++i) share[i] = EstimateShare(forbidden[i]);
  std::vector<std::vector<unsigned>> neighbors(numAtoms);
  for (const QueryBond& bond : query.bonds) {
    neighbors[bond.begin].push_back(bond.end);
    neighbors[bond.end].push_back(bond.begin);
  }

  std::vector<unsigned> numLinks(numAtoms, 0);  // to placed atoms
  std::vector<char> placed(numAtoms, 0);
  std::vector<unsigned> order;
  std::vector<unsigned> open;  // not placed, next to a placed one
  const auto isBetter = [&](unsigned a, unsigned b) {
    return numLinks[a] != numLinks[b] ? numLinks[a] > numLinks[b] : share[a] < share[b];
  };
  const auto place = [&](unsigned atom) {
    placed[atom] = 1;
    order.push_back(atom);
    for (const unsigned neighbor : neighbors[atom]) {
      if (!placed[neighbor] && numLinks[neighbor]++ == 0) open.push_back(neighbor);
    }
  };
  if (fixedRoot) place(0);
  while (order.size() < numAtoms) {
    if (open.empty()) {
      unsigned best = 0;
      while (placed[best]) ++best;
      for (unsigned i = best + 1; i < numAtoms; ++i) {
        if (!placed[i] && isBetter(i, best)) best = i;
      }
      place(best);
      continue;
    }
    std::size_t best = 0;
    for (std::size_t i = 1; i < open.size(); ++i) {
      if (isBetter(open[i], open[best])) best = i;
    }
    const unsigned atom = std::exchange(open[best], open.back());
    open.pop_back();
    place(atom);
  }
  return order;
}

}  // namespace QXChem
