// Atoms that look alike from the centre are written together, as a class with a count. The classes are the
// coarsest that tell apart distances from the centre, labels, and the numbers of bonds of each kind to each
// other class. They need no trial of numberings, as telling all atoms apart would, and keep the text short
// where there is symmetry. Everything that an identifier knows of an environment, the labels that walks of up
// to r bonds from the centre meet, follows from the classes.
//
// Classes are split by what their atoms have in common with none of the others: each atom's bonds, sorted by
// label and by the class at the other end. The order of the parts follows from the same comparison, so it
// does not depend on the numbers of the atoms.

#include "generators/circular/EnvironmentText.h"

#include <algorithm>
#include <numeric>

namespace QXFingrix {
namespace {

// Replaces `ranks` by the place of each text among the distinct ones, which are returned.
std::vector<std::string> RankTexts(std::span<const std::string> texts, std::vector<unsigned>& ranks) {
  std::vector<std::string> distinct(texts.begin(), texts.end());
  std::ranges::sort(distinct);
  const auto repeated = std::ranges::unique(distinct);
  distinct.erase(repeated.begin(), repeated.end());
  ranks.clear();
  for (const std::string& text : texts) {
    ranks.push_back(static_cast<unsigned>(std::ranges::lower_bound(distinct, text) - distinct.begin()));
  }
  return distinct;
}

}  // namespace

void EnvironmentText::Load(const QXChem::QXMolBase& mol, std::span<const std::string> atomLabels,
                           std::span<const std::string> bondLabels) {
  mol_ = &mol;
  atomLabels_ = atomLabels;
  RankTexts(atomLabels, atomRanks_);
  rankedBonds_ = RankTexts(bondLabels, bondRanks_);
  ball_.Load(mol);
  placeOf_.resize(mol.NumAtoms());
}

void EnvironmentText::Write(unsigned centre, unsigned radius, std::string& text) {
  if (radius == 0) {
    text = atomLabels_[centre];
    return;
  }
  ball_.Find(centre, radius);
  LoadSteps();
  SortByDistanceAndLabel();
  while (Refine()) {
  }
  text.clear();
  numberOf_.resize(order_.size());
  for (std::size_t begin = 0, number = 0; begin < order_.size(); ++number) {
    std::size_t end = begin + 1;
    while (end < order_.size() && classOf_[order_[end]] == begin) ++end;
    numberOf_[begin] = number;
    if (number > 0) text.push_back(',');
    WriteClass(begin, end, text);
    begin = end;
  }
}

void EnvironmentText::LoadSteps() {
  const auto atoms = ball_.Atoms();
  for (unsigned i = 0; i < atoms.size(); ++i) placeOf_[atoms[i]] = i;
  firstStep_.clear();
  steps_.clear();
  for (const unsigned atom : atoms) {
    firstStep_.push_back(steps_.size());
    for (const QXChem::QXNeighbor& step : mol_->Neighbors(atom)) {
      if (ball_.HasBond(step.bond)) steps_.push_back({bondRanks_[step.bond], placeOf_[step.atom]});
    }
  }
  firstStep_.push_back(steps_.size());
  keys_.resize(steps_.size());
}

void EnvironmentText::SortByDistanceAndLabel() {
  const auto atoms = ball_.Atoms();
  order_.resize(atoms.size());
  classOf_.resize(atoms.size());
  std::iota(order_.begin(), order_.end(), 0);
  const auto rank = [&](unsigned place) { return atomRanks_[atoms[place]]; };
  const auto shells = ball_.Shells();
  for (std::size_t i = 0; i + 1 < shells.size(); ++i) {
    std::ranges::sort(order_.begin() + static_cast<std::ptrdiff_t>(shells[i]),
                      order_.begin() + static_cast<std::ptrdiff_t>(shells[i + 1]), {}, rank);
    std::size_t begin = shells[i];
    for (std::size_t place = begin; place < shells[i + 1]; ++place) {
      if (rank(order_[place]) != rank(order_[begin])) begin = place;
      classOf_[order_[place]] = begin;
    }
  }
}

// Splits every class once; false when none can be split.
bool EnvironmentText::Refine() {
  bool isAnySplit = false;
  for (std::size_t begin = 0; begin < order_.size();) {
    std::size_t end = begin + 1;
    while (end < order_.size() && classOf_[order_[end]] == begin) ++end;
    if (end - begin > 1 && Split(begin, end)) isAnySplit = true;
    begin = end;
  }
  return isAnySplit;
}

bool EnvironmentText::Split(std::size_t begin, std::size_t end) {
  const auto first = order_.begin() + static_cast<std::ptrdiff_t>(begin);
  const auto last = order_.begin() + static_cast<std::ptrdiff_t>(end);
  std::for_each(first, last, [&](unsigned atom) { FindKey(atom); });
  const auto compare = [&](unsigned a, unsigned b) {
    return std::ranges::lexicographical_compare(Key(a), Key(b));
  };
  std::sort(first, last, compare);
  bool isSplit = false;
  std::size_t part = begin;
  for (std::size_t place = begin + 1; place < end; ++place) {
    if (compare(order_[place - 1], order_[place])) {
      part = place;
      isSplit = true;
    }
    classOf_[order_[place]] = part;
  }
  return isSplit;
}

void EnvironmentText::FindKey(unsigned atom) {
  const auto first = keys_.begin() + static_cast<std::ptrdiff_t>(firstStep_[atom]);
  auto last = first;
  for (const Step& step : Steps(atom)) *last++ = std::uint64_t{step.bondRank} << 32 | classOf_[step.atom];
  std::sort(first, last);
}

std::span<const std::uint64_t> EnvironmentText::Key(unsigned atom) const {
  return std::span(keys_).subspan(firstStep_[atom], firstStep_[atom + 1] - firstStep_[atom]);
}

std::span<const EnvironmentText::Step> EnvironmentText::Steps(unsigned atom) const {
  return std::span(steps_).subspan(firstStep_[atom], firstStep_[atom + 1] - firstStep_[atom]);
}

// A count above 1, the label, and the bonds of one atom to its own class and to those before.
void EnvironmentText::WriteClass(std::size_t begin, std::size_t end, std::string& text) {
  if (end - begin > 1) text.append(std::to_string(end - begin));
  const unsigned atom = order_[begin];
  text.append(atomLabels_[ball_.Atoms()[atom]]);
  written_.clear();
  for (const Step& step : Steps(atom)) {
    if (classOf_[step.atom] <= begin) written_.emplace_back(numberOf_[classOf_[step.atom]], step.bondRank);
  }
  std::ranges::sort(written_);
  for (const auto& [number, bondRank] : written_) {
    text.append(rankedBonds_[bondRank]).append(std::to_string(number));
  }
}

}  // namespace QXFingrix
