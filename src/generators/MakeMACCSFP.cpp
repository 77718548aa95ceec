// No molecule meets a matcher here: KeyFinder knows what all patterns ask. The patterns themselves explain keys
// (MACCSPatterns.cpp), and the tests hold KeyFinder against them.

#include <algorithm>
#include <new>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXPerception.h"
#include "QXFingrix/QXFPType.h"
#include "QXFingrix/QXFPVersion.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXMACCSFP.h"
#include "QXFingrix/QXPrepareForFingerprinting.h"
#include "generators/StackScratch.h"
#include "generators/WorkspaceLease.h"
#include "generators/maccs/KeyFinder.h"
#include "generators/maccs/KeyRows.h"
#include "generators/maccs/KeySet.h"

namespace QXFingrix {
namespace {

using QXChem::QXMolBase;

// What a thread keeps between calls.
struct Workspace {
  QXChem::QXGraphMol copy;
  KeyFinder finder;
};

void SetElementKeys(KeySet& keys, const QXMolBase& mol) {
  for (const QXChem::QXAtomBase& atom : mol.Atoms()) {
    if (const unsigned key = KeyOfElement(atom.GetAtomicNum())) keys.Set(key);
  }
}

void SetPartKeys(KeySet& keys, const QXMolBase& mol) {
  WithScratch(mol.GetMaxAtomIdx() * sizeof(unsigned), [&](std::byte* memory) {
    unsigned* const parts = new (memory) unsigned[mol.GetMaxAtomIdx()];
    if (QXChem::QXDetermineComponents(mol, parts) > 1) keys.Set(twoComponentsKey);
    const unsigned numSystems = QXChem::QXDetermineAromaticRingSystems(mol, parts);
    if (numSystems >= 1) keys.Set(aromaticSystemKey);
    if (numSystems > 1) keys.Set(twoAromaticSystemsKey);
  });
}

// The molecule is prepared, and the 166 bits are clear.
void QXMakeMACCS166SetBits(QXFingerPrint& fp, const QXMolBase& mol, KeyFinder& finder) {
  KeySet keys;
  SetElementKeys(keys, mol);
  finder.FindPatternKeys(keys, mol);
  SetPartKeys(keys, mol);
  std::ranges::copy(keys.Words(), fp.GetWords().begin());
}

}  // namespace

bool QXMakeMACCS166FP(QXFingerPrint& fp, const QXMolBase& mol) {
  fp.SetFPTypeBase(nullptr);  // until the bits are made, which can fail for lack of memory
  if (!mol.IsValid()) return false;
  if (!fp.SetSize(numMACCSKeys)) throw std::bad_alloc();
  fp.ClearBits();
  WorkspaceLease<Workspace> lease;
  auto& [copy, finder] = lease.Get();
  if (QXIsPreparedForFingerprinting(mol, QXFPType::MACCS166)) {
    QXMakeMACCS166SetBits(fp, mol, finder);
  } else {
    copy = mol;
    QXPrepareForFingerprinting(copy, QXFPType::MACCS166);
    if (copy.NumAtoms() > 0) QXMakeMACCS166SetBits(fp, copy, finder);
  }
  if (!IsGiant(mol)) lease.GiveBack();
  fp.SetFPTypeBase(
      QXGetMACCS166FPType(static_cast<unsigned short>(QXGetFingerPrintVersion(QXFPType::MACCS166))));
  return true;
}

bool QXReadMACCSFingerPrintType(std::istream&, unsigned short version, QXFingerPrint& fp) {
  fp.SetFPTypeBase(QXGetMACCS166FPType(version));
  return true;
}

}  // namespace QXFingrix
