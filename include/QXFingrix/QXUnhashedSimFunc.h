#pragma once

#include <string>
#include <vector>

#include "QXFingrix/QXSimFunc.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// The tokens of an unhashed fingerprint by the addresses of their single stored copies, so that equal tokens
/// have equal ids; in ascending order of the addresses, as many times as they occur.
using QXTokenIds = std::vector<const std::string*>;

/// A measure of unhashed fingerprints that compares sorted token ids: for a caller's own loops, which give
/// each distinct token one address. QXFPDatabase takes none of these; it gives the same scores, from the
/// token numbers in its own storage.
class QX_API QXUnhashedSimFunc : public QXSimFuncBase {
 public:
  /// 0.0, whatever the fingerprints: these measures need token ids. QXTanimoto compares two unhashed
  /// fingerprints.
  float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const final;

  /// The score of two fingerprints by their token ids.
  /// Shape    both ascending, with the addresses of the same single copies.
  virtual float operator()(const QXTokenIds& a, const QXTokenIds& b) const = 0;

  QXUnhashedSimFunc* CreateCopy() const override = 0;
};

/// k / (nA + nB - k), of nA and nB tokens, k of them in common; not a number when neither has a token.
class QX_API QXTanimotoUnhashedSim final : public QXUnhashedSimFunc {
 public:
  using QXUnhashedSimFunc::operator();
  /// Cost     O(nA + nB), no allocation.
  float operator()(const QXTokenIds& a, const QXTokenIds& b) const override;
  QXUnhashedSimFunc* CreateCopy() const override;
  std::string GetSimTypeString() const override;
};

}  // namespace QXFingrix
