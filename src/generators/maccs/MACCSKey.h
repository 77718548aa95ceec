#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "QXChem/QXSubSearch.h"

namespace QXFingrix {

/// A key pattern, compiled.
struct MACCSKey {
  explicit MACCSKey(std::string text, std::uint32_t keyToSet, std::uint32_t keyToRepeat = 0)
      : smarts(std::move(text)), key(keyToSet), repeatKey(keyToRepeat), search(smarts, 0) {}

  std::string smarts;
  std::uint32_t key;
  std::uint32_t repeatKey;  ///< 0 unless the row counts: then two different matches set this key, and no more
  QXChem::QXSubSearch search;
};

/// The compiled rows, in the order of the table. Takes milliseconds: make it once and keep it.
std::vector<MACCSKey> MACCS166Keys();

}  // namespace QXFingrix
