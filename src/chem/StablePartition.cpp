// Every class in turn splits the others by their bonds into it. A class that has done so and is split later
// need not do it again with all its parts: what the parts but one tell apart, the last one tells apart no
// further. Leaving out the largest halves the size of an atom's splitters every time, hence the logarithm.
//
// As in Refinement, a sum of hashes stands for a multiset of bonds.

#include "chem/StablePartition.h"

#include <algorithm>

namespace QXChem {

unsigned StablePartition::Run(const QXMolBase& mol, std::span<const std::uint64_t> bondColors,
                              std::vector<unsigned>& classOfAtom, unsigned numClasses) {
  mol_ = &mol;
  bondColors_ = bondColors;
  classOfAtom_ = classOfAtom;
  Start(mol.NumAtoms(), numClasses);
  while (!queue_.empty()) {
    const unsigned splitter = queue_.back();
    queue_.pop_back();
    classes_[splitter].queued = false;
    CountNeighborsIn(classes_[splitter]);
    SplitTouched();
  }
  return static_cast<unsigned>(classes_.size());
}

// Sorts the atoms by class and queues all classes.
void StablePartition::Start(unsigned numAtoms, unsigned numClasses) {
  sum_.assign(numAtoms, 0);
  isTouched_.assign(numAtoms, 0);
  members_.resize(numAtoms);
  place_.resize(numAtoms);
  classes_.assign(numClasses, Class{0, 0, false});
  for (const unsigned index : classOfAtom_) ++classes_[index].size;
  for (unsigned i = 1; i < numClasses; ++i) classes_[i].start = classes_[i - 1].start + classes_[i - 1].size;
  for (Class& c : classes_) c.size = 0;
  for (unsigned atom = 0; atom < numAtoms; ++atom) {
    Class& c = classes_[classOfAtom_[atom]];
    place_[atom] = c.start + c.size++;
    members_[place_[atom]] = atom;
  }
  queue_.clear();
  for (unsigned i = 0; i < numClasses; ++i) Enqueue(i);
}

void StablePartition::Enqueue(unsigned index) {
  classes_[index].queued = true;
  queue_.push_back(index);
}

// A bond's colour as seen from the splitter says as much as that seen from the other end.
void StablePartition::CountNeighborsIn(Class splitter) {
  touched_.clear();
  const QXNeighbor* const firstEntry = mol_->Neighbors(0).data();
  for (unsigned i = splitter.start; i < splitter.start + splitter.size; ++i) {
    const auto neighbors = mol_->Neighbors(members_[i]);
    const std::uint64_t* bondColor = bondColors_.data() + (neighbors.data() - firstEntry);
    for (const QXNeighbor& neighbor : neighbors) {
      if (!isTouched_[neighbor.atom]) touched_.push_back(neighbor.atom);
      isTouched_[neighbor.atom] = 1;
      sum_[neighbor.atom] += *bondColor++;
    }
  }
}

void StablePartition::SplitTouched() {
  std::ranges::sort(touched_, [this](unsigned a, unsigned b) {
    if (classOfAtom_[a] != classOfAtom_[b]) return classOfAtom_[a] < classOfAtom_[b];
    return sum_[a] < sum_[b];
  });
  for (std::size_t start = 0; start < touched_.size();) {
    const unsigned split = classOfAtom_[touched_[start]];
    std::size_t end = start;
    while (end < touched_.size() && classOfAtom_[touched_[end]] == split) ++end;
    Split(split, Touched(touched_).subspan(start, end - start));
    start = end;
  }
  for (const unsigned atom : touched_) {
    isTouched_[atom] = 0;
    sum_[atom] = 0;
  }
}

// Gives every sum among the touched atoms of a class a class of its own; the untouched ones, or without such
// the first sum's, keep the old one.
void StablePartition::Split(unsigned split, Touched touched) {
  const Class old = classes_[split];
  if (touched.size() == old.size && sum_[touched.front()] == sum_[touched.back()]) return;
  unsigned end = old.start + old.size;
  for (std::size_t i = touched.size(); i-- > 0;) {  // to the back, in their order
    const unsigned atom = touched[i];
    const unsigned other = members_[--end];
    std::swap(members_[place_[atom]], members_[end]);
    std::swap(place_[atom], place_[other]);
  }
  std::size_t next = 0;
  if (touched.size() == old.size) {
    while (sum_[touched[next]] == sum_[touched[0]]) ++next;
  }
  classes_[split].size = end + static_cast<unsigned>(next) - old.start;
  unsigned largest = split;
  const auto firstNew = static_cast<unsigned>(classes_.size());
  while (next < touched.size()) {
    const std::size_t first = next;
    const auto index = static_cast<unsigned>(classes_.size());
    for (; next < touched.size() && sum_[touched[next]] == sum_[touched[first]]; ++next) {
      classOfAtom_[touched[next]] = index;
    }
    classes_.push_back({end + static_cast<unsigned>(first), static_cast<unsigned>(next - first), false});
    if (classes_[index].size > classes_[largest].size) largest = index;
  }
  if (!old.queued && largest != split) Enqueue(split);
  for (unsigned index = firstNew; index < classes_.size(); ++index) {
    if (old.queued || index != largest) Enqueue(index);
  }
}

}  // namespace QXChem
