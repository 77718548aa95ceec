#include "QXSystem/QXNamespace.h"

#include <algorithm>
#include <utility>

namespace QXSystem {

QXNamespaceInterface::QXNamespaceInterface(std::string name, QXNamespaceKind kind,
                                           std::vector<QXNamespacePrim> entries)
    : name_(std::move(name)), kind_(kind), entries_(std::move(entries)) {}

std::string QXNamespaceInterface::GetName(unsigned value, const std::string& dflt) const {
  if (kind_ == QXNamespaceKind::Enumeration) {
    const auto entry = std::ranges::find(entries_, value, &QXNamespacePrim::value);
    return entry == entries_.end() ? dflt : entry->name;
  }
  std::string names;
  unsigned left = value;
  for (const QXNamespacePrim& entry : entries_) {
    if ((left & entry.value) == 0 || (value & entry.value) != entry.value) continue;
    if (!names.empty()) names += '|';
    names += entry.name;
    left &= ~entry.value;
  }
  return names.empty() || left != 0 ? dflt : names;
}

unsigned QXNamespaceInterface::GetValue(const std::string& name, unsigned dflt) const {
  unsigned value = 0;
  return Parse(name, value) ? value : dflt;
}

bool QXNamespaceInterface::IsValid(const std::string& name) const {
  unsigned value = 0;
  return Parse(name, value);
}

const QXNamespacePrim* QXNamespaceInterface::Find(std::string_view name) const {
  const auto entry = std::ranges::find(entries_, name, &QXNamespacePrim::name);
  return entry == entries_.end() ? nullptr : &*entry;
}

bool QXNamespaceInterface::Parse(std::string_view text, unsigned& value) const {
  value = 0;
  std::size_t end = 0;
  do {
    end = kind_ == QXNamespaceKind::Mask ? text.find('|') : std::string_view::npos;
    const QXNamespacePrim* entry = Find(text.substr(0, end));
    if (!entry) return false;
    value |= entry->value;
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  } while (end != std::string_view::npos);
  return true;
}

}  // namespace QXSystem
