#pragma once

#include <cstdint>
#include <vector>

#include "QXSystem/QXExport.h"
#include "QXSystem/QXIter.h"

namespace QXFingrix {

/// Counts of scores in bins of equal width over a fixed range. What lies outside the range is counted in the
/// first or the last bin; so is, in the first, what is not a number.
/// Threads  a plain value without locks.
class QX_API QXFPHistogram {
 public:
  /// A histogram without bins is legal; it counts nothing.
  QXFPHistogram(unsigned numBins, double min, double max);

  unsigned GetNumBins() const { return static_cast<unsigned>(counts_.size()); }
  double GetMin() const { return min_; }
  double GetMax() const { return max_; }

  /// The bin of a value. The float form divides in single precision, so close to an edge the two may differ.
  unsigned GetBinIdx(double x) const { return FindBin(x); }
  unsigned GetBinIdx(float x) const { return FindBin(x); }

  /// Counts a value; returns its bin.
  unsigned AddSample(double x) { return Count(FindBin(x)); }
  unsigned AddSample(float x) { return Count(FindBin(x)); }
  /// Takes a value back without a check: the count of a value that was never added wraps around.
  unsigned RemoveSample(float x);

  /// The count of a bin, 0 when there is no such bin.
  std::uint64_t GetCount(unsigned bin) const { return bin < counts_.size() ? counts_[bin] : 0; }
  /// Per bin, in order. A count is given modulo 2^32; the density of no samples is not a number.
  QXSystem::QXIter<unsigned> GetCounts() const;
  QXSystem::QXIter<double> GetDensity() const;
  QXSystem::QXIter<double> GetBinCenters() const;
  QXSystem::QXIter<double> GetBinBoundaries() const;  ///< the lower ones

  std::uint64_t NumSamples() const;
  double Mean() const;
  double Std() const;

  /// Adds the other's counts bin by bin.
  /// Errors   warns and changes nothing when range or number of bins differ.
  QXFPHistogram& operator+=(const QXFPHistogram& other);

 protected:
  std::vector<std::uint64_t> counts_;

 private:
  // Minimum and maximum are compared in double precision; the division is done in the precision of the value.
  template <class Real>
  unsigned FindBin(Real x) const {
    if (counts_.empty()) return 0;
    const unsigned last = GetNumBins() - 1;
    if (x <= min_) return 0;
    if (x >= max_) return last;
    const Real bin = (x - static_cast<Real>(min_)) / static_cast<Real>(width_);
    if (!(bin >= Real{0})) return 0;  // not a number
    return bin > static_cast<Real>(last) ? last : static_cast<unsigned>(bin);
  }
  unsigned Count(unsigned bin) {
    if (bin < counts_.size()) ++counts_[bin];
    return bin;
  }
  double Center(std::size_t bin) const;

  double min_;
  double max_;
  double width_;
};

/// A histogram of scores that also sums, per bin, the squared differences of a property.
class QX_API QXFPVariogram : public QXFPHistogram {
 public:
  QXFPVariogram(unsigned numBins, double min, double max);

  /// Counts a pair with this score and property difference; returns the bin.
  unsigned AddSample(float score, float difference);

  /// Per bin: sum of squared differences / (2 count), 0 for an empty bin.
  std::vector<double> GetVariogram() const;

 private:
  std::vector<double> squares_;
};

}  // namespace QXFingrix
