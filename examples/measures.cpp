// Two drugs by every measure, then a database in memory by three of them, one its own.

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXFPDatabase.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXMakeFP.h"
#include "QXFingrix/QXSimilarity.h"

using namespace QXFingrix;

// How much of the smaller of two fingerprints the larger one holds.
class OverlapSim : public QXSimFuncBase {
 public:
  float operator()(const QXFingerPrint& a, const QXFingerPrint& b) const override {
    unsigned onlyA = 0, onlyB = 0, both = 0;
    if (!QXGetBitCounts(a, b, &onlyA, &onlyB, &both)) return 0.0F;
    const unsigned smaller = both + std::min(onlyA, onlyB);
    return smaller == 0 ? 1.0F : static_cast<float>(both) / static_cast<float>(smaller);
  }
  QXSimFuncBase* CreateCopy() const override { return new OverlapSim(*this); }
  std::string GetSimTypeString() const override { return "Overlap"; }
};

bool PrintEveryMeasure(const char* typeString) {
  QXChem::QXGraphMol omeprazole, lansoprazole;
  QXFingerPrint a, b;
  const QXFPTypeBase* type = QXGetFPType(typeString);
  if (!QXChem::QXParseSmiles(omeprazole, "COc1ccc2[nH]c(S(=O)Cc3ncc(C)c(OC)c3C)nc2c1") ||
      !QXChem::QXParseSmiles(lansoprazole, "Cc1c(OCC(F)(F)F)ccnc1CS(=O)c1nc2ccccc2[nH]1") ||
      !QXMakeFP(a, omeprazole, type) || !QXMakeFP(b, lansoprazole, type))
    return false;

  std::cout << type->GetFPTypeString() << '\n'
            << "  Tanimoto  " << QXTanimoto(a, b) << '\n'
            << "  Cosine    " << QXCosine(a, b) << '\n'
            << "  Dice      " << QXDice(a, b) << '\n'
            << "  Euclid    " << QXEuclid(a, b) << '\n'
            << "  Tversky   " << QXTversky(a, b, 0.95F, 0.05F) << '\n'
            << "  Manhattan " << QXManhattan(a, b) << " (a distance)\n";
  return true;
}

void PrintHits(const char* heading, const QXSystem::QXIter<QXSimScore>& hits,
               const std::vector<std::string>& titles) {
  std::cout << heading << '\n';
  for (const QXSimScore& hit : hits)
    std::cout << "  " << hit.GetScore() << '\t' << titles[hit.GetIdx()] << '\n';
}

bool SearchInMemory(const std::string& moleculeFile) {
  QXChem::QXMolDatabase molecules;
  if (!molecules.Open(moleculeFile)) return false;

  QXFPDatabase database(QXFPType::Path);
  std::vector<std::string> titles;  // of the entries, by index
  QXChem::QXGraphMol mol;
  for (unsigned i = 0; i < molecules.GetMaxMolIdx(); ++i)
    if (molecules.GetMolecule(mol, i) && database.AddFP(mol) != QXSimScore::NoIndex)
      titles.push_back(molecules.GetTitle(i));

  QXChem::QXGraphMol diclofenac;
  if (!QXChem::QXParseSmiles(diclofenac, "OC(=O)Cc1ccccc1Nc1c(Cl)cccc1Cl")) return false;
  PrintHits("Most alike by Tanimoto", database.GetSortedScores(diclofenac, 3), titles);

  database.SetSimFunc(QXSimMeasure::Manhattan, false);  // a distance: the smallest first
  PrintHits("Nearest by Manhattan", database.GetSortedScores(diclofenac, 3), titles);

  database.SetSimFunc(OverlapSim(), true);
  database.SetCutoff(0.6F);
  PrintHits("Overlap above 0.6", database.GetSortedScores(diclofenac, 3), titles);
  return true;
}

int main(int argc, char** argv) {
  if (!PrintEveryMeasure("Path,ver=2.0.0,size=2048,bonds=0-5,atype=DefaultPathAtom,btype=DefaultPathBond") ||
      !PrintEveryMeasure("Lingo,ver=2.0.0"))
    return 1;
  return SearchInMemory(argc > 1 ? argv[1] : "data/molecules.smi") ? 0 : 1;
}
