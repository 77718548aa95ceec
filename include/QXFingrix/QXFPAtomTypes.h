#pragma once

#include <string>

#include "QXFingrix/QXFPAtomLabels.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXNamespace.h"

namespace QXFingrix {

/// Atom properties that a graph fingerprint tells apart, as bits of a mask. Frozen: masks are stored in
/// files.
namespace QXFPAtomType {
inline constexpr unsigned None = 0;
inline constexpr unsigned AtmNum = 1;      ///< atomic number
inline constexpr unsigned Arom = 2;        ///< aromaticity
inline constexpr unsigned Chiral = 4;      ///< chirality
inline constexpr unsigned FCharge = 8;     ///< formal charge
inline constexpr unsigned HvyDeg = 16;     ///< heavy-atom degree
inline constexpr unsigned Hyb = 32;        ///< hybridisation
inline constexpr unsigned InRing = 64;     ///< ring membership
inline constexpr unsigned EqHalo = 128;    ///< halogen atoms are equal
inline constexpr unsigned EqArom = 256;    ///< aromatic atoms are equal
inline constexpr unsigned EqHBAcc = 512;   ///< hydrogen bond acceptor atoms are equal
inline constexpr unsigned EqHBDon = 1024;  ///< hydrogen bond donor atoms are equal
inline constexpr unsigned HCount = 4096;   ///< hydrogen count

inline constexpr unsigned DefaultAtom = AtmNum | Arom | Chiral | FCharge | HvyDeg | Hyb | EqHalo;  // 191
inline constexpr unsigned DefaultPathAtom = DefaultAtom;
inline constexpr unsigned DefaultCircularAtom = AtmNum | Arom | Chiral | FCharge | EqHalo | HCount;  // 4239
inline constexpr unsigned DefaultTreeAtom = AtmNum | Arom | Chiral | FCharge | HvyDeg | Hyb;         // 63
}  // namespace QXFPAtomType

/// Bond properties that a graph fingerprint tells apart, as bits of a mask. Frozen: masks are stored in
/// files.
namespace QXFPBondType {
inline constexpr unsigned None = 0;
inline constexpr unsigned Order = 1;   ///< bond order, aromatic being one of its own
inline constexpr unsigned Chiral = 2;  ///< bond chirality
inline constexpr unsigned InRing = 4;  ///< ring membership

inline constexpr unsigned DefaultBond = Order | Chiral;  // 3
inline constexpr unsigned DefaultPathBond = DefaultBond;
inline constexpr unsigned DefaultCircularBond = Order;
inline constexpr unsigned DefaultTreeBond = Order;
}  // namespace QXFPBondType

/// The entries of QXFPAtomType by name, with descriptions.
class QX_API QXFPAtomTypeInterface : public QXSystem::QXNamespaceInterface {
 public:
  QXFPAtomTypeInterface();
};

/// The entries of QXFPBondType by name, with descriptions.
class QX_API QXFPBondTypeInterface : public QXSystem::QXNamespaceInterface {
 public:
  QXFPBondTypeInterface();
};

/// @name The one namespace object of each kind, built on first use
/// @{
QX_API const QXSystem::QXNamespaceInterface& QXGetFPAtomTypeNamespaceInterface();
QX_API const QXSystem::QXNamespaceInterface& QXGetFPBondTypeNamespaceInterface();
/// @}

/// @name Masks to text
/// "None" for 0, else the names of the set bits joined by "|"; "invalid" for a mask with a bit that has no
/// name.
/// @{
QX_API std::string QXGetFPAtomType(unsigned mask);
QX_API std::string QXGetFPBondType(unsigned mask);
/// @}

/// @name Text to masks
/// Reads "None", the names of the defaults ("DefaultAtom", "DefaultPathAtom", "DefaultCircularAtom",
/// "DefaultTreeAtom"; "DefaultBond" and so on), and names joined by "|" in any order.
/// Errors   0 for a text that holds an unknown name, silently; QXIsValid... tells it from "None".
/// @{
QX_API unsigned QXGetFPAtomType(const std::string& name);
QX_API unsigned QXGetFPBondType(const std::string& name);
QX_API bool QXIsValidFPAtomType(const std::string& name);
QX_API bool QXIsValidFPBondType(const std::string& name);
/// @}

}  // namespace QXFingrix
