#pragma once

namespace qxfp {

/// What the program tells its caller; scripts rely on these numbers.
enum ExitStatus : int {
  Done = 0,
  SomeFailed = 1,  ///< finished, but some inputs could not be used
  BadUsage = 2,    ///< the command line makes no sense
  CannotRun = 3    ///< nothing could be done
};

}  // namespace qxfp
