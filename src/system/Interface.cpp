#include "QXSystem/QXInterface.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXString.h"
#include "system/ParameterText.h"

namespace QXSystem {

namespace {

bool IsNamed(const QXParameter& parameter, std::string_view key) {
  return !key.empty() &&
         (WithoutDashes(parameter.GetName()) == key || WithoutDashes(parameter.GetAlias()) == key);
}

// Which C++ types a parameter type can be read into. A default need not fit its own parameter type: an
// Integer may have a default that only an unsigned holds.
template <class T>
bool IsReadableAs(QXParameterType type) {
  using enum QXParameterType;
  if constexpr (std::is_same_v<T, bool>) return type == Bool;
  if constexpr (std::is_same_v<T, std::string>) return type == String;
  if constexpr (std::is_floating_point_v<T>) return type == Float;
  return type == Integer || type == Unsigned;
}

bool Convert(const std::string& text, bool& out) {
  return ParseBool(text, out);
}

bool Convert(const std::string& text, std::string& out) {
  out = text;
  return true;
}

template <class Number>
bool Convert(const std::string& text, Number& out) {
  return QXStringToNumber(text, out);
}

}  // namespace

QXInterface::QXInterface(std::string name, std::string brief)
    : name_(std::move(name)), brief_(std::move(brief)) {}

template <class Predicate>
const QXInterface::Slot* QXInterface::FindIf(const Predicate& predicate) const {
  const auto slot = std::ranges::find_if(slots_, predicate);
  if (slot != slots_.end()) return &*slot;
  for (const QXInterface& subInterface : interfaces_) {
    if (const Slot* found = subInterface.FindIf(predicate)) return found;
  }
  return nullptr;
}

const QXInterface::Slot* QXInterface::Find(std::string_view name) const {
  return FindIf([key = WithoutDashes(name)](const Slot& slot) { return IsNamed(slot.parameter, key); });
}

// The slot that has the parameter's name, alias or position already.
const QXInterface::Slot* QXInterface::FindConflict(const QXParameter& parameter) const {
  return FindIf([&parameter](const Slot& slot) {
    return IsNamed(slot.parameter, WithoutDashes(parameter.GetName())) ||
           IsNamed(slot.parameter, WithoutDashes(parameter.GetAlias())) ||
           (parameter.GetKeyless() != 0 && parameter.GetKeyless() == slot.parameter.GetKeyless());
  });
}

// The slot of `other` that cannot be added here.
const QXInterface::Slot* QXInterface::FindConflict(const QXInterface& other) const {
  return other.FindIf([this](const Slot& slot) { return FindConflict(slot.parameter) != nullptr; });
}

bool QXInterface::AddParameter(const QXParameter& parameter) {
  if (WithoutDashes(parameter.GetName()).empty()) {
    QXThrow.Warning("QXInterface::AddParameter, parameter '%s' has no name", parameter.GetName().c_str());
    return false;
  }
  if (const Slot* taken = FindConflict(parameter)) {
    QXThrow.Warning("QXInterface::AddParameter, the name, alias or position of parameter %s is that of %s",
                    parameter.GetName().c_str(), taken->parameter.GetName().c_str());
    return false;
  }
  slots_.push_back({parameter, {}, false});
  return true;
}

bool QXInterface::AddInterface(const QXInterface& subInterface) {
  if (std::ranges::find(interfaces_, subInterface.name_, &QXInterface::name_) != interfaces_.end()) {
    QXThrow.Warning("QXInterface::AddInterface, there is an interface '%s' already",
                    subInterface.name_.c_str());
    return false;
  }
  if (const Slot* conflict = FindConflict(subInterface)) {
    QXThrow.Warning("QXInterface::AddInterface, the name, alias or position of parameter %s of '%s' is taken",
                    conflict->parameter.GetName().c_str(), subInterface.name_.c_str());
    return false;
  }
  interfaces_.push_back(QXInterface(subInterface));  // a copy first, in case it is our own element
  return true;
}

std::vector<QXParameter> QXInterface::GetParameters() const {
  std::vector<QXParameter> parameters;
  for (const Slot& slot : slots_) parameters.push_back(slot.parameter);
  return parameters;
}

bool QXInterface::Has(const std::string& name) const {
  return Find(name) != nullptr;
}

bool QXInterface::HasValue(const std::string& name) const {
  const Slot* slot = Find(name);
  return slot && (slot->isSet || slot->parameter.HasDefault());
}

bool QXInterface::IsSet(const std::string& name) const {
  const Slot* slot = Find(name);
  return slot && slot->isSet;
}

const QXParameter* QXInterface::GetParameter(const std::string& name) const {
  const Slot* slot = Find(name);
  return slot ? &slot->parameter : nullptr;
}

std::string QXInterface::GetValueText(const std::string& name) const {
  const Slot* slot = Find(name);
  if (!slot) return {};
  return slot->isSet ? slot->value : slot->parameter.GetDefault();
}

bool QXInterface::Set(const std::string& name, const std::string& valueText) {
  const Slot* found = Find(name);
  if (!found) {
    QXThrow.Warning("QXInterface::Set, unknown parameter %s for value '%s'", name.c_str(), valueText.c_str());
    return false;
  }
  std::string reason;
  if (!CheckValue(found->parameter, valueText, reason)) {
    QXThrow.Warning("QXInterface::Set, %s", reason.c_str());
    return false;
  }
  Slot& slot = const_cast<Slot&>(*found);  // it is ours, or a sub-interface's, and so as mutable as we are
  slot.value = valueText;
  slot.isSet = true;
  return true;
}

template <class T>
bool QXInterface::ReadAs(const std::string& name, T& out) const {
  const Slot* slot = Find(name);
  if (!slot) {
    QXThrow.Warning("QXInterface::Get, unknown parameter %s", name.c_str());
    return false;
  }
  if (!slot->isSet && !slot->parameter.HasDefault()) {
    QXThrow.Warning("QXInterface::Get, requested parameter %s has no value", name.c_str());
    return false;
  }
  const std::string& text = slot->isSet ? slot->value : slot->parameter.GetDefault();
  if (!IsReadableAs<T>(slot->parameter.GetType()) || !Convert(text, out)) {
    QXThrow.Warning("QXInterface::Get, requested parameter %s is not of requested type", name.c_str());
    return false;
  }
  return true;
}

bool QXInterface::Read(const std::string& name, bool& out) const {
  return ReadAs(name, out);
}
bool QXInterface::Read(const std::string& name, int& out) const {
  return ReadAs(name, out);
}
bool QXInterface::Read(const std::string& name, unsigned& out) const {
  return ReadAs(name, out);
}
bool QXInterface::Read(const std::string& name, float& out) const {
  return ReadAs(name, out);
}
bool QXInterface::Read(const std::string& name, double& out) const {
  return ReadAs(name, out);
}
bool QXInterface::Read(const std::string& name, std::string& out) const {
  return ReadAs(name, out);
}

}  // namespace QXSystem
