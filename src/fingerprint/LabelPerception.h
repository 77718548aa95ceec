#pragma once

namespace QXChem {
class QXMolBase;
}

namespace QXFingrix {

/// Perceives the properties that labels under these masks need and preparation does not give.
void PerceiveForLabels(QXChem::QXMolBase& mol, unsigned atype, unsigned btype);

}  // namespace QXFingrix
