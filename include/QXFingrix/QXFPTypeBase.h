#pragma once

#include <string>

#include "QXSystem/QXExport.h"

namespace QXFingrix {

/// Numeric codes of the fingerprint kinds. Frozen: they are stored in files.
namespace QXFPType {
inline constexpr unsigned None = 0;
inline constexpr unsigned MACCS166 = 101;
inline constexpr unsigned Path = 102;
inline constexpr unsigned Lingo = 103;
inline constexpr unsigned Circular = 104;
inline constexpr unsigned Tree = 105;
inline constexpr unsigned UHPath = 9000;
inline constexpr unsigned UHCircular = 9001;
inline constexpr unsigned UHTree = 9002;
}  // namespace QXFPType

/// Says which generator made a fingerprint and with which parameters.
///
/// Descriptors are immutable, come from process-wide caches (QXGetPathFPType and its siblings, QXGetFPType)
/// and live until the library is unloaded. Equal parameters always give the same pointer, so descriptors are
/// compared by identity. Never delete one.
/// Threads  read-only: any number of threads may share one.
class QX_API QXFPTypeBase {
 public:
  QXFPTypeBase() = default;
  QXFPTypeBase(const QXFPTypeBase&) = delete;
  QXFPTypeBase& operator=(const QXFPTypeBase&) = delete;
  virtual ~QXFPTypeBase();

  /// The numeric code of the kind, see namespace QXFPType.
  virtual unsigned GetFPType() const = 0;

  /// The canonical type string, e.g. "Tree,ver=2.0.0,size=1024,bonds=0-4,atype=AtmNum|Arom,btype=Order".
  virtual std::string GetFPTypeString() const = 0;
};

}  // namespace QXFingrix
