#include "generators/circular/CircularSubstructures.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "QXChem/QXGraphMol.h"
#include "generators/circular/Ball.h"
#include "generators/circular/CircularIds.h"
#include "generators/circular/EnvironmentText.h"
#include "generators/circular/Environments.h"

namespace QXFingrix {

// Like HashedCircularWalk, which forgets the centres. An atom has one environment of each radius at most.
bool CircularSubstructures::Find() {
  CircularIds ids;
  ids.Load(Mol(), atomLabels_, bondLabels_);
  for (unsigned atom = 0; params_.minDistance == 0 && atom < Mol().NumAtoms(); ++atom) {
    Add(ids.Get()[atom], {atom, 0});
  }
  EnvironmentText writer;
  if (IsUnhashed()) writer.Load(Mol(), atomTexts_, bondTexts_);
  Environments environments;
  environments.Load(Mol());
  constexpr unsigned none = UINT_MAX;
  std::vector<unsigned> best;  // centre of each environment
  std::vector<std::string> bestTokens;
  std::string token;
  for (unsigned radius = 1; radius <= params_.maxDistance; ++radius) {
    const auto centres = environments.Grow();
    if (centres.empty()) break;
    ids.Grow();
    if (radius < params_.minDistance) continue;
    if (NumFound() + environments.NumFound() > maxFound) return false;
    best.assign(environments.NumFound(), none);
    bestTokens.resize(best.size());
    for (const auto& [atom, environment] : centres) {
      unsigned& centre = best[environment];
      if (IsUnhashed()) {
        writer.Write(atom, radius, token);
        if (centre != none && token >= bestTokens[environment]) continue;
        bestTokens[environment] = token;
      } else if (centre != none && ids.Get()[atom] >= ids.Get()[centre]) {
        continue;
      }
      centre = atom;
    }
    for (const unsigned centre : best) Add(ids.Get()[centre], {centre, radius});
  }
  return true;
}

void CircularSubstructures::Add(unsigned id, const Place& place) {
  ids_.push_back(id);
  places_.push_back(place);
}

QXChem::QXAtomBondSet CircularSubstructures::Read(unsigned i) const {
  Ball ball;
  ball.Load(Mol());
  ball.Find(places_[i].centre, places_[i].radius);
  QXChem::QXAtomBondSet set;
  for (const unsigned atom : ball.Atoms()) set.AddAtom(atom);
  for (const unsigned bond : ball.Bonds()) set.AddBond(bond);
  return set;
}

// Writes the environment as a molecule of its own, since to make ready for texts takes time that grows with
// the molecule.
std::string CircularSubstructures::WriteToken(unsigned i) const {
  const QXChem::QXAtomBondSet set = Read(i);
  QXChem::QXGraphMol part;
  std::vector<std::string> atomTexts;
  std::vector<std::string> bondTexts;
  for (const unsigned atom : set.Atoms()) {
    part.NewAtom(0);
    atomTexts.push_back(atomTexts_[atom]);
  }
  const auto place = [&](unsigned atom) {
    return static_cast<unsigned>(std::ranges::find(set.Atoms(), atom) - set.Atoms().begin());
  };
  for (const unsigned idx : set.Bonds()) {
    const QXChem::QXBondBase& bond = Mol().Bonds()[idx];
    part.NewBond(place(bond.GetBgnIdx()), place(bond.GetEndIdx()), 1);
    bondTexts.push_back(bondTexts_[idx]);
  }
  EnvironmentText writer;
  writer.Load(part, atomTexts, bondTexts);
  std::string text;
  writer.Write(0, places_[i].radius, text);
  return text;
}

}  // namespace QXFingrix
