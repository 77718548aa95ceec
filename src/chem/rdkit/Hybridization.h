#pragma once

#include <RDGeneral/RDConfig.h>

#include <GraphMol/Atom.h>

namespace QXChem {

/// The codes of QXAtomBase::GetHyb() from 1 to 5; 0 for what has none.
inline unsigned ToHybridizationCode(int type) {
  switch (type) {
    case RDKit::Atom::SP:
      return 1;
    case RDKit::Atom::SP2:
      return 2;
    case RDKit::Atom::SP3:
      return 3;
    case RDKit::Atom::SP3D:
      return 4;
    case RDKit::Atom::SP3D2:
      return 5;
    default:
      return 0;
  }
}

}  // namespace QXChem
