#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <string_view>
#include <vector>

namespace QXFingrix {

/// How many elements two sorted sequences share, as multisets.
template <class Sequence>
std::size_t CountCommon(const Sequence& a, const Sequence& b) {
  const std::less<typename Sequence::value_type> less;  // for pointers: a total order
  std::size_t common = 0;
  for (auto i = a.begin(), j = b.begin(); i != a.end() && j != b.end();) {
    if (*i == *j) {
      ++common;
      ++i;
      ++j;
    } else if (less(*i, *j)) {
      ++i;
    } else {
      ++j;
    }
  }
  return common;
}

/// The Tanimoto score of k common tokens of nA and nB. Not a number when there are none at all: that case is
/// not guarded on purpose.
inline float TokenTanimoto(std::size_t k, std::size_t nA, std::size_t nB) {
  return static_cast<float>(k) / static_cast<float>(nA + nB - k);
}

/// The tokens of a text, as stream extraction finds them: split at white space of the "C" locale.
std::vector<std::string_view> SplitTokens(std::string_view text);

/// The Tanimoto score of two texts of tokens in any order.
float TokenTanimoto(std::string_view textA, std::string_view textB);

}  // namespace QXFingrix
