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

template <class T>
void MakeRoom(std::vector<T>& values) {
  if (values.size() == values.capacity()) values.reserve(2 * values.size() + 1);
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

void FingerPrintStore::Load(unsigned i, QXFingerPrint& fp) const {
  const Entry& entry = entries_[i];
  if (!fp.SetSize(entry.numBits)) throw std::bad_alloc();
  std::copy_n(entry.words, NumWords(entry.numBits), fp.GetWords().begin());
  fp.SetFPTypeBase(type_);
}

QXSystem::QXIter<QXFingerPrint> FingerPrintStore::GetIter() const {
  return QXSystem::QXIter<QXFingerPrint>(std::make_unique<StoreIter>(*this));
}

void FingerPrintStore::Append(const QXFingerPrint& fp, unsigned laneNumber, unsigned bitCount) {
  if (laneNumber >= lanes_.size()) lanes_.resize(laneNumber + 1);
  Lane& lane = lanes_[laneNumber];
  // Room first, so that nothing is left to fail once something is stored.
  MakeRoom(entries_);
  MakeRoom(lane.entries);
  MakeRoom(lane.bitCounts);
  MakeRoom(lane.runs);
  const std::span<const std::uint64_t> words = fp.GetWords();
  std::uint64_t* const copy = lane.words.Take(words.size());
  std::ranges::copy(words, copy);

  const Entry entry{copy, fp.GetSize()};
  if (lane.entries.empty()) lane.numBits = entry.numBits;
  lane.hasOneSize &= lane.numBits == entry.numBits;
  if (lane.entries.empty() || !IsBeside(entries_[lane.entries.back()], entry)) {
    lane.runs.push_back(lane.entries.size());
  }
  lane.entries.push_back(Size());
  lane.bitCounts.push_back(bitCount);
  entries_.push_back(entry);
}

bool FingerPrintStore::IsBeside(const Entry& entry, const Entry& next) {
  return next.numBits == entry.numBits && next.words == entry.words + NumWords(entry.numBits);
}

}  // namespace QXFingrix
