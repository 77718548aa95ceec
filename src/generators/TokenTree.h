#pragma once

#include <span>
#include <string>
#include <vector>

#include "generators/PrefixCode.h"

namespace QXFingrix {

/// A multiset of tokens, which are texts spelled in a PrefixCode, kept as a tree: tokens that begin alike
/// share the nodes of their beginning, equal ones are counted. So memory grows with the number of distinct
/// tokens, and the tokens are in order without being sorted. An object is working memory.
class TokenTree {
 public:
  static constexpr unsigned root = 0;

  /// Empties the tree. The code must outlive what follows.
  void Reset(const PrefixCode& code);

  /// The node reached from another one by the pieces with these numbers.
  unsigned Descend(unsigned node, std::span<const unsigned> numbers) {
    for (const unsigned number : numbers) node = Child(node, number);
    return node;
  }

  /// Adds the token that ends at a node.
  void Count(unsigned node) {
    ++nodes_[node].count;
    textSize_ += nodes_[node].size + std::size_t{1};
  }

  /// How long the text of all tokens is, with a separator after each.
  std::size_t GetTextSize() const { return textSize_; }

  /// Replaces `text` by the tokens in ascending byte order, joined by one blank.
  void Write(std::string& text);

  /// Bytes that are kept.
  std::size_t GetCapacity() const { return nodes_.capacity() * sizeof(Node); }

 private:
  struct Node {
    unsigned number;       // of the piece that leads here
    unsigned size;         // bytes from the root to here
    unsigned count;        // tokens that end here
    unsigned firstChild;   // 0: none
    unsigned nextSibling;  // the one with the next higher number, 0: none
  };

  unsigned Child(unsigned parent, unsigned number);
  void WriteBelow(unsigned parent, std::string& text);

  const PrefixCode* code_ = nullptr;
  std::vector<Node> nodes_;
  std::size_t textSize_ = 0;
  std::string token_;
};

}  // namespace QXFingrix
