#pragma once

#include <memory>
#include <string>
#include <vector>

#include "QXChem/QXAtomBondSet.h"
#include "QXChem/QXMolBase.h"
#include "fingerprint/TypeParams.h"
#include "generators/FastModulus.h"
#include "generators/PreparedCopy.h"

namespace QXFingrix {

/// All the substructures that set the bits of a graph fingerprint of a molecule, in the order in which they
/// were found, each with its identifier. What a kind adds is how to find them, and to say which atoms and
/// bonds they are. Once found they do not change, so any number of threads may read them.
class Substructures {
 public:
  /// A molecule with more is refused: they would fill the memory.
  static constexpr unsigned maxFound = 2'000'000;

  Substructures(const Substructures&) = delete;
  Substructures& operator=(const Substructures&) = delete;
  virtual ~Substructures() = default;

  /// Finds and sorts them; to be called once.
  /// Returns  false when there are more than maxFound, smaller ones that are passed on the way included.
  bool FindAll();

  unsigned NumFound() const { return static_cast<unsigned>(ids_.size()); }
  unsigned GetId(unsigned i) const { return ids_[i]; }
  unsigned GetBit(unsigned i) const { return modulus_(ids_[i]); }
  /// Ascending by bit, then by identifier, then as found.
  const std::vector<unsigned>& Sorted() const { return sorted_; }

  /// In the caller's molecule. The atoms and bonds of substructures with the same identifier correspond in
  /// their order, as far as the kind can tell.
  QXChem::QXAtomBondSet GetSet(unsigned i) const { return copy_.Original(Read(i)); }
  /// The token that the unhashed kind has for it.
  virtual std::string GetText(unsigned i) const = 0;
  /// Whether another one has the same atoms and bonds, and stands for them.
  virtual bool IsRepeated(unsigned) const { return false; }

 protected:
  Substructures(const QXChem::QXMolBase& mol, unsigned code, const TypeParams& params);

  virtual bool Find() = 0;
  /// In the prepared molecule.
  virtual QXChem::QXAtomBondSet Read(unsigned i) const = 0;

  const QXChem::QXMolBase& Mol() const { return copy_.Mol(); }

  PreparedCopy copy_;
  TypeParams params_;
  std::vector<unsigned> atomLabels_;
  std::vector<unsigned> bondLabels_;
  std::vector<std::string> atomTexts_;
  std::vector<std::string> bondTexts_;
  std::vector<unsigned> ids_;

 private:
  FastModulus modulus_;
  std::vector<unsigned> sorted_;
};

using SubstructuresPtr = std::shared_ptr<const Substructures>;

}  // namespace QXFingrix
