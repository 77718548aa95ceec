#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QXSystem/QXExport.h"

namespace QXSystem {

/// What the text of a value has to be.
enum class QXParameterType { Bool, Integer, Unsigned, Float, String };

/// The description of one parameter of an interface. A name is written with its dash, "-limit"; wherever a
/// name is looked up, "limit" and "--limit" mean the same.
class QX_API QXParameter {
 public:
  QXParameter(std::string name, QXParameterType type);

  /// A second, shorter name: "-l".
  QXParameter& SetAlias(std::string alias);
  /// The value of a parameter that the caller does not set, as text; without it there is none.
  QXParameter& SetDefault(std::string text);
  /// One line for the help text.
  QXParameter& SetBrief(std::string text);
  /// Further lines for the help text.
  QXParameter& SetDetail(std::string text);
  /// Values other than the legal ones are refused; without any, every value of the type is legal.
  QXParameter& AddLegalValue(std::string text);
  /// Numbers outside low to high, both included, are refused; an empty text leaves that side open.
  QXParameter& SetLegalRange(std::string low, std::string high);
  /// Lets the parameter be given without its name, as the position-th of such arguments, counted from 1.
  QXParameter& SetKeyless(unsigned position);
  /// A command line that leaves the parameter without a value is refused.
  QXParameter& SetRequired(bool isRequired);
  /// Whether the help text shows the parameter; at first it does.
  QXParameter& SetVisible(bool isVisible);

  const std::string& GetName() const { return name_; }
  const std::string& GetAlias() const { return alias_; }
  QXParameterType GetType() const { return type_; }
  bool HasDefault() const { return hasDefault_; }
  const std::string& GetDefault() const { return default_; }
  const std::string& GetBrief() const { return brief_; }
  const std::string& GetDetail() const { return detail_; }
  const std::vector<std::string>& GetLegalValues() const { return legalValues_; }
  /// Low and high; both empty when there is no range.
  const std::pair<std::string, std::string>& GetLegalRange() const { return legalRange_; }
  unsigned GetKeyless() const { return keyless_; }  ///< 0: cannot be given without its name
  bool IsRequired() const { return isRequired_; }
  bool IsVisible() const { return isVisible_; }

 private:
  std::string name_;
  std::string alias_;
  QXParameterType type_;
  std::string default_;
  std::string brief_;
  std::string detail_;
  std::vector<std::string> legalValues_;
  std::pair<std::string, std::string> legalRange_;
  unsigned keyless_ = 0;
  bool hasDefault_ = false;
  bool isRequired_ = false;
  bool isVisible_ = true;
};

/// A set of typed parameters with their values, some of them grouped in sub-interfaces. Lookups by name or
/// alias search the sub-interfaces too.
/// Errors   what is refused draws one warning that names the function, the parameter, the value and the
///          limit.
/// Threads  const methods may run at once on one object.
class QX_API QXInterface {
 public:
  QXInterface() = default;
  explicit QXInterface(std::string name, std::string brief = {});

  const std::string& GetName() const { return name_; }
  const std::string& GetBrief() const { return brief_; }

  /// False, with a warning, when the name, the alias or the position is taken here or in a sub-interface.
  bool AddParameter(const QXParameter& parameter);
  /// Adds a copy, values included. False, with a warning, when its name or one of its parameters is taken.
  bool AddInterface(const QXInterface& subInterface);

  /// The parameters of this interface itself, in the order in which they were added.
  std::vector<QXParameter> GetParameters() const;
  const std::vector<QXInterface>& GetInterfaces() const { return interfaces_; }

  bool Has(const std::string& name) const;
  /// Whether there is a value, set or default.
  bool HasValue(const std::string& name) const;
  /// Whether a value was set, be it equal to the default.
  bool IsSet(const std::string& name) const;
  /// The parameter of that name, null when there is none. Valid until the interface changes.
  const QXParameter* GetParameter(const std::string& name) const;
  /// The value as it was written, whatever its type; "" when there is none.
  std::string GetValueText(const std::string& name) const;

  /// Sets a value. False, with a warning and nothing changed, when the parameter is unknown or the text is
  /// not of its type or not legal.
  bool Set(const std::string& name, const std::string& valueText);

  /// Reads a value, set or default, into a bool, int, unsigned, float, double or std::string; Integer and
  /// Unsigned parameters may be read as int and unsigned where the value fits, Float ones as float and
  /// double.
  /// Errors   false with a warning and `out` untouched when the parameter is unknown, has no value, or is not
  ///          of that type: "QXInterface::Get, requested parameter %s is not of requested type".
  template <class T>
  bool Get(const std::string& name, T& out) const {
    return Read(name, out);
  }
  /// The same; T() after a warning.
  template <class T>
  T Get(const std::string& name) const {
    T value{};
    Read(name, value);
    return value;
  }

 private:
  struct Slot {
    QXParameter parameter;
    std::string value;
    bool isSet = false;
  };

  template <class Predicate>
  const Slot* FindIf(const Predicate& predicate) const;
  const Slot* Find(std::string_view name) const;
  const Slot* FindConflict(const QXParameter& parameter) const;
  const Slot* FindConflict(const QXInterface& other) const;
  template <class T>
  bool ReadAs(const std::string& name, T& out) const;
  bool Read(const std::string& name, bool& out) const;
  bool Read(const std::string& name, int& out) const;
  bool Read(const std::string& name, unsigned& out) const;
  bool Read(const std::string& name, float& out) const;
  bool Read(const std::string& name, double& out) const;
  bool Read(const std::string& name, std::string& out) const;

  std::string name_;
  std::string brief_;
  std::vector<Slot> slots_;
  std::vector<QXInterface> interfaces_;
};

/// How reading a command line ended; Help: the caller is to show the help text.
enum class QXParseResult { Ok, Help, Error };

/// Sets the parameters that a command line gives; argv[0] is skipped. An option is written `-name value`,
/// `--name value`, `-name=value` or `--name=value`, with its name or its alias; given twice, the last one
/// counts. A Bool option may stand alone, which sets it; a following "true" or "false" is its value. Other
/// arguments go to the keyless parameters, in the order of their positions. "--" ends the options; "-" and
/// negative numbers are never options. `-h`, `-help` and `--help`, where they are not names of parameters,
/// give Help at once.
/// Errors   a warning and Error, with the interface unchanged, for an unknown option (naming a similar one),
///          a missing or refused value, an argument too many, or a required parameter without a value.
QX_API QXParseResult QXParseCommandLine(QXInterface& itf, int argc, const char* const* argv);

/// The help text of an interface: the usage line, then every visible parameter with its names, type, brief,
/// default, legal values and detail, sub-interfaces under their names.
QX_API std::string QXGetInterfaceHelp(const QXInterface& itf, const std::string& usageLine);

}  // namespace QXSystem
