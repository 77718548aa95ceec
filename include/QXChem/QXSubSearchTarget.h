#pragma once

#include <memory>

#include "QXChem/QXMolBase.h"
#include "QXSystem/QXExport.h"

namespace QXChem {

class Target;

/// What patterns ask of a molecule, taken once so that many patterns can be matched against it without
/// repeating the work: the properties of every atom packed into a word, the classes of the bonds, and which
/// elements and bonds there are at all.
/// It refers to the molecule, which has to stay as it is. A molecule whose rings, aromaticity or
/// hybridisation have not been perceived gets them on a copy.
/// Threads  matching against one target is safe from several threads.
/// Cost     about a microsecond for a drug-like molecule.
class QX_API QXSubSearchTarget {
 public:
  /// A target without a molecule, in which nothing is found.
  QXSubSearchTarget();
  explicit QXSubSearchTarget(const QXMolBase& mol);
  QXSubSearchTarget(QXSubSearchTarget&& other) noexcept;
  QXSubSearchTarget& operator=(QXSubSearchTarget&& other) noexcept;
  ~QXSubSearchTarget();

  /// Takes another molecule; buffers are kept. Ends what iterators on the target are good for.
  void Assign(const QXMolBase& mol);

 private:
  friend class QXSubSearch;

  std::unique_ptr<Target> target_;  // empty without a molecule
};

}  // namespace QXChem
