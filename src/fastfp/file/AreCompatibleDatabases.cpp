#include <algorithm>

#include "QXChem/QXGraphMol.h"
#include "QXFingrix/QXConvert.h"
#include "QXFingrix/QXFastFPDatabase.h"
#include "QXFingrix/QXPopCount.h"
#include "QXSystem/QXErrorHandler.h"
#include "fastfp/FastFPDatabaseImplBase.h"
#include "fastfp/file/CheckFingerPrintType.h"

namespace QXFingrix {

using QXSystem::QXThrow;

bool QXAreCompatibleDatabases(const QXChem::QXMolDatabase& moldb, const QXFastFPDatabase& fastdb) {
  constexpr const char* caller = "QXAreCompatibleDatabases()";
  const auto refuse = [&](const char* why) {
    QXThrow.Warning("%s %s", caller, why);
    return false;
  };
  if (moldb.GetMaxMolIdx() == 0) return refuse("empty molecule database!");
  if (!fastdb.IsValid()) return refuse("invalid fingerprint database!");
  const QXPopCountFunc popCount = QXGetPopCountFunc(QXGetPopCountMethod());
  if (popCount == nullptr) return refuse("fast fingerprint methods are not supported!");
  const QXFastFPDatabaseImplBase& impl = *fastdb.impl_;
  if (!CheckFingerPrintType(impl.GetFPTypeBase(), caller)) return false;
  if (moldb.GetMaxMolIdx() != impl.NumFingerPrints()) return refuse("different number of entries!");

  std::vector<unsigned long> storedWords;
  std::uint64_t molIndex = 0;
  std::uint64_t storedCount = 0;
  if (!impl.GetFingerPrint(storedWords, molIndex, storedCount, 0)) {
    return refuse("cannot access fingerprint data!");
  }
  QXChem::QXGraphMol mol;
  std::string reason;
  if (!moldb.ReadMolecule(mol, 0, reason)) {
    // No bits are the mark of a molecule that could not be read when the file was made either.
    const bool isMarked = storedCount == 0 && std::all_of(storedWords.begin(), storedWords.end(),
                                                          [](unsigned long word) { return word == 0; });
    return isMarked || refuse("cannot access molecule data!");
  }
  QXFingerPrint fp;
  if (!impl.MakeQuery(fp, mol)) return refuse("cannot generate fingerprint!");
  std::vector<unsigned long> words;
  const bool isSame = QXConvertFP(words, fp, popCount) == storedCount && words == storedWords;
  return isSame || refuse("fingerprint mismatch!");
}

}  // namespace QXFingrix
