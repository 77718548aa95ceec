#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXSystem {

/// One named constant.
struct QXNamespacePrim {
  std::string name;
  unsigned value;
  std::string description;
};

/// Whether the constants stand for themselves or are bits that combine.
enum class QXNamespaceKind { Enumeration, Mask };

/// A set of named constants, so that names and values convert both ways and can be shown in help texts.
/// Threads  read-only once made.
class QX_API QXNamespaceInterface {
 public:
  QXNamespaceInterface(std::string name, QXNamespaceKind kind, std::vector<QXNamespacePrim> entries);

  const std::string& GetNamespaceName() const { return name_; }
  const std::vector<QXNamespacePrim>& GetEntries() const { return entries_; }

  /// Enumeration: the name of the entry with this value. Mask: the names of the entries that make up the
  /// value, in entry order, joined by "|". `dflt` when no entry has the value, bits are left over, or a mask
  /// is 0.
  std::string GetName(unsigned value, const std::string& dflt) const;

  /// Enumeration: the value of the entry with this name. Mask: the union of the entries whose names the text
  /// joins by "|", in any order. `dflt` when the text, or any of its pieces, is empty or no entry's name.
  unsigned GetValue(const std::string& name, unsigned dflt) const;

  /// Whether GetValue() knows the text.
  bool IsValid(const std::string& name) const;

 private:
  const QXNamespacePrim* Find(std::string_view name) const;
  bool Parse(std::string_view text, unsigned& value) const;

  std::string name_;
  QXNamespaceKind kind_;
  std::vector<QXNamespacePrim> entries_;
};

}  // namespace QXSystem
