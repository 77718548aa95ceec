#pragma once

#include <atomic>
#include <compare>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "chem/subsearch/AtomWord.h"

namespace QXChem {

/// A molecule as the search sees it.
class Target {
 public:
  /// A neighbour and the class of the bond to it.
  struct Neighbor {
    std::uint32_t atom;
    std::uint16_t bondClass;

    auto operator<=>(const Neighbor&) const = default;
  };
  static constexpr unsigned noTwin = ~0U;

  /// Refers to the molecule, or to a copy of its own where rings or aromaticity had to be perceived. Buffers
  /// are kept.
  void Assign(const QXMolBase& mol);

  const QXMolBase& GetMol() const { return *mol_; }
  unsigned NumAtoms() const { return static_cast<unsigned>(words_.size()); }
  unsigned NumBonds() const { return static_cast<unsigned>(neighbors_.size() / 2); }

  const std::uint64_t* Words() const { return words_.data(); }
  /// Neighbours of atom i are Neighbors()[Offsets()[i]] up to Neighbors()[Offsets()[i + 1]].
  const std::uint32_t* Offsets() const { return offsets_.data(); }
  const Neighbor* Neighbors() const { return neighbors_.data(); }

  /// All words and all bond classes together: what is not there at all need not be searched for.
  std::uint64_t GetPresent() const { return present_; }
  std::uint16_t GetPresentBonds() const { return presentBonds_; }

  /// The value of a property. Ring counts and smallest rings must have been found before.
  int GetValue(AtomProperty property, unsigned atom) const;

  /// Finds them once; safe from several threads. Returns false with the reason when the rings are too many
  /// to be counted.
  void FindSmallestRings() const;
  bool CountRings(std::string& reason) const;

  /// Finds twin atoms (see TwinAtoms.h) once, where atoms have so many neighbours that it pays and there are no
  /// dative bonds; safe from several threads.
  void FindTwins() const;
  /// The nearest twin before each atom, if twins have been found.
  const unsigned* Twins() const { return hasTwins_ ? twins_.data() : nullptr; }

 private:
  void FillNeighbors();
  void FillWords();

  const QXMolBase* mol_ = nullptr;
  QXGraphMol perceived_;
  std::vector<std::uint64_t> words_;
  std::vector<std::uint32_t> offsets_;
  std::vector<Neighbor> neighbors_;
  std::uint64_t present_ = 0;
  std::uint16_t presentBonds_ = 0;
  unsigned highestDegree_ = 0;

  mutable std::mutex mutex_;  // for what is found on demand
  mutable std::atomic<bool> hasSmallestRings_ = false;
  mutable std::atomic<bool> hasRingCounts_ = false;
  mutable std::atomic<bool> hasTwins_ = false;
  mutable std::vector<unsigned> smallestRings_;
  mutable std::vector<unsigned> ringCounts_;
  mutable std::vector<unsigned> twins_;
};

}  // namespace QXChem
