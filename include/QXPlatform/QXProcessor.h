#pragma once

#include "QXSystem/QXExport.h"

namespace QXPlatform {

/// The number of processors that this process may run on; at least 1.
QX_API unsigned QXGetNumProcessors();

/// The number of threads to start when so many are asked for: at most twice the number of processors; 0 asks
/// for one per processor.
QX_API unsigned QXGetNumWorkers(unsigned requested);

}  // namespace QXPlatform
