#include "fastfp/FastFPDatabaseImplBase.h"

#include <exception>

#include "QXFingrix/QXConvert.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "fastfp/file/CheckFingerPrintType.h"

namespace QXFingrix {

using QXSystem::QXThrow;

QXFastFPDatabaseImplBase::QXFastFPDatabaseImplBase(const std::string& fpbinFile)
    : fileName_(fpbinFile), params_(fpbinFile) {
  constexpr const char* caller = fastFPDatabaseConstructor;
  if (!params_.IsValid()) {
    QXThrow.Warning("%s : cannot initialize object!", caller);
    return;
  }
  popCountMethod_ = QXGetPopCountMethod();
  if (QXGetPopCountFunc(popCountMethod_) == nullptr) {
    QXThrow.Warning("%s : no pop count support!", caller);
    return;
  }
  if (!params_.IsLittleEndian()) {
    QXThrow.Warning("%s : %s was written in big-endian byte order, which is not supported!", caller,
                    fpbinFile.c_str());
    return;
  }
  isValid_ = CheckFingerPrintType(params_.GetFPTypeBase(), caller);
}

QXFastFPDatabaseImplBase::Fetch QXFastFPDatabaseImplBase::GetFingerPrint(QXFingerPrint& fp,
                                                                         std::uint64_t index) const {
  std::vector<unsigned long> words;
  std::uint64_t molIndex = 0;
  std::uint64_t bitCount = 0;
  if (!GetFingerPrint(words, molIndex, bitCount, index)) return Fetch::NoRecord;
  if (molIndex != index) return Fetch::WrongIndex;
  return QXConvertFP(fp, GetFPTypeBase(), words) ? Fetch::Done : Fetch::NoRecord;
}

bool QXFastFPDatabaseImplBase::MakeQuery(QXFingerPrint& fp, const QXChem::QXMolBase& mol) const {
  try {
    return QXMakeFP(fp, mol, GetFPTypeBase()) && fp.GetWords().size() == NumWords();
  } catch (const std::exception&) {  // a molecule that takes more memory than there is
    return false;
  }
}

std::uint64_t QXFastFPDatabaseImplBase::CountBits(const QXFingerPrint& fp) const {
  return QXGetPopCountFunc(popCountMethod_)(fp.GetWords().data(), fp.GetWords().size());
}

}  // namespace QXFingrix
