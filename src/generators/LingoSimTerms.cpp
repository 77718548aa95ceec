#include <string_view>

#include "QXChem/QXLingo.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXLingoFP.h"
#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

using QXChem::QXLingoSim;

bool QXGetLingoSimTerms(const QXFingerPrint& a, const QXFingerPrint& b, unsigned* onlyA, unsigned* onlyB,
                        unsigned* both) {
  constexpr std::size_t lingoLength = 4;
  constexpr unsigned countAsOften = 1;
  const std::string_view textA = QXGetFPText(a);
  const std::string_view textB = QXGetFPText(b);
  if (textA.size() >= lingoLength && textB.size() >= lingoLength) {
    const QXLingoSim profile(textA, countAsOften);
    if (profile.CountTerms(textB, onlyA, onlyB, both)) return true;
    QXSystem::QXThrow.Warning("Cannot initialize lingo similarity");
    return false;
  }
  const auto lengthA = static_cast<unsigned>(textA.size());
  const bool same = textA == textB;
  *onlyA = same ? 0 : lengthA;
  *onlyB = same ? 0 : static_cast<unsigned>(textB.size());
  *both = same ? lengthA : 0;
  return same;
}

bool QXGetLingoSimTerms(const QXLingoSim& profile, const QXFingerPrint& b, unsigned* onlyA, unsigned* onlyB,
                        unsigned* both) {
  if (profile.CountTerms(QXGetFPText(b), onlyA, onlyB, both)) return true;
  QXSystem::QXThrow.Warning("lingo is not initialized");
  return false;
}

}  // namespace QXFingrix
