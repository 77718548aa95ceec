#pragma once

#include <new>

#include "QXSystem/QXErrorHandler.h"

namespace QXFingrix {

/// Runs a query that stores scores.
/// Errors   false and a Warning in the caller's name when memory does not suffice for them.
template <class Query>
bool WithinMemory(const char* caller, Query query) {
  try {
    query();
    return true;
  } catch (const std::bad_alloc&) {
    QXSystem::QXThrow.Warning("%s: not enough system memory to store results!", caller);
    return false;
  }
}

}  // namespace QXFingrix
