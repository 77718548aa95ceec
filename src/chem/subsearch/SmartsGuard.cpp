// What a text must satisfy before the parser sees it. The parser stops at a NUL as if the text ended there. It
// turns conditions that are joined into a tree as deep as they are many, which is built and freed recursively,
// and those of brackets in each other add up: how long they may be is what fits the stack of a small thread.
// Every recursive pattern makes a search keep notes about every atom.

#include "chem/subsearch/SmartsGuard.h"

#include <vector>

namespace QXChem {
namespace {

constexpr std::size_t maxBytes = 10000;
constexpr std::size_t maxRecursive = 100;
constexpr std::size_t maxConditionBytes = 1000;

std::string AtByte(std::size_t position) {
  return " at byte " + std::to_string(position + 1);
}

std::string MoreThan(std::size_t limit, const std::string& what, std::size_t position) {
  return "more than " + std::to_string(limit) + " " + what + AtByte(position);
}

class Guard {
 public:
  // Returns what is wrong, or nothing.
  std::string Check(std::string_view smarts) {
    for (std::size_t i = 0; i < smarts.size(); ++i) {
      std::string reason = Read(smarts[i], i);
      if (!reason.empty()) return reason;
    }
    if (open_.empty()) return {};
    return (IsInBracket() ? "unclosed bracket" : "unclosed parenthesis") + AtByte(open_.back().position);
  }

 private:
  struct Opened {
    char by;
    std::size_t position;
    std::size_t length;  // of a bracket, without what is in parentheses there
  };

  bool IsInBracket() const { return !open_.empty() && open_.back().by == '['; }

  std::string Read(char c, std::size_t position) {
    if (c < ' ' || c > '~') {
      return "byte " + std::to_string(static_cast<unsigned char>(c)) + " is not a SMARTS character" +
             AtByte(position);
    }
    if (c == '(') {
      if (IsInBracket() && ++numRecursive_ > maxRecursive) {
        return MoreThan(maxRecursive, "recursive patterns", position);
      }
      open_.push_back({c, position, 0});
    } else if (c == ')') {
      if (open_.empty() || open_.back().by != '(') return "unopened parenthesis" + AtByte(position);
      open_.pop_back();
    } else if (c == '[' && !IsInBracket()) {
      open_.push_back({c, position, 0});
    } else if (c == ']' && IsInBracket()) {
      bracketBytes_ -= open_.back().length;
      open_.pop_back();
    } else {
      return ReadCondition(c, position);
    }
    bondBytes_ = 0;
    return {};
  }

  std::string ReadCondition(char c, std::size_t position) {
    constexpr std::string_view bondBytes = "-=#$:~@/\\<>!&,;";
    if (IsInBracket()) {
      ++open_.back().length;
      ++bracketBytes_;
    } else {
      bondBytes_ = bondBytes.find(c) == std::string_view::npos ? 0 : bondBytes_ + 1;
    }
    if (bracketBytes_ + bondBytes_ <= maxConditionBytes) return {};
    return MoreThan(maxConditionBytes,
                    std::string("bytes of conditions on ") + (IsInBracket() ? "an atom" : "a bond"),
                    position);
  }

  std::vector<Opened> open_;
  std::size_t numRecursive_ = 0;
  std::size_t bracketBytes_ = 0;  // of all brackets that are open
  std::size_t bondBytes_ = 0;     // of the bond being read
};

}  // namespace

bool IsSafeSmarts(std::string_view smarts, std::string& reason) {
  reason.clear();
  if (smarts.empty()) {
    reason = "no SMARTS";
  } else if (smarts.size() > maxBytes) {
    reason = "longer than " + std::to_string(maxBytes) + " bytes";
  } else {
    reason = Guard().Check(smarts);
  }
  return reason.empty();
}

}  // namespace QXChem
