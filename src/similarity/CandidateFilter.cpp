#include "similarity/CandidateFilter.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "QXFingrix/QXSimMeasure.h"

namespace QXFingrix {

namespace {

// Beyond this, counts and their bounds would not be exact enough in single precision.
constexpr std::uint64_t maxBits = 65536;

// Scores and bounds are rounded by parts in ten million. Counts differ by 1.
constexpr double relativeMargin = 1e-6;
constexpr double absoluteMargin = 0.5;

// Larger bars than any sensible score, such as the first of an ascending search, are left to exact scoring:
// their bounds overflow.
constexpr double maxBar = 1e9;

bool IsFraction(double coefficient) {
  return coefficient >= 0.0 && coefficient <= 1.0;
}

}  // namespace

CandidateFilter::CandidateFilter(const Search& search, std::uint64_t numBits, std::uint64_t queryBits)
    : search_(search),
      numBits_(static_cast<double>(numBits)),
      queryBits_(static_cast<double>(queryBits)),
      bar_(std::numeric_limits<double>::quiet_NaN()),
      sign_(search.descending == (search.measure != QXSimMeasure::Manhattan) ? 1.0F : -1.0F),
      isSquared_(search.measure == QXSimMeasure::Cosine) {
  PassEverything();
}

// A score above 0 has a positive denominator, so that multiplying by it keeps the order. Bars below 0 are left
// to exact scoring, except for Manhattan, whose denominator is a constant.
void CandidateFilter::Solve(double bar) {
  bar_ = bar;
  PassEverything();
  const bool isDistance = search_.measure == QXSimMeasure::Manhattan;
  if (!(std::abs(bar) <= maxBar) || (bar < 0.0 && !isDistance) || numBits_ > maxBits) return;
  switch (search_.measure) {
    case QXSimMeasure::Tanimoto: {
      const double slope = bar / (1.0 + bar);
      return SetBound(slope * queryBits_, slope);
    }
    case QXSimMeasure::Dice:
      return SetBound(0.5 * bar * queryBits_, 0.5 * bar);
    case QXSimMeasure::Euclid:
      return SetBound(0.5 * ((bar * bar - 1.0) * numBits_ + queryBits_), 0.5);
    case QXSimMeasure::Manhattan:
      return SetBound(0.5 * (queryBits_ - bar * numBits_), 0.5);
    case QXSimMeasure::Cosine:
      // Fewest shared bits are not looked for: a record without bits scores 0 whatever a file says it shares.
      if (!WantsMany()) return;
      offset_ = 0.0F;
      slope_ = static_cast<float>(bar * bar * queryBits_ * (1.0 - 16 * relativeMargin));
      return;
    case QXSimMeasure::Tversky: {
      // Nor here, where the denominator may be 0 or, with coefficients of the user's own,
      // anything.
      const double gain = 1.0 - bar * (1.0 - search_.alpha - search_.beta);
      const bool isSolvable = IsFraction(search_.alpha) && IsFraction(search_.beta) && gain > relativeMargin;
      if (!WantsMany() || !isSolvable) return;
      return SetBound(bar * search_.alpha * queryBits_ / gain, bar * search_.beta / gain, 1.0 / gain);
    }
  }
}

void CandidateFilter::PassEverything() {
  offset_ = -std::numeric_limits<float>::infinity();
  slope_ = 0.0F;
}

// condition: by how much more the bound on c changes than a score's denominator does.
void CandidateFilter::SetBound(double offset, double slope, double condition) {
  const double margin =
      absoluteMargin + relativeMargin * (std::abs(offset) + slope * numBits_ + condition * numBits_);
  offset_ = static_cast<float>(sign_ * offset - margin);
  slope_ = static_cast<float>(sign_ * slope);
}

std::uint32_t CandidateFilter::LeastShared(float minRecordBits) const {
  if (!WantsMany()) return 0;
  const float bound = std::clamp(offset_ + slope_ * minRecordBits, 0.0F, 2e9F);
  return static_cast<std::uint32_t>(isSquared_ ? std::sqrt(bound) : bound);
}

bool CandidateFilter::CanPass(std::uint32_t recordBits) const {
  const auto a = static_cast<double>(recordBits);
  const double shared = WantsMany() ? std::min(a, queryBits_) : std::max(0.0, a + queryBits_ - numBits_);
  return Passes(static_cast<float>(a), static_cast<std::uint32_t>(shared));
}

}  // namespace QXFingrix
