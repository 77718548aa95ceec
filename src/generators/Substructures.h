#pragma once

#include <compare>
#include <memory>
#include <string>
#include <vector>

#include "QXChem/QXAtomBondSet.h"
#include "QXChem/QXMolBase.h"
#include "fingerprint/TypeParams.h"
#include "generators/FastModulus.h"
#include "generators/PreparedCopy.h"

namespace QXFingrix {

/// All the substructures that a graph fingerprint of a molecule is made of, in the order in which they were
/// found, each with its identifier, or its token in an unhashed fingerprint. What a kind adds is how to find
/// them, and to say which atoms and bonds they are. Once found they do not change, so any number of threads
/// may read them.
class Substructures {
 public:
  /// A molecule with more is refused: they would fill the memory.
  static constexpr unsigned maxFound = 2'000'000;

  enum class Outcome { Found, TooMany, TokensTooLong };

  /// For fingerprints of the kind with this code, hashed or unhashed.
  Substructures(const QXChem::QXMolBase& mol, unsigned code, const TypeParams& params);
  Substructures(const Substructures&) = delete;
  Substructures& operator=(const Substructures&) = delete;
  virtual ~Substructures() = default;

  /// Finds and sorts them; to be called once.
  /// Returns  TooMany for more than maxFound, paths and trees that are passed on the way to larger ones
  ///          included; TokensTooLong where the unhashed fingerprint could not hold each token once.
  Outcome FindAll();

  unsigned NumFound() const { return static_cast<unsigned>(ids_.size()); }
  /// @name What tells patterns apart
  /// Identifier and bit are 0 in an unhashed fingerprint, the token is empty in a hashed one.
  /// @{
  unsigned GetId(unsigned i) const { return isUnhashed_ ? 0 : ids_[i]; }
  unsigned GetBit(unsigned i) const { return isUnhashed_ ? 0 : modulus_(ids_[i]); }
  const std::string& GetToken(unsigned i) const { return isUnhashed_ ? tokens_[ids_[i]] : noToken_; }
  /// @}
  /// By bit, then by identifier or token; both of the same kind of fingerprint.
  static std::strong_ordering ComparePatterns(const Substructures& a, unsigned i, const Substructures& b,
                                              unsigned k);
  bool HaveSamePattern(unsigned i, unsigned k) const { return ids_[i] == ids_[k]; }
  /// Ascending by pattern, then as found.
  const std::vector<unsigned>& Sorted() const { return sorted_; }

  /// In the caller's molecule. The atoms and bonds of substructures with the same identifier correspond in
  /// their order, as far as the kind can tell.
  QXChem::QXAtomBondSet GetSet(unsigned i) const { return copy_.Original(Read(i)); }
  std::string GetSmarts(unsigned i) const;
  /// Whether another one has the same atoms and bonds, and stands for them.
  virtual bool IsRepeated(unsigned) const { return false; }

 protected:
  virtual bool Find() = 0;
  /// The token that the unhashed kind has for it.
  virtual std::string WriteToken(unsigned i) const = 0;
  /// In the prepared molecule.
  virtual QXChem::QXAtomBondSet Read(unsigned i) const = 0;

  const QXChem::QXMolBase& Mol() const { return copy_.Mol(); }
  bool IsUnhashed() const { return isUnhashed_; }

  TypeParams params_;
  std::vector<unsigned> atomLabels_;
  std::vector<unsigned> bondLabels_;
  std::vector<std::string> atomTexts_;  // for tokens only
  std::vector<std::string> bondTexts_;
  std::vector<unsigned> ids_;

 private:
  bool RankTokens();

  PreparedCopy copy_;
  bool isUnhashed_;
  FastModulus modulus_;
  std::vector<std::string> tokens_;  // distinct, ascending; an identifier is then a place here
  std::string noToken_;
  std::vector<unsigned> sorted_;
};

using SubstructuresPtr = std::shared_ptr<const Substructures>;

}  // namespace QXFingrix
