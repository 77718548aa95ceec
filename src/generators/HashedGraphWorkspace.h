#pragma once

#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXFPAtomLabels.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "fingerprint/TypeParams.h"

namespace QXFingrix {

/// What a thread keeps between calls that make hashed graph fingerprints of one kind: after the first few
/// molecules a call allocates nothing.
template <class Walk>
struct HashedGraphWorkspace {
  QXChem::QXGraphMol mol;
  std::vector<unsigned> atomLabels;
  std::vector<unsigned> bondLabels;
  Walk walk;

  /// Takes a prepared copy of the caller's molecule. Symmetry classes that came along with it are left
  /// behind: they may rest on less than a proof, or on the molecule as it was before.
  void Prepare(const QXChem::QXMolBase& source, unsigned typeCode) {
    mol = source;
    QXPrepareForFingerprinting(mol, typeCode);
    mol.ForgetPerceived(QXChem::QXPerceived::Symmetry);
  }
  void Label(const TypeParams& params) {
    QXGetFingerprintAtomTypes(atomLabels, bondLabels, mol, params.atype, params.btype);
  }
};

}  // namespace QXFingrix
