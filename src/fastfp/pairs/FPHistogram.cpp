#include "QXFingrix/QXFPHistogram.h"

#include <cmath>
#include <numeric>

#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

namespace {

template <class T, class PerBin>
QXSystem::QXIter<T> MakeIter(std::size_t numBins, PerBin perBin) {
  std::vector<T> values(numBins);
  for (std::size_t bin = 0; bin < numBins; ++bin) values[bin] = perBin(bin);
  return QXSystem::QXMakeVectorIter(std::move(values));
}

}  // namespace

QXFPHistogram::QXFPHistogram(unsigned numBins, double min, double max)
    : counts_(numBins, 0), min_(min), max_(max), width_((max - min) / numBins) {}

unsigned QXFPHistogram::RemoveSample(float x) {
  const unsigned bin = FindBin(x);
  if (bin < counts_.size()) --counts_[bin];
  return bin;
}

double QXFPHistogram::Center(std::size_t bin) const {
  return min_ + 0.5 * width_ + static_cast<double>(bin) * width_;
}

QXSystem::QXIter<unsigned> QXFPHistogram::GetCounts() const {
  return MakeIter<unsigned>(counts_.size(),
                            [this](std::size_t bin) { return static_cast<unsigned>(counts_[bin]); });
}

QXSystem::QXIter<double> QXFPHistogram::GetDensity() const {
  const auto total = static_cast<double>(NumSamples());
  return MakeIter<double>(counts_.size(),
                          [&](std::size_t bin) { return static_cast<double>(counts_[bin]) / total; });
}

QXSystem::QXIter<double> QXFPHistogram::GetBinCenters() const {
  return MakeIter<double>(counts_.size(), [this](std::size_t bin) { return Center(bin); });
}

QXSystem::QXIter<double> QXFPHistogram::GetBinBoundaries() const {
  return MakeIter<double>(counts_.size(),
                          [this](std::size_t bin) { return min_ + static_cast<double>(bin) * width_; });
}

std::uint64_t QXFPHistogram::NumSamples() const {
  return std::accumulate(counts_.begin(), counts_.end(), std::uint64_t{0});
}

double QXFPHistogram::Mean() const {
  const auto total = static_cast<double>(NumSamples());
  double mean = 0.0;
  for (std::size_t bin = 0; bin < counts_.size(); ++bin)
    mean += static_cast<double>(counts_[bin]) / total * Center(bin);
  return mean;
}

double QXFPHistogram::Std() const {
  const auto total = static_cast<double>(NumSamples());
  const double mean = Mean();
  double variance = 0.0;
  for (std::size_t bin = 0; bin < counts_.size(); ++bin) {
    const double deviation = Center(bin) - mean;
    variance += static_cast<double>(counts_[bin]) / total * (deviation * deviation);
  }
  return std::sqrt(variance);
}

QXFPHistogram& QXFPHistogram::operator+=(const QXFPHistogram& other) {
  const char* difference = nullptr;
  if (min_ != other.min_) {
    difference = "min limit";
  } else if (max_ != other.max_) {
    difference = "max limit";
  } else if (counts_.size() != other.counts_.size()) {
    difference = "bin size";
  }
  if (difference != nullptr) {
    QXSystem::QXThrow.Warning("QXFPHistogram::operator+=() : cannot merge histogram due to different %s!",
                              difference);
    return *this;
  }
  for (std::size_t bin = 0; bin < counts_.size(); ++bin) counts_[bin] += other.counts_[bin];
  return *this;
}

QXFPVariogram::QXFPVariogram(unsigned numBins, double min, double max)
    : QXFPHistogram(numBins, min, max), squares_(numBins, 0.0) {}

unsigned QXFPVariogram::AddSample(float score, float difference) {
  const unsigned bin = QXFPHistogram::AddSample(score);
  if (bin < squares_.size()) squares_[bin] += static_cast<double>(difference * difference);
  return bin;
}

std::vector<double> QXFPVariogram::GetVariogram() const {
  std::vector<double> variogram(squares_.size(), 0.0);
  for (std::size_t bin = 0; bin < squares_.size(); ++bin) {
    if (counts_[bin] != 0) variogram[bin] = squares_[bin] / (2.0 * static_cast<double>(counts_[bin]));
  }
  return variogram;
}

}  // namespace QXFingrix
