#include "database/TokenIndex.h"

#include <algorithm>
#include <limits>
#include <new>

#include "similarity/TokenSimilarity.h"

namespace QXFingrix {

namespace {

// Calls visit(token, count) for the distinct tokens of a text; returns the number of tokens.
template <class Visit>
std::size_t ForDistinctTokens(std::string_view text, Visit visit) {
  std::vector<std::string_view> tokens = SplitTokens(text);
  if (!std::ranges::is_sorted(tokens)) std::ranges::sort(tokens);  // our generators sort them
  for (auto group = tokens.begin(); group != tokens.end();) {
    const auto end =
        std::find_if(group, tokens.end(), [&](std::string_view token) { return token != *group; });
    visit(*group, static_cast<std::size_t>(end - group));
    group = end;
  }
  return tokens.size();
}

}  // namespace

std::vector<std::uint32_t> TokenIndex::Insert(std::string_view text) {
  std::vector<std::uint32_t> inserted;
  ForDistinctTokens(text, [&](std::string_view token, std::size_t count) {
    auto found = numbers_.find(token);
    if (found == numbers_.end()) found = numbers_.emplace(token, Numbers()).first;
    Numbers& numbers = found->second;
    while (numbers.size() < count) {
      if (next_ == std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
      numbers.push_back(next_);
      ++next_;
    }
    inserted.insert(inserted.end(), numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(count));
  });
  return inserted;
}

std::size_t TokenIndex::Mark(std::string_view text, std::vector<bool>& marks) const {
  marks.assign(next_, false);
  return ForDistinctTokens(text, [&](std::string_view token, std::size_t count) {
    const auto found = numbers_.find(token);
    if (found == numbers_.end()) return;
    const Numbers& numbers = found->second;
    for (std::size_t i = 0; i < std::min(count, numbers.size()); ++i) marks[numbers[i]] = true;
  });
}

}  // namespace QXFingrix
