#include "ProgressBar.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "Messages.h"

namespace qxfp {

namespace {

constexpr std::chrono::milliseconds kRedrawInterval(100);
constexpr std::size_t kMaxBarWidth = 40;
constexpr std::size_t kDefaultColumns = 80;

std::size_t TerminalColumns() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kDefaultColumns;
  return size.ws_col;
}

std::string Duration(double seconds) {
  const auto whole = static_cast<unsigned long long>(std::max(0.0, seconds) + 0.5);
  char text[48];
  if (whole >= 3600) {
    std::snprintf(text, sizeof text, "%llu:%02llu:%02llu", whole / 3600, whole / 60 % 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%llu:%02llu", whole / 60, whole % 60);
  }
  return text;
}

std::string Bar(double share, std::size_t width) {
  const auto filled = static_cast<std::size_t>(share * static_cast<double>(width));
  return "[" + std::string(filled, '=') + std::string(width - filled, ' ') + "] ";
}

}  // namespace

ProgressBar::ProgressBar(std::uint64_t total, const char* noun)
    : QXDots(0, 0, noun, nullptr), total_(total), noun_(noun), start_(Clock::now()), lastDrawn_(start_) {}

std::unique_ptr<QXSystem::QXDots> ProgressBar::CreateCopy() const {
  return std::make_unique<ProgressBar>(*this);
}

void ProgressBar::Update(unsigned n) {
  QXDots::Update(n);
  const auto now = Clock::now();
  if (now - lastDrawn_ < kRedrawInterval) return;
  lastDrawn_ = now;
  Draw(now);
}

void ProgressBar::Total() {
  ShowStatusLine("");
}

void ProgressBar::Draw(Clock::time_point now) const {
  const double seconds = std::chrono::duration<double>(now - start_).count();
  const double rate = static_cast<double>(GetCount()) / seconds;
  const double share = total_ > 0 ? static_cast<double>(GetCount()) / static_cast<double>(total_) : 1.0;
  char figures[160];
  std::snprintf(figures, sizeof figures, "%3.0f %%  %llu of %llu %s  %.0f/s  %s left", 100.0 * share,
                static_cast<unsigned long long>(GetCount()), static_cast<unsigned long long>(total_), noun_,
                rate, Duration(static_cast<double>(total_ - GetCount()) / rate).c_str());
  std::string line = figures;
  const std::size_t columns = TerminalColumns();
  const std::size_t besideBar = line.size() + 4;  // brackets, a blank, and the last column left free
  if (columns > besideBar) line = Bar(share, std::min(kMaxBarWidth, columns - besideBar)) + line;
  ShowStatusLine(line.substr(0, columns - 1));
}

std::unique_ptr<ProgressBar> MakeProgressBar(std::uint64_t total, const char* noun) {
  return isatty(STDERR_FILENO) == 1 ? std::make_unique<ProgressBar>(total, noun) : nullptr;
}

}  // namespace qxfp
