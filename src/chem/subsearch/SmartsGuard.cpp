// What a text must satisfy before the parser sees it: the parser stops at a NUL as if the text ended there,
// and what it builds for long brackets and nested patterns is walked recursively.

#include "chem/subsearch/SmartsGuard.h"

namespace QXChem {
namespace {

constexpr std::size_t maxBytes = 10000;
constexpr std::size_t maxNesting = 100;  // of $(...)

std::string AtByte(std::size_t position) {
  return " at byte " + std::to_string(position + 1);
}

}  // namespace

bool IsSafeSmarts(std::string_view smarts, std::string& reason) {
  if (smarts.empty()) {
    reason = "no SMARTS";
    return false;
  }
  if (smarts.size() > maxBytes) {
    reason = "longer than " + std::to_string(maxBytes) + " bytes";
    return false;
  }
  std::string openings;  // of parentheses: '$' for a recursive pattern
  std::size_t nesting = 0;
  for (std::size_t i = 0; i < smarts.size(); ++i) {
    const char c = smarts[i];
    if (c < ' ' || c > '~') {
      reason =
          "byte " + std::to_string(static_cast<unsigned char>(c)) + " is not a SMARTS character" + AtByte(i);
      return false;
    }
    if (c == '(') {
      openings.push_back(i > 0 && smarts[i - 1] == '$' ? '$' : '(');
      if (openings.back() == '$' && ++nesting > maxNesting) {
        reason = "more than " + std::to_string(maxNesting) + " recursive patterns in each other" + AtByte(i);
        return false;
      }
    }
    if (c == ')' && !openings.empty()) {
      nesting -= openings.back() == '$';
      openings.pop_back();
    }
  }
  return true;
}

}  // namespace QXChem
