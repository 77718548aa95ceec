#include <algorithm>

#include "QXFingrix/QXPathFP.h"
#include "QXSystem/QXErrorHandler.h"
#include "generators/PathGenerator.h"

namespace QXFingrix {
namespace {

template <class Id>
bool AreLabelsComplete(const char* caller, const QXChem::QXMolBase& mol, const std::vector<Id>& atomLabels,
                       const std::vector<Id>& bondLabels) {
  if (atomLabels.size() >= mol.GetMaxAtomIdx() && bondLabels.size() >= mol.GetMaxBondIdx()) return true;
  QXSystem::QXThrow.Warning("%s : %zu atom and %zu bond labels for a molecule of %u atoms and %u bonds!",
                            caller, atomLabels.size(), bondLabels.size(), mol.GetMaxAtomIdx(),
                            mol.GetMaxBondIdx());
  return false;
}

// Longer paths have no position weights; they would need more than the table holds.
unsigned LimitToWeights(const char* caller, const QXChem::QXMolBase& mol, unsigned maxbonds) {
  if (maxbonds <= maxWeightedBonds || mol.NumAtoms() <= maxWeightedBonds + 1) return maxbonds;
  QXSystem::QXThrow.Warning("%s : invalid max bonds %u for path identifiers (%u is used)!", caller, maxbonds,
                            maxWeightedBonds);
  return maxWeightedBonds;
}

template <class Id>
unsigned CollectIds(std::set<Id>& ids, const QXChem::QXMolBase& mol, std::vector<Id>& atomLabels,
                    std::vector<Id>& bondLabels, unsigned minbonds, unsigned maxbonds) {
  PathGenerator<Id>(mol, atomLabels, bondLabels, minbonds, maxbonds, Id{}).GeneratePathIds(ids);
  return static_cast<unsigned>(ids.size());
}

template <class Id>
unsigned AppendIds(std::vector<Id>& ids, const QXChem::QXMolBase& mol, std::vector<Id>& atomLabels,
                   std::vector<Id>& bondLabels, unsigned minbonds, unsigned maxbonds) {
  PathGenerator<Id>(mol, atomLabels, bondLabels, minbonds, maxbonds, Id{}).GeneratePathIdsStack(ids);
  return static_cast<unsigned>(ids.size());
}

}  // namespace

unsigned QXPathIdGenerator(std::set<unsigned>& ids, const QXChem::QXMolBase& mol,
                           std::vector<unsigned>& atomLabels, std::vector<unsigned>& bondLabels,
                           unsigned minbonds, unsigned maxbonds) {
  const char* const caller = "QXPathIdGenerator()";
  if (!AreLabelsComplete(caller, mol, atomLabels, bondLabels)) return 0;
  return CollectIds(ids, mol, atomLabels, bondLabels, minbonds, LimitToWeights(caller, mol, maxbonds));
}

unsigned QXPathIdGenerator(std::set<std::string>& ids, const QXChem::QXMolBase& mol,
                           std::vector<std::string>& atomLabels, std::vector<std::string>& bondLabels,
                           unsigned minbonds, unsigned maxbonds) {
  if (!AreLabelsComplete("QXPathIdGenerator()", mol, atomLabels, bondLabels)) return 0;
  return CollectIds(ids, mol, atomLabels, bondLabels, minbonds, maxbonds);
}

unsigned QXPathIdGeneratorStack(std::vector<unsigned>& ids, const QXChem::QXMolBase& mol,
                                std::vector<unsigned>& atomLabels, std::vector<unsigned>& bondLabels,
                                unsigned minbonds, unsigned maxbonds) {
  const char* const caller = "QXPathIdGeneratorStack()";
  if (!AreLabelsComplete(caller, mol, atomLabels, bondLabels)) return 0;
  return AppendIds(ids, mol, atomLabels, bondLabels, minbonds, LimitToWeights(caller, mol, maxbonds));
}

unsigned QXPathIdGeneratorStack(std::vector<std::string>& ids, const QXChem::QXMolBase& mol,
                                std::vector<std::string>& atomLabels, std::vector<std::string>& bondLabels,
                                unsigned minbonds, unsigned maxbonds) {
  if (!AreLabelsComplete("QXPathIdGeneratorStack()", mol, atomLabels, bondLabels)) return 0;
  return AppendIds(ids, mol, atomLabels, bondLabels, minbonds, maxbonds);
}

}  // namespace QXFingrix
