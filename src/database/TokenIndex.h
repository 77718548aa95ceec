#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace QXFingrix {

/// Numbers the tokens of texts. The second "a" of a text has another number than the first, and the same as
/// the second "a" of any other text: what two texts share as multisets, their numbers share as plain sets.
class TokenIndex {
 public:
  /// The numbers of a text's tokens, each once; new ones for what no text before has had.
  /// Errors   std::bad_alloc, also when there are no numbers left; new numbers may stay.
  std::vector<std::uint32_t> Insert(std::string_view text);

  /// Marks the numbers of those tokens of a text that are known.
  /// Shape    marks: replaced, one for each number given so far.
  /// Returns  the number of tokens, known or not.
  std::size_t Mark(std::string_view text, std::vector<bool>& marks) const;

 private:
  using Numbers = std::vector<std::uint32_t>;  // of a token's first occurrence in a text, its second, ...

  std::map<std::string, Numbers, std::less<>> numbers_;
  std::uint32_t next_ = 0;
};

}  // namespace QXFingrix
