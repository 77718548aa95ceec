#include "fingerprint/FingerPrintText.h"

#include <cstring>
#include <new>

#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

void ReportFPTextTooLong() {
  QXSystem::QXThrow.Error("Max size for an QXBitVector is INT_MAX");
}

bool SetFPText(QXFingerPrint& fp, std::string_view text) {
  if (text.size() > maxFPTextSize) {
    ReportFPTextTooLong();
    return false;
  }
  if (!fp.SetSize(static_cast<unsigned>((text.size() + 1) * CHAR_BIT))) throw std::bad_alloc();
  fp.ClearBits();
  if (!text.empty()) std::memcpy(fp.GetWords().data(), text.data(), text.size());
  return true;
}

}  // namespace QXFingrix
