#include "QXSystem/QXDots.h"

#include <utility>

namespace QXSystem {

QXDots::QXDots(unsigned bigStep, unsigned smallStep, std::string noun, std::ostream* out)
    : bigStep_(bigStep), smallStep_(smallStep), noun_(std::move(noun)), out_(out) {}

QXDots::~QXDots() = default;

std::unique_ptr<QXDots> QXDots::CreateCopy() const {
  return std::unique_ptr<QXDots>(new QXDots(*this));
}

void QXDots::Update(unsigned n) {
  const std::uint64_t before = std::exchange(count_, count_ + n);
  if (!out_) return;
  const auto stepsPassed = [&](unsigned step) { return step == 0 ? 0 : count_ / step - before / step; };
  // One call may pass many steps; a line of dots per missed line would tell nothing.
  if (stepsPassed(smallStep_) > 0) {
    *out_ << '.';
    isLineOpen_ = true;
  }
  if (stepsPassed(bigStep_) > 0) {
    *out_ << ' ' << count_ << ' ' << noun_ << '\n';
    isLineOpen_ = false;
  }
  if (stepsPassed(smallStep_) > 0 || stepsPassed(bigStep_) > 0) out_->flush();
}

void QXDots::Total() {
  if (!out_) return;
  if (isLineOpen_) *out_ << '\n';
  isLineOpen_ = false;
  *out_ << "Total " << count_ << ' ' << noun_ << std::endl;
}

}  // namespace QXSystem
