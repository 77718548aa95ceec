#include "generators/circular/CircularIds.h"

#include <algorithm>

#include "generators/IdentifierHash.h"

namespace QXFingrix {
namespace {

// Neighbours are few.
void InsertionSort(std::span<std::uint64_t> values) {
  for (std::size_t i = 1; i < values.size(); ++i) {
    const std::uint64_t value = values[i];
    std::size_t place = i;
    for (; place > 0 && values[place - 1] > value; --place) values[place] = values[place - 1];
    values[place] = value;
  }
}

}  // namespace

void CircularIds::Load(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
                       std::span<const unsigned> bondLabels) {
  mol_ = &mol;
  bondLabels_ = bondLabels;
  radius_ = 0;
  ids_.resize(mol.NumAtoms());
  nextIds_.resize(mol.NumAtoms());
  for (unsigned atom = 0; atom < mol.NumAtoms(); ++atom) {
    IdentifierHash hash(radius_);
    hash.Add(atomLabels[atom]);
    ids_[atom] = hash.Get();
  }
}

void CircularIds::Grow() {
  ++radius_;
  for (unsigned atom = 0; atom < mol_->NumAtoms(); ++atom) nextIds_[atom] = Grown(atom);
  ids_.swap(nextIds_);
}

unsigned CircularIds::Grown(unsigned atom) {
  constexpr std::size_t many = 16;
  const auto neighbors = mol_->Neighbors(atom);
  if (pairs_.size() < neighbors.size()) pairs_.resize(neighbors.size());
  const std::span<std::uint64_t> pairs(pairs_.data(), neighbors.size());
  for (std::size_t i = 0; i < neighbors.size(); ++i) {
    pairs[i] = std::uint64_t{bondLabels_[neighbors[i].bond]} << 32 | ids_[neighbors[i].atom];
  }
  if (pairs.size() < many) {
    InsertionSort(pairs);
  } else {
    std::ranges::sort(pairs);
  }
  IdentifierHash hash(radius_);
  hash.Add(ids_[atom]);
  for (const std::uint64_t pair : pairs) {
    hash.Add(static_cast<std::uint32_t>(pair >> 32));
    hash.Add(static_cast<std::uint32_t>(pair));
  }
  return hash.Get();
}

}  // namespace QXFingrix
