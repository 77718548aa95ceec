#include "generators/circular/TokenList.h"

#include <algorithm>

namespace QXFingrix {

void TokenList::Clear() {
  bytes_.clear();
  ends_.clear();
}

void TokenList::Add(std::string_view token) {
  bytes_.append(token);
  ends_.push_back(bytes_.size());
}

void TokenList::Write(std::string& text) {
  sorted_.clear();
  std::size_t begin = 0;
  for (const std::size_t end : ends_) {
    sorted_.push_back(std::string_view(bytes_).substr(begin, end - begin));
    begin = end;
  }
  std::ranges::sort(sorted_);
  text.clear();
  text.reserve(GetTextSize());
  for (const std::string_view token : sorted_) {
    text.append(token);
    text.push_back(' ');
  }
  if (!text.empty()) text.pop_back();
}

std::size_t TokenList::GetCapacity() const {
  return bytes_.capacity() + ends_.capacity() * sizeof(std::size_t) +
         sorted_.capacity() * sizeof(std::string_view);
}

}  // namespace QXFingrix
