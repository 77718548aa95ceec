#include "generators/maccs/MACCSKey.h"

#include "generators/maccs/KeyRows.h"

namespace QXFingrix {

std::vector<MACCSKey> MACCS166Keys() {
  std::vector<MACCSKey> keys;
  keys.reserve(GetKeyRows().size());
  for (const KeyRow& row : GetKeyRows()) keys.emplace_back(row.smarts, row.key, row.repeatKey);
  return keys;
}

}  // namespace QXFingrix
