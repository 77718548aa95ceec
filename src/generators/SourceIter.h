#pragma once

#include <memory>
#include <utility>

#include "QXSystem/QXIter.h"

namespace QXFingrix {

/// Walks over what a source gives, one element at a time. A Source is copyable, has a type Value, and
/// bool Next(Value&), which is false at the end.
template <class Source>
class SourceIter final : public QXSystem::QXIterBase<typename Source::Value> {
 public:
  using Value = typename Source::Value;

  explicit SourceIter(Source source) : start_(std::move(source)), source_(start_) { SourceIter::Next(); }
  bool IsValid() const override { return isValid_; }
  const Value& Get() const override { return value_; }
  void Next() override { isValid_ = source_.Next(value_); }
  void ToFirst() override {
    source_ = start_;
    Next();
  }
  std::unique_ptr<QXSystem::QXIterBase<Value>> Clone() const override {
    return std::make_unique<SourceIter>(*this);
  }

 private:
  Source start_;
  Source source_;
  Value value_{};
  bool isValid_ = false;
};

template <class Source>
QXSystem::QXIter<typename Source::Value> MakeSourceIter(Source source) {
  return QXSystem::QXIter<typename Source::Value>(std::make_unique<SourceIter<Source>>(std::move(source)));
}

}  // namespace QXFingrix
