#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace QXSystem {

/// What a QXIter walks over: a sequence with a current position. Derived classes own, or share, their
/// elements.
template <class T>
class QXIterBase {
 public:
  virtual ~QXIterBase() = default;
  virtual bool IsValid() const = 0;
  /// Only while IsValid().
  virtual const T& Get() const = 0;
  /// Only while IsValid().
  virtual void Next() = 0;
  virtual void ToFirst() = 0;
  /// An independent iterator at the same position.
  virtual std::unique_ptr<QXIterBase> Clone() const = 0;
};

/// An owning, copyable forward iterator: true while it stands on an element. What a query that failed or
/// found nothing returns is the empty iterator, which is false from the start. Walk it by hand, `for (; iter;
/// ++iter) Use(*iter);`, or in a range-for, which visits the elements from the current position on and leaves
/// the iterator itself where it is.
/// Errors   ++ and ToFirst() on an empty or finished iterator do what makes sense; * and -> need an element.
template <class T>
class QXIter {
 public:
  using value_type = T;
  using difference_type = std::ptrdiff_t;

  QXIter() = default;
  explicit QXIter(std::unique_ptr<QXIterBase<T>> impl) : impl_(std::move(impl)) {}
  QXIter(const QXIter& other) : impl_(other.impl_ ? other.impl_->Clone() : nullptr) {}
  QXIter(QXIter&&) noexcept = default;
  QXIter& operator=(const QXIter& other) {
    if (this != &other) impl_ = other.impl_ ? other.impl_->Clone() : nullptr;
    return *this;
  }
  QXIter& operator=(QXIter&&) noexcept = default;

  explicit operator bool() const { return impl_ && impl_->IsValid(); }
  const T& operator*() const { return impl_->Get(); }
  const T* operator->() const { return &impl_->Get(); }
  QXIter& operator++() {
    if (*this) impl_->Next();
    return *this;
  }
  void operator++(int) { ++*this; }
  void ToFirst() {
    if (impl_) impl_->ToFirst();
  }

  QXIter begin() const { return *this; }
  std::default_sentinel_t end() const { return {}; }
  friend bool operator==(const QXIter& iter, std::default_sentinel_t) { return !iter; }

 private:
  std::unique_ptr<QXIterBase<T>> impl_;
};

/// Iterates over a vector that all copies of the iterator share.
template <class T>
class QXVectorIter final : public QXIterBase<T> {
 public:
  explicit QXVectorIter(std::shared_ptr<const std::vector<T>> values) : values_(std::move(values)) {}
  bool IsValid() const override { return position_ < values_->size(); }
  const T& Get() const override { return (*values_)[position_]; }
  void Next() override { ++position_; }
  void ToFirst() override { position_ = 0; }
  std::unique_ptr<QXIterBase<T>> Clone() const override { return std::make_unique<QXVectorIter>(*this); }

 private:
  std::shared_ptr<const std::vector<T>> values_;
  std::size_t position_ = 0;
};

/// An iterator over `values`, empty when there are none.
template <class T>
QXIter<T> QXMakeVectorIter(std::vector<T> values) {
  if (values.empty()) return QXIter<T>();
  auto shared = std::make_shared<const std::vector<T>>(std::move(values));
  return QXIter<T>(std::make_unique<QXVectorIter<T>>(std::move(shared)));
}

}  // namespace QXSystem
