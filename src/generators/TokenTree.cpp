#include "generators/TokenTree.h"

#include <limits>
#include <new>

namespace QXFingrix {

void TokenTree::Reset(const PrefixCode& code) {
  code_ = &code;
  nodes_.assign(1, {});
  textSize_ = 0;
  token_.clear();
}

// Siblings are few: what may follow one beginning of a token.
unsigned TokenTree::Child(unsigned parent, unsigned number) {
  unsigned before = 0;
  unsigned child = nodes_[parent].firstChild;
  while (child != 0 && nodes_[child].number < number) {
    before = child;
    child = nodes_[child].nextSibling;
  }
  if (child != 0 && nodes_[child].number == number) return child;
  if (nodes_.size() > std::numeric_limits<unsigned>::max()) throw std::bad_alloc();
  const auto added = static_cast<unsigned>(nodes_.size());
  const auto size = static_cast<unsigned>(nodes_[parent].size + code_->Piece(number).size());
  nodes_.push_back({.number = number, .size = size, .count = 0, .firstChild = 0, .nextSibling = child});
  (before != 0 ? nodes_[before].nextSibling : nodes_[parent].firstChild) = added;
  return added;
}

void TokenTree::Write(std::string& text) {
  text.clear();
  text.reserve(textSize_);
  WriteBelow(root, text);
  if (!text.empty()) text.pop_back();
}

void TokenTree::WriteBelow(unsigned parent, std::string& text) {
  const std::size_t size = token_.size();
  for (unsigned node = nodes_[parent].firstChild; node != 0; node = nodes_[node].nextSibling) {
    token_.append(code_->Piece(nodes_[node].number));
    token_.push_back(' ');
    for (unsigned i = 0; i < nodes_[node].count; ++i) text.append(token_);
    token_.pop_back();
    WriteBelow(node, text);
    token_.resize(size);
  }
}

}  // namespace QXFingrix
