#pragma once

#include <string>

#include "QXFingrix/QXFPTypeBase.h"
#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// The parameters of a fingerprint type as plain numbers.
///
/// Decodes the kinds MACCS166, Path, Lingo, Circular and Tree. For any other, and for a text that does not
/// parse (with the parser's Warning), the object is invalid and its numbers are 0, but GetFPType() still
/// gives the code that the text starts with.
class QX_API QXFPTypeParams {
 public:
  QXFPTypeParams() = default;
  explicit QXFPTypeParams(const std::string& typeString);
  /// From the descriptor's type string; null leaves the object invalid.
  explicit QXFPTypeParams(const QXFPTypeBase* type);

  bool IsValid() const { return valid_; }
  unsigned GetFPType() const { return type_; }
  unsigned short GetVersion() const { return version_; }
  /// 166 for MACCS166, 0 for Lingo.
  unsigned GetNumBits() const { return numBits_; }
  unsigned GetMinDistance() const { return minDistance_; }
  unsigned GetMaxDistance() const { return maxDistance_; }
  unsigned GetAtomTypes() const { return atomTypes_; }
  unsigned GetBondTypes() const { return bondTypes_; }

 private:
  bool valid_ = false;
  unsigned short version_ = 0;
  unsigned type_ = 0;
  unsigned numBits_ = 0;
  unsigned minDistance_ = 0;
  unsigned maxDistance_ = 0;
  unsigned atomTypes_ = 0;
  unsigned bondTypes_ = 0;
};

}  // namespace QXFingrix
