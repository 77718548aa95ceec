#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "QXSystem/QXString.h"

namespace QXFingrix {

/// Splits a text at every separator; true when that gives `count` pieces, none of them empty.
inline bool SplitExactly(std::vector<std::string>& parts, const std::string& text, char separator,
                         std::size_t count) {
  // Dropping empty pieces would let "size==5" pass for "size=5".
  QXSystem::QXStringTokenize(parts, text, std::string(1, separator), false);
  return parts.size() == count && std::ranges::none_of(parts, &std::string::empty);
}

}  // namespace QXFingrix
