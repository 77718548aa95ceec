#pragma once

#include <string_view>

namespace qxfp {

/// Buffered standard output for results. When the reader has gone away the program ends at once, quietly,
/// with status 0; any other write failure is reported and ends it with status 3. Both leave through _Exit,
/// since worker threads may still be running; nothing that is written to standard output owns an unfinished
/// file.
void Print(std::string_view text);
void FlushOutput();

bool IsOutputTerminal();

}  // namespace qxfp
