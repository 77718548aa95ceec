// From the expression of a bracket to masks over the atom word. A condition on a property with a field is the
// set of its accepted bins, a conjunction is the union of what its parts forbid, and a disjunction forbids
// what all of its parts forbid. The mask is the whole condition unless a bin is accepted in part (the charge
// +3 shares its bin with +2), a property has no field, or a disjunction ties different properties together.

#include "chem/subsearch/AtomTest.h"

#include <algorithm>
#include <initializer_list>

#include "chem/subsearch/AtomWord.h"

namespace QXChem {
namespace {

constexpr std::uint64_t everything = ~std::uint64_t{0};

bool InRange(const AtomExpression& range, std::int64_t value) {
  return value >= range.low && value <= range.high;
}

// Collects, bin by bin, whether values are accepted or refused.
class Bins {
 public:
  Bins(const AtomExpression& range, bool negated) : range_(range), negated_(negated) {}

  void Add(std::uint64_t bin, std::int64_t value) {
    (InRange(range_, value) != negated_ ? accepted_ : refused_) |= bin;
  }
  std::uint64_t GetForbidden() const { return refused_ & ~accepted_; }
  bool IsExact() const { return (refused_ & accepted_) == 0; }

 private:
  const AtomExpression& range_;
  const bool negated_;
  std::uint64_t accepted_ = 0;
  std::uint64_t refused_ = 0;
};

void AddElements(const AtomExpression& range, Bins& bins) {
  constexpr unsigned numElements = 133;
  for (const bool aromatic : {false, true}) {
    for (unsigned element = 0; element < numElements; ++element) {
      const int type = static_cast<int>(element) + (aromatic ? aromaticOffset : 0);
      const int value = range.property == AtomProperty::Type      ? type
                        : range.property == AtomProperty::Element ? static_cast<int>(element)
                                                                  : aromatic;
      bins.Add(std::uint64_t{1} << GetElementBin(element, aromatic), value);
    }
  }
}

// Every bin by a value of its own, and the ends of the range with their neighbours.
void AddValues(const AtomExpression& range, const WordField& field, Bins& bins) {
  const std::int64_t lowest = field.openBelow ? -1000 : field.lowest;
  const auto add = [&](std::int64_t value) {
    if (value < lowest || value > AtomExpression::highest) return;
    bins.Add(field.GetBit(static_cast<int>(value)), value);
  };
  add(lowest);
  for (unsigned bin = 0; bin < field.numBins; ++bin) add(std::int64_t{field.lowest} + bin);
  for (const std::int64_t end : {range.low, range.high}) {
    for (const std::int64_t value : {end - 1, end, end + 1}) add(value);
  }
  add(AtomExpression::highest);
}

// What lies in a ring has ring bonds, whatever else is asked about its rings.
std::uint64_t GetForbiddenByRings(const AtomExpression& range, bool negated) {
  const bool refusesChains = !InRange(range, 0) != negated;
  return refusesChains ? ringBondField.GetBit(0) : 0;
}

AtomTest CompileRange(const AtomExpression& range, bool negated) {
  AtomTest test;
  test.kind = AtomTest::Kind::Range;
  test.negated = negated;
  test.property = range.property;
  test.low = range.low;
  test.high = range.high;
  Bins bins(range, negated);
  switch (range.property) {
    case AtomProperty::Type:
    case AtomProperty::Element:
    case AtomProperty::Aromatic:
      AddElements(range, bins);
      break;
    case AtomProperty::RingCount:
    case AtomProperty::SmallestRing:
      test.forbidden = GetForbiddenByRings(range, negated);
      return test;
    default: {
      const auto* field = std::ranges::find(wordFields, range.property, &WordField::property);
      if (field == wordFields.end()) return test;
      AddValues(range, *field, bins);
    }
  }
  test.forbidden = bins.GetForbidden();
  if (bins.IsExact()) test.kind = AtomTest::Kind::Mask;
  return test;
}

AtomTest Never() {
  AtomTest test;
  test.forbidden = everything;
  return test;
}

// A conjunction of masks is a mask; what else there is stays as children.
AtomTest Join(std::vector<AtomTest>& parts, std::vector<AtomTest>& tests) {
  AtomTest all;
  for (const AtomTest& part : parts) all.forbidden |= part.forbidden;
  if (IsImpossible(all.forbidden)) return Never();
  std::erase_if(parts, [](const AtomTest& part) { return part.kind == AtomTest::Kind::Mask; });
  if (parts.empty()) return all;
  if (parts.size() == 1) {
    parts[0].forbidden = all.forbidden;
    return parts[0];
  }
  all.kind = AtomTest::Kind::And;
  all.firstChild = static_cast<unsigned>(tests.size());
  all.numChildren = static_cast<unsigned>(parts.size());
  tests.insert(tests.end(), parts.begin(), parts.end());
  return all;
}

// Whether masks accept together exactly what the mask common to all of them accepts: when they differ from
// it in the same field only, or one of them is that mask.
bool IsUnionOfMasks(const std::vector<AtomTest>& parts, std::uint64_t common) {
  std::uint64_t differing = 0;
  for (const AtomTest& part : parts) {
    if (part.kind == AtomTest::Kind::Mask && part.forbidden == common) return true;
    differing |= part.forbidden & ~common;
  }
  for (const AtomTest& part : parts) {
    if (part.kind != AtomTest::Kind::Mask) return false;
  }
  return std::ranges::any_of(wordFields,
                             [&](const WordField& field) { return (differing & ~field.GetMask()) == 0; });
}

AtomTest Unite(std::vector<AtomTest>& parts, std::vector<AtomTest>& tests) {
  std::erase_if(parts, [](const AtomTest& part) { return IsImpossible(part.forbidden); });
  if (parts.empty()) return Never();
  if (parts.size() == 1) return parts[0];
  AtomTest any;
  any.forbidden = everything;
  for (const AtomTest& part : parts) any.forbidden &= part.forbidden;
  if (IsUnionOfMasks(parts, any.forbidden)) return any;
  any.kind = AtomTest::Kind::Or;
  any.firstChild = static_cast<unsigned>(tests.size());
  any.numChildren = static_cast<unsigned>(parts.size());
  tests.insert(tests.end(), parts.begin(), parts.end());
  return any;
}

class Compiler {
 public:
  Compiler(const std::vector<std::uint64_t>& forbiddenAtRoots, std::vector<AtomTest>& tests)
      : forbiddenAtRoots_(forbiddenAtRoots), tests_(tests) {}

  AtomTest Compile(const AtomExpression& expression, bool negate) {
    const bool negated = expression.negated != negate;
    switch (expression.kind) {
      case AtomExpression::Kind::Any:
        return negated ? Never() : AtomTest();
      case AtomExpression::Kind::Range:
        return CompileRange(expression, negated);
      case AtomExpression::Kind::Recursive: {
        AtomTest test;
        test.kind = AtomTest::Kind::Recursive;
        test.negated = negated;
        test.recursive = expression.recursive;
        test.forbidden = negated ? 0 : forbiddenAtRoots_[expression.recursive];
        return test;
      }
      case AtomExpression::Kind::And:
      case AtomExpression::Kind::Or:
        break;
    }
    std::vector<AtomTest> parts;
    for (const AtomExpression& child : expression.children) parts.push_back(Compile(child, negated));
    const bool isAnd = (expression.kind == AtomExpression::Kind::And) != negated;
    return isAnd ? Join(parts, tests_) : Unite(parts, tests_);
  }

 private:
  const std::vector<std::uint64_t>& forbiddenAtRoots_;
  std::vector<AtomTest>& tests_;
};

}  // namespace

AtomTest CompileAtomTest(const AtomExpression& expression, const std::vector<std::uint64_t>& forbiddenAtRoots,
                         std::vector<AtomTest>& tests) {
  return Compiler(forbiddenAtRoots, tests).Compile(expression, false);
}

}  // namespace QXChem
