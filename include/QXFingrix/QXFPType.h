#pragma once

#include <cstdint>
#include <string>

#include "QXFingrix/QXFPTypeBase.h"
#include "QXSystem/QXExport.h"
#include "QXSystem/QXNamespace.h"

namespace QXFingrix {

/// Descriptor of a kind that has a version and no parameters.
template <unsigned Code>
class QXFPPlainType final : public QXFPTypeBase {
 public:
  static constexpr unsigned TypeCode = Code;

  unsigned GetFPType() const override;
  std::string GetFPTypeString() const override;
  unsigned short GetVersion() const { return version_; }

 private:
  template <class, class...>
  friend class QXFPTypeCache;
  explicit QXFPPlainType(unsigned short version) : version_(version) {}

  unsigned short version_;
};

/// Descriptor of a graph fingerprint that keeps its subgraphs as text: distances, atom and bond typing.
template <unsigned Code>
class QXFPUnhashedType final : public QXFPTypeBase {
 public:
  static constexpr unsigned TypeCode = Code;

  unsigned GetFPType() const override;
  std::string GetFPTypeString() const override;
  unsigned short GetVersion() const { return version_; }
  /// The packed parameters, as of QXFPHashedType with bits 40-63 zero.
  std::uint64_t GetID() const { return id_; }

 private:
  template <class, class...>
  friend class QXFPTypeCache;
  QXFPUnhashedType(unsigned short version, std::uint64_t id) : version_(version), id_(id) {}

  unsigned short version_;
  std::uint64_t id_;
};

/// Descriptor of a graph fingerprint that hashes its subgraphs into a fixed number of bits.
template <unsigned Code>
class QXFPHashedType final : public QXFPTypeBase {
 public:
  static constexpr unsigned TypeCode = Code;

  unsigned GetFPType() const override;
  std::string GetFPTypeString() const override;
  unsigned short GetVersion() const { return version_; }
  /// The packed parameters: bits 0-7 maximum distance, 8-15 minimum distance, 16-23 bond type mask, 24-39
  /// atom type mask, 44-59 number of bits, the others reserved and zero. Frozen: the identifier is stored in
  /// files.
  std::uint64_t GetID() const { return id_; }

  /// Unpacks an identifier.
  /// Errors   reserved bits that are set draw the Warning "Unrecognised data in QXFPPathType!" (respectively
  ///          QXFPCircularType, QXFPTreeType); the fields are unpacked all the same.
  static void SetParamsFromID(std::uint64_t id, unsigned& numbits, unsigned& minDistance,
                              unsigned& maxDistance, unsigned& atype, unsigned& btype);

 private:
  template <class, class...>
  friend class QXFPTypeCache;
  QXFPHashedType(unsigned short version, std::uint64_t id) : version_(version), id_(id) {}

  unsigned short version_;
  std::uint64_t id_;
};

/// @name Descriptor classes of the eight kinds
/// @{
using QXFPMACCS166Type = QXFPPlainType<QXFPType::MACCS166>;
using QXFPLingoType = QXFPPlainType<QXFPType::Lingo>;
using QXFPPathType = QXFPHashedType<QXFPType::Path>;
using QXFPCircularType = QXFPHashedType<QXFPType::Circular>;
using QXFPTreeType = QXFPHashedType<QXFPType::Tree>;
using QXFPUnhashedPathType = QXFPUnhashedType<QXFPType::UHPath>;
using QXFPUnhashedCircularType = QXFPUnhashedType<QXFPType::UHCircular>;
using QXFPUnhashedTreeType = QXFPUnhashedType<QXFPType::UHTree>;
/// @}

extern template class QX_API QXFPPlainType<QXFPType::MACCS166>;
extern template class QX_API QXFPPlainType<QXFPType::Lingo>;
extern template class QX_API QXFPHashedType<QXFPType::Path>;
extern template class QX_API QXFPHashedType<QXFPType::Circular>;
extern template class QX_API QXFPHashedType<QXFPType::Tree>;
extern template class QX_API QXFPUnhashedType<QXFPType::UHPath>;
extern template class QX_API QXFPUnhashedType<QXFPType::UHCircular>;
extern template class QX_API QXFPUnhashedType<QXFPType::UHTree>;

/// @name Descriptor lookup
/// The shared descriptor of a version and parameters; distances are bonds (path, tree) or radii (circular),
/// atype and btype masks of QXFPAtomTypes.h. Without a version the current one of the kind is used.
///
/// The parameters are packed by plain addition and not checked: a number that is too wide for its field (16
/// bits for numbits and atype, 8 for the others) spills into the next one.
/// Errors   none; never null.
/// Threads  safe, also on concurrent first use: the same arguments give the same pointer.
/// Cost     a lock and a lookup among the descriptors of the kind.
/// @{
QX_API const QXFPTypeBase* QXGetPathFPType(unsigned short version, unsigned numbits, unsigned minbonds,
                                           unsigned maxbonds, unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetPathFPType(unsigned numbits, unsigned minbonds, unsigned maxbonds,
                                           unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetCircularFPType(unsigned short version, unsigned numbits, unsigned minradius,
                                               unsigned maxradius, unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetCircularFPType(unsigned numbits, unsigned minradius, unsigned maxradius,
                                               unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetTreeFPType(unsigned short version, unsigned numbits, unsigned minbonds,
                                           unsigned maxbonds, unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetTreeFPType(unsigned numbits, unsigned minbonds, unsigned maxbonds,
                                           unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetUnhashedPathFPType(unsigned short version, unsigned minbonds,
                                                   unsigned maxbonds, unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetUnhashedCircularFPType(unsigned short version, unsigned minradius,
                                                       unsigned maxradius, unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetUnhashedTreeFPType(unsigned short version, unsigned minbonds,
                                                   unsigned maxbonds, unsigned atype, unsigned btype);
QX_API const QXFPTypeBase* QXGetMACCS166FPType(unsigned short version);
QX_API const QXFPTypeBase* QXGetLingoFPType(unsigned short version);
/// @}

/// @name The type word that a type string of the kind holds
/// @{
QX_API std::string QXGetMACCS166FPStringPrefix();          ///< "MACCS166"
QX_API std::string QXGetLingoFPStringPrefix();             ///< "Lingo"
QX_API std::string QXGetPathFPStringPrefix();              ///< "Path"
QX_API std::string QXGetCircularFPStringPrefix();          ///< "Circular"
QX_API std::string QXGetTreeFPStringPrefix();              ///< "Tree"
QX_API std::string QXGetUnhashedPathFPStringPrefix();      ///< "UHPath"
QX_API std::string QXGetUnhashedCircularFPStringPrefix();  ///< "UHCircular"
QX_API std::string QXGetUnhashedTreeFPStringPrefix();      ///< "UHTree"
/// @}

/// The kinds that a command line may choose: "Path", "Circular" and "Tree".
class QX_API QXFPTypeInterface : public QXSystem::QXNamespaceInterface {
 public:
  QXFPTypeInterface();
};

/// The one QXFPTypeInterface of the process, built on first use.
QX_API const QXSystem::QXNamespaceInterface& QXGetFPTypeNamespaceInterface();

}  // namespace QXFingrix
