#include "similarity/TokenSimilarity.h"

#include <algorithm>

namespace QXFingrix {

std::vector<std::string_view> SplitTokens(std::string_view text) {
  constexpr std::string_view whiteSpace = " \t\n\v\f\r";
  std::vector<std::string_view> tokens;
  for (std::size_t end = 0;;) {
    const std::size_t begin = text.find_first_not_of(whiteSpace, end);
    if (begin == std::string_view::npos) return tokens;
    end = std::min(text.find_first_of(whiteSpace, begin), text.size());
    tokens.push_back(text.substr(begin, end - begin));
  }
}

float TokenTanimoto(std::string_view textA, std::string_view textB) {
  std::vector<std::string_view> a = SplitTokens(textA);
  std::vector<std::string_view> b = SplitTokens(textB);
  std::ranges::sort(a);
  std::ranges::sort(b);
  return TokenTanimoto(CountCommon(a, b), a.size(), b.size());
}

}  // namespace QXFingrix
