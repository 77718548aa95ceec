#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "QXChem/QXMolBase.h"

namespace QXFingrix {

/// The identifiers of the environments around every atom of a molecule, radius by radius. Frozen: see
/// docs/CircularFingerprint.md. An object is working memory.
class CircularIds {
 public:
  /// Begins with radius 0. Molecule and bond labels must not change until the last call of Grow().
  void Load(const QXChem::QXMolBase& mol, std::span<const unsigned> atomLabels,
            std::span<const unsigned> bondLabels);

  /// Goes on to the next radius.
  void Grow();

  /// By atom.
  std::span<const unsigned> Get() const { return ids_; }

 private:
  unsigned Grown(unsigned atom);

  const QXChem::QXMolBase* mol_ = nullptr;
  std::span<const unsigned> bondLabels_;
  unsigned radius_ = 0;
  std::vector<unsigned> ids_;
  std::vector<unsigned> nextIds_;
  std::vector<std::uint64_t> pairs_;
};

}  // namespace QXFingrix
