// A pattern is all substructures of one identifier or token. Sorted by pattern, those of one are a range, and
// two molecules share the ranges that a merge of both finds.

#include "generators/GraphPatterns.h"

#include <cstddef>
#include <utility>

#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/FingerPrintText.h"
#include "generators/SourceIter.h"

namespace QXFingrix {
namespace {

using QXChem::QXAtomBondSet;
using QXSystem::QXIter;

// Places in Substructures::Sorted().
struct Range {
  std::size_t begin = 0;
  std::size_t end = 0;
};

// The substructures from a place on that have the same pattern; none at the end.
Range RangeFrom(const Substructures& found, std::size_t begin) {
  const auto& sorted = found.Sorted();
  Range range{begin, begin};
  while (range.end < sorted.size() && found.HaveSamePattern(sorted[range.end], sorted[begin])) ++range.end;
  return range;
}

class MatchSource {
 public:
  using Value = QXAtomBondSet;

  MatchSource(SubstructuresPtr found, Range range) : found_(std::move(found)), range_(range) {}

  bool Next(QXAtomBondSet& set) {
    if (range_.begin == range_.end) return false;
    set = found_->GetSet(found_->Sorted()[range_.begin++]);
    return true;
  }

 private:
  SubstructuresPtr found_;
  Range range_;
};

class PatternSource {
 public:
  using Value = QXFPPattern;

  explicit PatternSource(SubstructuresPtr found) : found_(std::move(found)) {}

  bool Next(QXFPPattern& pattern) {
    const Range range = RangeFrom(*found_, next_);
    if (range.begin == range.end) return false;
    next_ = range.end;
    const unsigned first = found_->Sorted()[range.begin];
    pattern.bit = found_->GetBit(first);
    pattern.id = found_->GetId(first);
    pattern.token = found_->GetToken(first);
    pattern.text = found_->GetSmarts(first);
    pattern.matches = MakeSourceIter(MatchSource(found_, range));
    return true;
  }

 private:
  SubstructuresPtr found_;
  std::size_t next_ = 0;
};

class CoverageSource {
 public:
  using Value = QXAtomBondSet;

  CoverageSource(SubstructuresPtr found, bool unique) : found_(std::move(found)), unique_(unique) {}

  bool Next(QXAtomBondSet& set) {
    while (unique_ && next_ < found_->NumFound() && found_->IsRepeated(next_)) ++next_;
    if (next_ == found_->NumFound()) return false;
    set = found_->GetSet(next_++);
    return true;
  }

 private:
  SubstructuresPtr found_;
  bool unique_;
  unsigned next_ = 0;
};

class OverlapSource {
 public:
  using Value = QXFPMatch;

  OverlapSource(SubstructuresPtr a, SubstructuresPtr b) : a_(std::move(a)), b_(std::move(b)) {}

  bool Next(QXFPMatch& match) {
    if (nextB_ == rangeB_.end) {
      nextB_ = rangeB_.begin;
      if (nextA_ == rangeA_.end || ++nextA_ == rangeA_.end) {
        if (!NextShared()) return false;
      }
    }
    match.a = a_->GetSet(a_->Sorted()[nextA_]);
    match.b = b_->GetSet(b_->Sorted()[nextB_++]);
    return true;
  }

 private:
  bool NextShared() {
    rangeA_ = RangeFrom(*a_, rangeA_.end);
    rangeB_ = RangeFrom(*b_, rangeB_.end);
    while (rangeA_.begin != rangeA_.end && rangeB_.begin != rangeB_.end) {
      const auto order =
          Substructures::ComparePatterns(*a_, a_->Sorted()[rangeA_.begin], *b_, b_->Sorted()[rangeB_.begin]);
      if (order == 0) {
        nextA_ = rangeA_.begin;
        nextB_ = rangeB_.begin;
        return true;
      }
      if (order < 0) {
        rangeA_ = RangeFrom(*a_, rangeA_.end);
      } else {
        rangeB_ = RangeFrom(*b_, rangeB_.end);
      }
    }
    return false;
  }

  SubstructuresPtr a_;
  SubstructuresPtr b_;
  Range rangeA_;
  Range rangeB_;
  std::size_t nextA_ = 0;
  std::size_t nextB_ = 0;
};

}  // namespace

SubstructuresPtr FindSubstructures(const char* function, const GraphKind& kind, unsigned maxDistance,
                                   std::shared_ptr<Substructures> found) {
  switch (found->FindAll()) {
    case Substructures::Outcome::Found:
      return found;
    case Substructures::Outcome::TokensTooLong:
      ReportFPTextTooLong();
      return nullptr;
    case Substructures::Outcome::TooMany:
      QXSystem::QXThrow.Error("%s() : more than %u patterns with max %s %u for %s fingerprint!", function,
                              Substructures::maxFound, kind.distance, maxDistance, kind.word);
  }
  return nullptr;
}

QXIter<QXFPPattern> PatternsOf(const SubstructuresPtr& found) {
  return MakeSourceIter(PatternSource(found));
}

QXIter<QXAtomBondSet> CoverageOf(const SubstructuresPtr& found, bool unique) {
  return MakeSourceIter(CoverageSource(found, unique));
}

QXIter<QXFPMatch> OverlapOf(const SubstructuresPtr& a, const SubstructuresPtr& b) {
  return MakeSourceIter(OverlapSource(a, b));
}

}  // namespace QXFingrix
