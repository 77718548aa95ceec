#include "generators/circular/CircularSubstructures.h"

#include <algorithm>
#include <climits>

#include "QXChem/QXGraphMol.h"
#include "generators/circular/Ball.h"
#include "generators/circular/CircularIds.h"
#include "generators/circular/CircularTokenWalk.h"
#include "generators/circular/EnvironmentText.h"
#include "generators/circular/Environments.h"

namespace QXFingrix {

bool CircularSubstructures::Find() {
  return IsUnhashed() ? FindByTokens() : FindByIds();
}

// Like HashedCircularWalk, which forgets the centres.
bool CircularSubstructures::FindByIds() {
  CircularIds ids;
  ids.Load(Mol(), atomLabels_, bondLabels_);
  for (unsigned atom = 0; params_.minDistance == 0 && atom < Mol().NumAtoms(); ++atom) {
    if (!Add(ids.Get()[atom], {atom, 0})) return false;
  }
  Environments environments;
  environments.Load(Mol());
  constexpr unsigned none = UINT_MAX;
  std::vector<unsigned> best;  // centre of each environment
  for (unsigned radius = 1; radius <= params_.maxDistance; ++radius) {
    const auto centres = environments.Grow();
    if (centres.empty()) break;
    ids.Grow();
    if (radius < params_.minDistance) continue;
    best.assign(environments.NumFound(), none);
    for (const auto& [atom, environment] : centres) {
      unsigned& centre = best[environment];
      if (centre == none || ids.Get()[atom] < ids.Get()[centre]) centre = atom;
    }
    for (const unsigned centre : best) {
      if (!Add(ids.Get()[centre], {centre, radius})) return false;
    }
  }
  return true;
}

// Tokens are not kept: together they may be too long for that.
bool CircularSubstructures::FindByTokens() {
  constexpr unsigned noId = 0;
  CircularTokenWalk walk;
  return walk.Walk(Mol(), atomTexts_, bondTexts_, params_.minDistance, params_.maxDistance,
                   [&](unsigned centre, unsigned radius, const std::string&) {
                     return Add(noId, {centre, radius});
                   });
}

bool CircularSubstructures::Add(unsigned id, const Place& place) {
  if (NumFound() == maxFound) return false;
  ids_.push_back(id);
  places_.push_back(place);
  return true;
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
