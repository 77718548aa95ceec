#pragma once

#include <vector>

namespace QXFingrix {

/// Sees to it that the next push_back cannot fail.
/// Errors   std::bad_alloc, nothing changed.
template <class T>
void MakeRoom(std::vector<T>& values) {
  if (values.size() == values.capacity()) values.reserve(2 * values.size() + 1);
}

}  // namespace QXFingrix
