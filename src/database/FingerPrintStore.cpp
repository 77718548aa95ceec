#include "database/FingerPrintStore.h"

#include <algorithm>
#include <memory>
#include <new>
#include <span>

#include "database/MakeRoom.h"

namespace QXFingrix {

namespace {

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

const std::uint64_t* FingerPrintStore::Append(const QXFingerPrint& fp, WordArena& words) {
  MakeRoom(entries_);
  const std::span<const std::uint64_t> source = fp.GetWords();
  std::uint64_t* const copy = words.Take(source.size());
  std::ranges::copy(source, copy);
  entries_.push_back({copy, fp.GetSize()});
  return copy;
}

}  // namespace QXFingrix
