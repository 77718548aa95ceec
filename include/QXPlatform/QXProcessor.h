#pragma once

#include "QXSystem/QXExport.h"

namespace QXPlatform {

/// The number of processors that this process may run on; at least 1.
QX_API unsigned QXGetNumProcessors();

}  // namespace QXPlatform
