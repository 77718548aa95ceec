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

unsigned FingerPrintStore::RunLength(unsigned begin, unsigned end) const {
  const std::span<const Entry> entries(entries_.data() + begin, end - begin);
  const unsigned run = entries.front().run;
  if (entries.back().run == run) return end - begin;
  const auto next = std::ranges::upper_bound(entries, run, {}, &Entry::run);
  return static_cast<unsigned>(next - entries.begin());
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

void FingerPrintStore::Append(const QXFingerPrint& fp) {
  const std::span<const std::uint64_t> words = fp.GetWords();
  Entry entry{nullptr, fp.GetSize(), 0};
  entries_.push_back(entry);
  try {
    std::uint64_t* const copy = arena_.Take(words.size());
    std::ranges::copy(words, copy);
    entry.words = copy;
  } catch (...) {
    entries_.pop_back();
    throw;
  }
  if (entries_.size() > 1) {
    const Entry& last = entries_[entries_.size() - 2];
    const bool isBeside = last.numBits == entry.numBits && last.words + words.size() == entry.words;
    entry.run = last.run + (isBeside ? 0 : 1);
  }
  entries_.back() = entry;
}

}  // namespace QXFingrix
