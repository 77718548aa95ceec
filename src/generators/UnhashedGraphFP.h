#pragma once

#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/FingerPrintText.h"
#include "fingerprint/TypeTable.h"
#include "generators/GraphParams.h"
#include "generators/WorkspaceLease.h"

namespace QXFingrix {

/// What unhashed graph fingerprints have in common. Walk is what a kind adds, working memory with
///   bool Collect(const QXMolBase& mol, span<const string> atomLabels, span<const string> bondLabels,
///                unsigned minDistance, unsigned maxDistance, size_t maxSize)
/// which answers false as soon as the tokens would give a text of more than maxSize bytes, and
///   GetTokens()
/// for the tokens that it collected: a TokenTree or a TokenList.
template <class FPType, class Walk>
struct UnhashedGraphFP {
  const char* function;  // that messages name
  GraphKind kind;

  /// Makes the fingerprint with parameters of which those out of range are replaced.
  bool Make(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const TypeParams& given) const {
    return MakeWithMasks(fp, mol, mol.IsValid() ? RemoveUnknownMaskBits(function, kind, given) : given);
  }

  /// With the parameters of a type of the kind.
  bool MakeByType(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const QXFPTypeBase* type) const;

 private:
  // What a thread keeps between calls.
  struct Workspace {
    QXChem::QXGraphMol mol;
    std::vector<std::string> atomLabels;
    std::vector<std::string> bondLabels;
    Walk walk;
    std::string text;

    bool IsLarge() {
      constexpr std::size_t large = std::size_t{1} << 22;
      return walk.GetTokens().GetCapacity() > large || text.capacity() > large;
    }
  };

  bool MakeWithMasks(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const TypeParams& given) const;
  static bool StoreTokens(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const TypeParams& params);
};

template <class FPType, class Walk>
bool UnhashedGraphFP<FPType, Walk>::StoreTokens(QXFingerPrint& fp, const QXChem::QXMolBase& mol,
                                                const TypeParams& params) {
  WorkspaceLease<Workspace> lease;
  auto& [copy, atomLabels, bondLabels, walk, text] = lease.Get();
  copy = mol;
  QXPrepareForFingerprinting(copy, FPType::TypeCode);
  // Chirality is perceived with the classes of the prepared molecule, not with some that came along.
  copy.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  QXGetFingerprintAtomTypes(atomLabels, bondLabels, copy, params.atype, params.btype);
  if (!walk.Collect(copy, atomLabels, bondLabels, params.minDistance, params.maxDistance, maxFPTextSize)) {
    ReportFPTextTooLong();
    return false;
  }
  walk.GetTokens().Write(text);
  const bool stored = SetFPText(fp, text);
  if (!IsGiant(mol) && !lease.Get().IsLarge()) lease.GiveBack();
  return stored;
}

template <class FPType, class Walk>
bool UnhashedGraphFP<FPType, Walk>::MakeWithMasks(QXFingerPrint& fp, const QXChem::QXMolBase& mol,
                                                  const TypeParams& given) const {
  if (mol.IsValid()) {
    const TypeParams params = CorrectGraphParams(function, kind, given);
    if (StoreTokens(fp, mol, params)) {
      const TypeRow& row = *FindTypeRow(FPType::TypeCode);
      fp.SetFPTypeBase(row.cached(row.version, params));
      return true;
    }
  }
  fp.SetFPTypeBase(nullptr);
  return false;
}

template <class FPType, class Walk>
bool UnhashedGraphFP<FPType, Walk>::MakeByType(QXFingerPrint& fp, const QXChem::QXMolBase& mol,
                                               const QXFPTypeBase* type) const {
  const auto* ownType = dynamic_cast<const FPType*>(type);
  if (!ownType) {
    QXSystem::QXThrow.Warning("%s : invalid unhashed %s fingerprint type!", function, kind.word);
    return false;
  }
  if (ownType->GetID() & reservedUnhashedBits) QXSystem::QXThrow.Warning("Unrecognised data!");
  return MakeWithMasks(fp, mol, UnpackTypeId(ownType->GetID()));
}

}  // namespace QXFingrix
