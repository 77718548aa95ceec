#include <algorithm>

#include "database/WithinMemory.h"
#include "fastfp/SimSearchResultImpl.h"

namespace QXFingrix {

std::string QXSimSearchStatusToName(unsigned status) {
  constexpr const char* names[] = {"Uninitialized", "InProgress", "Finished"};
  return status < std::size(names) ? names[status] : "Invalid";
}

QXSimSearchResultImpl::QXSimSearchResultImpl(unsigned numBins, double min, double max)
    : numBins_(numBins), min_(min), max_(max), histogram_(MakeHistogram()) {}

QXFPHistogram QXSimSearchResultImpl::MakeHistogram() const {
  return {std::max(numBins_, 1U), min_, max_};
}

void QXSimSearchResultImpl::Init(std::uint64_t numTargets, const QXFPDatabaseOptions& options) {
  const std::lock_guard lock(mutex_);
  status_ = QXSimSearchStatus::InProgress;
  numTargets_ = numTargets;
  numSearched_ = 0;
  histogram_ = MakeHistogram();
  hits_ = QXInitFPDatabaseHitList(numTargets, options);
}

QXFPHistogram QXSimSearchResultImpl::GetHistogram() const {
  const std::lock_guard lock(mutex_);
  return histogram_;
}

void QXSimSearchResultImpl::Merge(const QXFPHistogram& histogram, const std::vector<QXSimScore>& hits) {
  const std::lock_guard lock(mutex_);
  histogram_ += histogram;
  for (const QXSimScore& hit : hits) hits_->AddHit(hit);
}

void QXSimSearchResultImpl::Finish() {
  const std::lock_guard lock(mutex_);
  hits_->Sort();
  status_ = QXSimSearchStatus::Finished;
}

void QXSimSearchResultImpl::UpdateScores(unsigned idx, float score) {
  const std::lock_guard lock(mutex_);
  ++numSearched_;
  if (HasHistogram()) histogram_.AddSample(score);
  if (hits_) hits_->AddHit(QXSimScore(idx, double{score}));
}

std::vector<QXSimScore> QXSimSearchResultImpl::GetHits() const {
  const std::lock_guard lock(mutex_);
  return hits_ ? hits_->GetHits() : std::vector<QXSimScore>();
}

std::vector<QXSimScore> QXSimSearchResultImpl::GetFinishedHits() const {
  const std::lock_guard lock(mutex_);
  return status_ == QXSimSearchStatus::Finished ? hits_->GetHits() : std::vector<QXSimScore>();
}

QXSimSearchResult::QXSimSearchResult(unsigned numBins, double min, double max) {
  WithinMemory("QXSimSearchResult::QXSimSearchResult()",
               [&] { impl_ = std::make_unique<QXSimSearchResultImpl>(numBins, min, max); });
}
QXSimSearchResult::~QXSimSearchResult() = default;
QXSimSearchResult::QXSimSearchResult(QXSimSearchResult&&) noexcept = default;
QXSimSearchResult& QXSimSearchResult::operator=(QXSimSearchResult&&) noexcept = default;

unsigned QXSimSearchResult::GetSearchStatus() const {
  return impl_ ? impl_->GetSearchStatus() : QXSimSearchStatus::Uninitialized;
}

std::uint64_t QXSimSearchResult::NumTargets() const {
  return impl_ ? impl_->NumTargets() : 0;
}

std::uint64_t QXSimSearchResult::NumSearched() const {
  return impl_ ? impl_->NumSearched() : 0;
}

QXFPHistogram QXSimSearchResult::GetHistogram() const {
  QXFPHistogram histogram(0, 0.0, 1.0);
  WithinMemory("QXSimSearchResult::GetHistogram()",
               [&] { histogram = impl_ ? impl_->GetHistogram() : QXFPHistogram(1, 0.0, 1.0); });
  return histogram;
}

QXSystem::QXIter<QXSimScore> QXSimSearchResult::GetSortedScores() const {
  QXSystem::QXIter<QXSimScore> hits;
  if (!impl_) return hits;
  WithinMemory("QXSimSearchResult::GetSortedScores()",
               [&] { hits = QXSystem::QXMakeVectorIter(impl_->GetFinishedHits()); });
  return hits;
}

}  // namespace QXFingrix
