// Uses every installed library once and answers 0 when the results are right.
#include <cstdio>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFingerPrint.h"
#include "QXFingrix/QXPathFP.h"
#include "QXSystem/QXBitVector.h"

int main() {
  QXChem::QXGraphMol first, second;
  QXFingrix::QXFingerPrint a, b;
  if (!QXChem::QXParseSmiles(first, "c1ccccc1O") || !QXChem::QXParseSmiles(second, "Oc1ccccc1")) return 1;
  if (!QXFingrix::QXMakePathFP(a, first) || !QXFingrix::QXMakePathFP(b, second)) return 2;
  unsigned onlyA = 0, onlyB = 0, both = 0;
  QXSystem::QXGetBitCounts(a, b, &onlyA, &onlyB, &both);
  std::printf("phenol, written twice: %u bits in common\n", both);
  return a == b && both > 0 && onlyA + onlyB == 0 ? 0 : 3;
}
