#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace QXFingrix {

/// A multiset of tokens, one after the other. An object is working memory.
class TokenList {
 public:
  void Clear();
  void Add(std::string_view token);

  /// How long the text of all tokens is, with a separator after each.
  std::size_t GetTextSize() const { return bytes_.size() + ends_.size(); }

  /// Replaces `text` by the tokens in ascending byte order, joined by one blank.
  void Write(std::string& text);

  /// Bytes that are kept.
  std::size_t GetCapacity() const;

 private:
  std::string bytes_;
  std::vector<std::size_t> ends_;  // of each token in bytes_
  std::vector<std::string_view> sorted_;
};

}  // namespace QXFingrix
