#include "fingerprint/FingerPrintText.h"

#include <climits>
#include <cstring>
#include <new>

#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

bool SetFPText(QXFingerPrint& fp, std::string_view text) {
  constexpr std::size_t maxBytes = INT_MAX / CHAR_BIT;
  if (text.size() >= maxBytes) {
    QXSystem::QXThrow.Error("Max size for an QXBitVector is INT_MAX");
    return false;
  }
  if (!fp.SetSize(static_cast<unsigned>((text.size() + 1) * CHAR_BIT))) throw std::bad_alloc();
  fp.ClearBits();
  if (!text.empty()) std::memcpy(fp.GetWords().data(), text.data(), text.size());
  return true;
}

}  // namespace QXFingrix
