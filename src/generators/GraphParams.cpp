#include "generators/PathParams.h"

#include "QXFingrix/QXFPTypeBase.h"
#include "QXSystem/QXErrorHandler.h"
#include "fingerprint/TypeTable.h"

namespace QXFingrix {

using QXSystem::QXThrow;

TypeParams CorrectPathParams(const char* caller, TypeParams params) {
  constexpr unsigned bondLimit = 20;
  const TypeParams& defaults = FindTypeRow(QXFPType::Path)->defaults;
  if (params.minDistance > bondLimit) {
    QXThrow.Warning("%s : invalid min bonds %d for path fingerprint (default %d is used)!", caller,
                    params.minDistance, defaults.minDistance);
    params.minDistance = defaults.minDistance;
  }
  if (params.maxDistance > bondLimit) {
    QXThrow.Warning("%s : invalid max bonds %d for path fingerprint (default %d is used)!", caller,
                    params.maxDistance, defaults.maxDistance);
    params.maxDistance = defaults.maxDistance;
  }
  if (params.maxDistance < params.minDistance) {
    QXThrow.Warning(
        "%s : invalid min bonds %d > max bonds %d for path fingerprint (minbonds = maxbonds is used)!",
        caller, params.minDistance, params.maxDistance);
    params.minDistance = params.maxDistance;
  }
  if (params.atype == 0 && params.btype == 0) {
    QXThrow.Warning("%s : invalid to have both atom and bond types set to be None (default types are used)!",
                    caller);
    params.atype = defaults.atype;
    params.btype = defaults.btype;
  }
  return params;
}

}  // namespace QXFingrix
