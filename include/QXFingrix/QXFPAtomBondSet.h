#pragma once

#include <utility>

#include "QXChem/QXAtomBondSet.h"

namespace QXFingrix {

/// Atoms and bonds of a molecule that a fingerprint generator found together, and the identifier they gave.
/// Id is unsigned for the hashed generators and std::string for the readable ones.
template <class Id>
class QXFPAtomBondSet : public QXChem::QXAtomBondSet {
 public:
  QXFPAtomBondSet() = default;
  explicit QXFPAtomBondSet(Id id) : id_(std::move(id)) {}

  const Id& GetId() const { return id_; }

 private:
  Id id_{};
};

}  // namespace QXFingrix
