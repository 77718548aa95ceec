#include "similarity/TokenSimilarity.h"

#include <algorithm>

namespace QXFingrix {
namespace {

bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

std::vector<std::string_view> SplitTokens(std::string_view text) {
  std::vector<std::string_view> tokens;
  for (auto end = text.begin();;) {
    const auto begin = std::find_if_not(end, text.end(), IsSpace);
    if (begin == text.end()) return tokens;
    end = std::find_if(begin, text.end(), IsSpace);
    tokens.emplace_back(begin, end);
  }
}

float TokenTanimoto(std::string_view textA, std::string_view textB) {
  std::vector<std::string_view> a = SplitTokens(textA);
  std::vector<std::string_view> b = SplitTokens(textB);
  for (auto* tokens : {&a, &b}) {
    if (!std::ranges::is_sorted(*tokens)) std::ranges::sort(*tokens);  // the generators write them sorted
  }
  return TokenTanimoto(CountCommon(a, b), a.size(), b.size());
}

}  // namespace QXFingrix
