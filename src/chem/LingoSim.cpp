// Counting works on a copy of the profile's counts: every Lingo of the other text that finds its count above
// zero takes one away and is shared. That is the multiset intersection without a second table, and without a
// branch that depends on the texts.

#include <algorithm>
#include <string>

#include "QXChem/QXLingo.h"
#include "chem/LingoTable.h"

namespace QXChem {
namespace {

constexpr unsigned countAsOften = 1;  // the one flag that there is

bool IsPrintable(char c) {
  return c >= ' ' && c <= '~';
}

std::size_t CountLingos(std::string_view text) {
  return text.size() < lingoLength ? !text.empty() : text.size() - lingoLength + 1;
}

}  // namespace

class QXLingoSim::Impl {
 public:
  explicit Impl(std::string_view text);

  std::size_t NumLingos() const { return numLingos_; }
  std::size_t CountShared(std::string_view text) const;

 private:
  template <bool isPerfect>
  std::size_t Take(std::string_view text, std::uint32_t* remaining) const;

  std::size_t numLingos_;
  std::string shortText_;              // the one Lingo of a text of less than four characters
  LingoTable table_;                   // those of any other, with
  std::vector<std::uint32_t> counts_;  // how often each occurs; 0 in the spare slots
};

QXLingoSim::Impl::Impl(std::string_view text) : numLingos_(CountLingos(text)) {
  if (text.size() < lingoLength) {
    shortText_ = text;
    return;
  }
  std::vector<std::uint32_t> lingos(numLingos_);
  for (std::size_t i = 0; i < numLingos_; ++i) lingos[i] = LoadLingo(text.data() + i);
  std::ranges::sort(lingos);
  std::size_t numDistinct = 0;
  for (std::size_t i = 0; i < numLingos_; ++i) {
    if (i == 0 || lingos[i] != lingos[numDistinct - 1]) {
      lingos[numDistinct++] = lingos[i];
      counts_.push_back(0);
    }
    ++counts_.back();
  }
  lingos.resize(numDistinct);
  counts_.resize(numDistinct + LingoTable::numSpareSlots);
  table_ = LingoTable(lingos);
}

std::size_t QXLingoSim::Impl::CountShared(std::string_view text) const {
  if (text.size() < lingoLength) return !text.empty() && text == shortText_;
  if (counts_.empty()) return 0;
  if (table_.IsPerfect()) {
    std::uint32_t remaining[LingoTable::maxPerfect + LingoTable::numSpareSlots];
    std::ranges::copy(counts_, remaining);
    return Take<true>(text, remaining);
  }
  static thread_local std::vector<std::uint32_t> remaining;
  remaining = counts_;
  return Take<false>(text, remaining.data());
}

template <bool isPerfect>
std::size_t QXLingoSim::Impl::Take(std::string_view text, std::uint32_t* remaining) const {
  const LingoTable::View view = table_.GetView();
  const char* const end = text.data() + text.size() - lingoLength + 1;
  std::uint32_t shared = 0;
  for (const char* place = text.data(); place < end; ++place) {
    const std::uint32_t lingo = LoadLingo(place);
    const auto [found, slot] = view.Find<isPerfect>(lingo);
    std::uint32_t& count = remaining[slot];
    const std::uint32_t hit =
        static_cast<std::uint32_t>(found == lingo) & static_cast<std::uint32_t>(count > 0);
    count -= hit;
    shared += hit;
  }
  return shared;
}

QXLingoSim::QXLingoSim(std::string_view text, unsigned flag) {
  if (flag == countAsOften && std::ranges::all_of(text, IsPrintable)) {
    impl_ = std::make_unique<const Impl>(text);
  }
}

QXLingoSim::QXLingoSim() = default;
QXLingoSim::~QXLingoSim() = default;
QXLingoSim::QXLingoSim(QXLingoSim&&) noexcept = default;
QXLingoSim& QXLingoSim::operator=(QXLingoSim&&) noexcept = default;

bool QXLingoSim::CountTerms(std::string_view text, unsigned* onlyProfile, unsigned* onlyText,
                            unsigned* both) const {
  if (!impl_) return false;
  const std::size_t shared = impl_->CountShared(text);
  *onlyProfile = static_cast<unsigned>(impl_->NumLingos() - shared);
  *onlyText = static_cast<unsigned>(CountLingos(text) - shared);
  *both = static_cast<unsigned>(shared);
  return true;
}

}  // namespace QXChem
