#pragma once

#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

#include "QXSystem/QXExport.h"

namespace QXSystem {

/// Shows progress: a dot every `smallStep` items, and every `bigStep` items the count and a new line.
/// Derive from it to show progress another way; who traces works on a copy made by CreateCopy().
/// Threads  one thread at a time.
class QX_API QXDots {
 public:
  /// A step of 0 prints nothing of its kind; a null stream prints nothing at all. The stream must outlive the
  /// object and its copies.
  QXDots(unsigned bigStep, unsigned smallStep, std::string noun, std::ostream* out = &std::cerr);
  virtual ~QXDots();
  virtual std::unique_ptr<QXDots> CreateCopy() const;

  /// Counts `n` more items.
  virtual void Update(unsigned n = 1);
  /// Ends the line and prints the count.
  virtual void Total();

  std::uint64_t GetCount() const { return count_; }

 protected:
  QXDots(const QXDots&) = default;
  QXDots& operator=(const QXDots&) = default;

 private:
  unsigned bigStep_;
  unsigned smallStep_;
  std::string noun_;
  std::ostream* out_;
  std::uint64_t count_ = 0;
  bool isLineOpen_ = false;
};

}  // namespace QXSystem
