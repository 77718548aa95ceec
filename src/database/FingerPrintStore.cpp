#include "database/FingerPrintStore.h"

#include <algorithm>
#include <memory>
#include <new>
#include <span>

namespace QXFingrix {

namespace {

constexpr std::size_t NumWords(unsigned numBits) {
  return (std::size_t{numBits} + 63) / 64;
}

// Makes the fingerprint at its position again whenever it moves.
class StoreIter final : public QXSystem::QXIterBase<QXFingerPrint> {
 public:
  explicit StoreIter(const FingerPrintStore& store) : store_(store) { Load(); }
  bool IsValid() const override { return position_ < store_.Size(); }
  const QXFingerPrint& Get() const override { return current_; }
  void Next() override {
    ++position_;
    Load();
  }
  void ToFirst() override {
    position_ = 0;
    Load();
  }
  std::unique_ptr<QXIterBase> Clone() const override { return std::make_unique<StoreIter>(*this); }

 private:
  void Load() {
    if (IsValid()) store_.Load(position_, current_);
  }

  const FingerPrintStore& store_;
  unsigned position_ = 0;
  QXFingerPrint current_;
};

}  // namespace

std::string_view FingerPrintStore::GetText(unsigned i) const {
  const std::size_t numBytes = (std::size_t{entries_[i].numBits} + 7) / 8;
  const std::string_view bytes(reinterpret_cast<const char*>(entries_[i].words), numBytes);
  return bytes.substr(0, bytes.find('\0'));
}

std::span<const unsigned> FingerPrintStore::GetLane(unsigned lane, unsigned begin, unsigned end) const {
  const std::vector<unsigned>& entries = lanes_[lane].entries;
  const auto first = std::ranges::lower_bound(entries, begin);
  return {first, std::ranges::lower_bound(first, entries.end(), end)};
}

std::size_t FingerPrintStore::RunLength(std::span<const unsigned> entries) const {
  const auto runOf = [this](unsigned i) { return entries_[i].run; };
  const unsigned run = runOf(entries.front());
  if (runOf(entries.back()) == run) return entries.size();
  return static_cast<std::size_t>(std::ranges::upper_bound(entries, run, {}, runOf) - entries.begin());
}

void FingerPrintStore::Load(unsigned i, QXFingerPrint& fp) const {
  const Entry& entry = entries_[i];
  if (!fp.SetSize(entry.numBits)) throw std::bad_alloc();
  std::copy_n(entry.words, NumWords(entry.numBits), fp.GetWords().begin());
  fp.SetFPTypeBase(type_);
}

QXSystem::QXIter<QXFingerPrint> FingerPrintStore::GetIter() const {
  return QXSystem::QXIter<QXFingerPrint>(std::make_unique<StoreIter>(*this));
}

void FingerPrintStore::Append(const QXFingerPrint& fp, unsigned laneNumber) {
  if (laneNumber >= lanes_.size()) lanes_.resize(laneNumber + 1);
  Lane& lane = lanes_[laneNumber];
  // Room first, so that nothing is left to fail once something is stored.
  if (entries_.size() == entries_.capacity()) entries_.reserve(2 * entries_.size() + 1);
  if (lane.entries.size() == lane.entries.capacity()) lane.entries.reserve(2 * lane.entries.size() + 1);
  const std::span<const std::uint64_t> words = fp.GetWords();
  std::uint64_t* const copy = lane.words.Take(words.size());
  std::ranges::copy(words, copy);

  Entry entry{copy, fp.GetSize(), 0};
  if (!lane.entries.empty()) {
    const Entry& last = entries_[lane.entries.back()];
    const bool isBeside = last.numBits == entry.numBits && last.words + words.size() == copy;
    entry.run = last.run + (isBeside ? 0 : 1);
  }
  if (lane.entries.empty()) lane.numBits = entry.numBits;
  lane.hasOneSize &= lane.numBits == entry.numBits;
  lane.entries.push_back(Size());
  entries_.push_back(entry);
}

}  // namespace QXFingrix
