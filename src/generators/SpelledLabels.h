#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "generators/PrefixCode.h"

namespace QXFingrix {

/// The numbers that spell each of some labels in a PrefixCode. An object is working memory.
class SpelledLabels {
 public:
  void Load(const PrefixCode& code, std::span<const std::string> labels) {
    first_.assign(1, 0);
    numbers_.clear();
    for (const std::string& label : labels) {
      code.Spell(label, numbers_);
      first_.push_back(numbers_.size());
    }
  }

  /// The numbers of label i.
  std::span<const unsigned> operator[](std::size_t i) const {
    return {numbers_.data() + first_[i], numbers_.data() + first_[i + 1]};
  }

 private:
  std::vector<std::size_t> first_;
  std::vector<unsigned> numbers_;
};

}  // namespace QXFingrix
