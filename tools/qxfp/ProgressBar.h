#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "QXSystem/QXDots.h"

namespace qxfp {

/// Progress on a terminal: a bar, the share done, the rate and the time left, redrawn ten times a second at
/// most.
class ProgressBar final : public QXSystem::QXDots {
 public:
  /// noun: what is counted, in the plural; must outlive the bar.
  ProgressBar(std::uint64_t total, const char* noun);

  std::unique_ptr<QXDots> CreateCopy() const override;
  void Update(unsigned n = 1) override;
  /// Takes the bar away.
  void Total() override;

 private:
  using Clock = std::chrono::steady_clock;

  void Draw(Clock::time_point now) const;

  std::uint64_t total_;
  const char* noun_;
  Clock::time_point start_;
  Clock::time_point lastDrawn_;
};

/// A bar where progress has anywhere to be shown: standard error is a terminal. Otherwise nothing.
std::unique_ptr<ProgressBar> MakeProgressBar(std::uint64_t total, const char* noun);

}  // namespace qxfp
