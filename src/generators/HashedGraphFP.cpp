#include "generators/HashedGraphFP.h"

#include <new>

#include "QXFingrix/QXFingerPrint.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {

bool HashedGraphFP::Make(QXFingerPrint& fp, const QXChem::QXMolBase& mol, const TypeParams& given) const {
  fp.SetFPTypeBase(nullptr);  // until the bits are made, which can fail for lack of memory
  if (!mol.IsValid()) return false;
  const TypeParams params = CorrectGraphParams(function, kind, CorrectNumBits(function, kind, given));
  if (!fp.SetSize(params.numbits)) throw std::bad_alloc();
  fp.ClearBits();
  // The modulus never exceeds the size, so every bit fits.
  if (!setBits(fp.GetWords(), mol, params)) {
    fp.ClearBits();
    return false;
  }
  const TypeRow& row = *FindTypeRow(kind.code);
  fp.SetFPTypeBase(row.cached(row.version, params));
  return true;
}

bool HashedGraphFP::Make(QXFingerPrint& fp, const QXChem::QXMolBase& mol) const {
  return Make(fp, mol, FindTypeRow(kind.code)->defaults);
}

}  // namespace QXFingrix
