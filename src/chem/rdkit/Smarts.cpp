// Reads SMARTS with RDKit and takes its query trees apart: every leaf names what it asks (getDescription) and
// holds the value asked for.

#include <RDGeneral/RDConfig.h>

#include <GraphMol/QueryAtom.h>
#include <GraphMol/QueryBond.h>
#include <GraphMol/QueryOps.h>
#include <GraphMol/ROMol.h>
#include <GraphMol/RWMol.h>
#include <GraphMol/SmilesParse/SmilesParse.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>

#include "chem/rdkit/Hybridization.h"
#include "chem/rdkit/Queries.h"

namespace QXChem {
namespace {

using RDAtomQuery = RDKit::Atom::QUERYATOM_QUERY;
using RDBondQuery = RDKit::Bond::QUERYBOND_QUERY;

[[noreturn]] void Refuse(const std::string& what) {
  throw std::invalid_argument(what + " is not supported");
}

struct Leaf {
  const char* name;
  AtomProperty property;
  enum class Form { Number, YesNo, No } form = Form::Number;  // No: the answer to the opposite question
};

constexpr Leaf leaves[] = {
    {"AtomType", AtomProperty::Type},
    {"AtomAtomicNum", AtomProperty::Element},
    {"AtomIsAromatic", AtomProperty::Aromatic, Leaf::Form::YesNo},
    {"AtomIsAliphatic", AtomProperty::Aromatic, Leaf::Form::No},
    {"AtomFormalCharge", AtomProperty::Charge},
    {"AtomIsotope", AtomProperty::Isotope},
    {"AtomHCount", AtomProperty::Hydrogens},
    {"AtomImplicitHCount", AtomProperty::ImplicitHydrogens},
    {"AtomHasImplicitH", AtomProperty::ImplicitHydrogens, Leaf::Form::YesNo},
    {"AtomExplicitDegree", AtomProperty::Degree},
    {"AtomTotalDegree", AtomProperty::TotalDegree},
    {"AtomTotalValence", AtomProperty::Valence},
    {"AtomHybridization", AtomProperty::Hybridization},
    {"AtomRingBondCount", AtomProperty::RingBonds},
    {"AtomHasRingBond", AtomProperty::RingBonds, Leaf::Form::YesNo},
    {"AtomInRing", AtomProperty::RingBonds, Leaf::Form::YesNo},
    {"AtomInNRings", AtomProperty::RingCount},
    {"AtomMinRingSize", AtomProperty::SmallestRing},
    {"AtomNumHeteroatomNeighbors", AtomProperty::HeteroNeighbors},
    {"AtomHasHeteroatomNeighbors", AtomProperty::HeteroNeighbors, Leaf::Form::YesNo},
    {"AtomNumAliphaticHeteroatomNeighbors", AtomProperty::AliphaticHeteroNeighbors},
    {"AtomHasAliphaticHeteroatomNeighbors", AtomProperty::AliphaticHeteroNeighbors, Leaf::Form::YesNo},
};

struct Limits {
  int low = AtomExpression::lowest;
  int high = AtomExpression::highest;
};

// What a comparison accepts. RDKit's names say on which side the value asked for stands: "less or equal" is
// true when that value is less than or equal to the atom's.
std::optional<Limits> GetLimits(const RDAtomQuery& query) {
  if (const auto* range = dynamic_cast<const RDKit::ATOM_RANGE_QUERY*>(&query)) {
    const auto [lowerOpen, upperOpen] = range->getEndsOpen();
    return Limits{range->getLower() + lowerOpen, range->getUpper() - upperOpen};
  }
  const auto* comparison = dynamic_cast<const RDKit::ATOM_EQUALS_QUERY*>(&query);
  if (!comparison || comparison->getTol() != 0) return std::nullopt;
  const int value = comparison->getVal();
  if (dynamic_cast<const RDKit::ATOM_LESSEQUAL_QUERY*>(&query)) return Limits{.low = value};
  if (dynamic_cast<const RDKit::ATOM_GREATEREQUAL_QUERY*>(&query)) return Limits{.high = value};
  if (dynamic_cast<const RDKit::ATOM_LESS_QUERY*>(&query)) return Limits{.low = value + 1};
  if (dynamic_cast<const RDKit::ATOM_GREATER_QUERY*>(&query)) return Limits{.high = value - 1};
  return Limits{value, value};
}

// What SMARTS asks for: "^0" is S.
int ReadHybridization(int type) {
  if (type == RDKit::Atom::S) return hybridizationS;
  const unsigned code = ToHybridizationCode(type);
  if (code == 0) Refuse("hybridisation " + std::to_string(type));
  return static_cast<int>(code);
}

// Whether an atom is in a ring at all is known without counting rings; -1 asks just that.
void AskRingBondsInstead(AtomExpression& range) {
  if (range.low == -1 && range.high == -1) {
    range.low = 1;
    range.high = AtomExpression::highest;
  }
  const bool isYes = range.low == 1 && range.high == AtomExpression::highest;
  const bool isNo = range.low <= 0 && range.high == 0;
  if (isYes || isNo) range.property = AtomProperty::RingBonds;
}

AtomExpression ReadRange(const RDAtomQuery& query) {
  std::string name = query.getDescription();
  for (const std::string prefix : {"less_", "greater_", "range_"}) {
    if (name.starts_with(prefix)) name.erase(0, prefix.size());
  }
  const std::optional<Limits> limits = GetLimits(query);
  AtomExpression range;
  range.kind = AtomExpression::Kind::Range;
  const bool isNegativeCharge = name == "AtomNegativeFormalCharge";
  if (isNegativeCharge) name = "AtomFormalCharge";
  const Leaf* leaf = std::ranges::find(leaves, name, &Leaf::name);
  if (leaf == std::end(leaves) || !limits) Refuse(query.getDescription());
  range.property = leaf->property;
  range.low = limits->low;
  range.high = limits->high;
  if (isNegativeCharge) {
    range.low = limits->high == AtomExpression::highest ? AtomExpression::lowest : -limits->high;
    range.high = limits->low == AtomExpression::lowest ? AtomExpression::highest : -limits->low;
  }
  if (leaf->form != Leaf::Form::Number) {
    const bool wanted = (limits->low != 0) != (leaf->form == Leaf::Form::No);
    range.low = wanted ? 1 : 0;
    range.high = wanted ? AtomExpression::highest : 0;
  }
  if (range.property == AtomProperty::RingCount) AskRingBondsInstead(range);
  if (range.property == AtomProperty::Hybridization) {
    range.low = range.high = ReadHybridization(range.low);
  }
  constexpr int maxCharge = 99;
  if (range.property == AtomProperty::Charge && range.low == range.high && std::abs(range.low) > maxCharge) {
    throw std::invalid_argument("charge above " + std::to_string(maxCharge));
  }
  return range;
}

class QueryReader {
 public:
  explicit QueryReader(Query& query) : query_(query) {}

  void Read(const RDKit::ROMol& source) {
    for (const RDKit::Atom* atom : source.atoms()) {
      if (!atom->hasQuery()) Refuse("an atom without a query");
      query_.atoms.push_back(ReadAtom(*atom->getQuery()));
    }
    for (const RDKit::Bond* bond : source.bonds()) {
      if (!bond->hasQuery()) Refuse("a bond without a query");
      query_.bonds.push_back({bond->getBeginAtomIdx(), bond->getEndAtomIdx(), ReadBond(*bond->getQuery()),
                              bond->getBondType() == RDKit::Bond::DATIVE});
    }
  }

 private:
  AtomExpression ReadAtom(const RDAtomQuery& source) {
    AtomExpression expression;
    const std::string& name = source.getDescription();
    if (name == "RecursiveStructure") {
      expression.kind = AtomExpression::Kind::Recursive;
      expression.recursive = ReadRecursive(source);
    } else if (name == "AtomAnd" || name == "AtomOr") {
      expression.kind = name == "AtomAnd" ? AtomExpression::Kind::And : AtomExpression::Kind::Or;
      for (auto child = source.beginChildren(); child != source.endChildren(); ++child) {
        expression.children.push_back(ReadAtom(**child));
      }
    } else if (name != "AtomNull") {
      expression = ReadRange(source);
    }
    expression.negated = source.getNegation();
    return expression;
  }

  unsigned ReadRecursive(const RDAtomQuery& source) {
    const auto* recursive = dynamic_cast<const RDKit::RecursiveStructureQuery*>(&source);
    if (!recursive || !recursive->getQueryMol() || recursive->getQueryMol()->getNumAtoms() == 0) {
      Refuse("an empty recursive pattern");
    }
    Query query;
    QueryReader(query).Read(*recursive->getQueryMol());
    query_.recursive.push_back(std::move(query));
    return static_cast<unsigned>(query_.recursive.size()) - 1;
  }

  static std::uint16_t ReadBondLeaf(const RDBondQuery& source) {
    const std::string& name = source.getDescription();
    if (name == "BondNull") return allBonds;
    const auto* comparison = dynamic_cast<const RDKit::BOND_EQUALS_QUERY*>(&source);
    if (!comparison) Refuse(name);
    const int value = comparison->getVal();
    if (name == "BondInRing") return value ? ringBonds : chainBonds;
    if (name == "SingleOrAromaticBond") return InAndOutOfRings(singleBond | aromaticBond);
    if (name != "BondOrder") Refuse(name);
    switch (value) {
      case RDKit::Bond::SINGLE:
        return InAndOutOfRings(singleBond);
      case RDKit::Bond::DOUBLE:
        return InAndOutOfRings(doubleBond);
      case RDKit::Bond::TRIPLE:
        return InAndOutOfRings(tripleBond);
      case RDKit::Bond::QUADRUPLE:
        return InAndOutOfRings(quadrupleBond);
      case RDKit::Bond::AROMATIC:
        return InAndOutOfRings(aromaticBond);
      case RDKit::Bond::DATIVE:
        return InAndOutOfRings(dativeBond);
      default:
        Refuse("bond type " + std::to_string(value));
    }
  }

  static std::uint16_t ReadBond(const RDBondQuery& source) {
    const std::string& name = source.getDescription();
    unsigned classes = 0;
    if (name == "BondAnd" || name == "BondOr") {
      const bool isAnd = name == "BondAnd";
      classes = isAnd ? allBonds : 0;
      for (auto child = source.beginChildren(); child != source.endChildren(); ++child) {
        classes = isAnd ? classes & ReadBond(**child) : classes | ReadBond(**child);
      }
    } else {
      classes = ReadBondLeaf(source);
    }
    return static_cast<std::uint16_t>(source.getNegation() ? allBonds & ~classes : classes);
  }

  Query& query_;
};

}  // namespace

bool ReadSmartsWithRDKit(Query& query, const std::string& smarts, std::string& reason) {
  reason.clear();
  try {
    RDKit::SmartsParserParams params;
    params.allowCXSMILES = false;
    params.parseName = false;
    params.mergeHs = false;
    const std::unique_ptr<RDKit::RWMol> source(RDKit::SmartsToMol(smarts, params));
    if (source && source->getNumAtoms() > 0) {
      QueryReader(query).Read(*source);
      return true;
    }
    reason = "not a SMARTS";
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    reason = error.what();
  } catch (...) {
    reason = "unknown failure of the reader";
  }
  return false;
}

}  // namespace QXChem
