#include <iostream>
#include <string>

#include "QXChem/QXGraphMol.h"
#include "QXChem/QXMolDatabase.h"
#include "QXChem/QXReadMolecule.h"
#include "QXFingrix/QXCreateFastFPDatabase.h"
#include "QXFingrix/QXFPTypeLookup.h"
#include "QXFingrix/QXFastFPDatabase.h"

using namespace QXFingrix;

int main(int argc, char** argv) {
  const std::string moleculeFile = argc > 1 ? argv[1] : "data/molecules.smi";
  const QXFPTypeBase* type =
      QXGetFPType("Path,ver=2.0.0,size=2048,bonds=0-5,atype=DefaultPathAtom,btype=DefaultPathBond");
  if (!QXCreateFastFPDatabaseFile("first_search.fpbin", moleculeFile, type)) return 1;

  const QXFastFPDatabase fingerprints("first_search.fpbin");
  QXChem::QXMolDatabase molecules;
  QXChem::QXGraphMol query;
  if (!fingerprints.IsValid() || !molecules.Open(moleculeFile)) return 1;
  if (!QXChem::QXParseSmiles(query, "OC(=O)Cc1ccccc1Nc1c(Cl)cccc1Cl")) return 1;

  const QXFPDatabaseOptions options(5, QXSimMeasure::Tanimoto);
  for (const QXSimScore& hit : fingerprints.GetSortedScores(query, options))
    std::cout << hit.GetScore() << '\t' << molecules.GetTitle(hit.GetIdx()) << '\t'
              << molecules.GetText(hit.GetIdx()) << '\n';
  return 0;
}
