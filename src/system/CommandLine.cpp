#include <algorithm>
#include <iterator>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "QXSystem/QXErrorHandler.h"
#include "QXSystem/QXInterface.h"
#include "QXSystem/QXString.h"
#include "system/ParameterText.h"

namespace QXSystem {

namespace {

// Levenshtein's distance: the least number of letters to insert, drop or replace.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

// The parameter whose name is a few typing errors away, "" when none is.
std::string FindSimilarName(const std::vector<QXParameter>& parameters, std::string_view key) {
  std::string similar;
  std::size_t least = key.size() / 3 + 2;
  for (const QXParameter& parameter : parameters) {
    const std::string_view name = WithoutDashes(parameter.GetName());
    const std::size_t distance = name.starts_with(key) ? 1 : EditDistance(key, name);
    if (parameter.IsVisible() && distance < least && distance < name.size()) {
      least = distance;
      similar = parameter.GetName();
    }
  }
  return similar;
}

// One reading of a command line, into a copy of the interface.
class CommandLineReader {
 public:
  CommandLineReader(const QXInterface& itf, std::vector<std::string> arguments)
      : itf_(itf), parameters_(CollectParameters(itf)), arguments_(std::move(arguments)) {}

  QXParseResult Read() {
    while (next_ < arguments_.size()) {
      const std::string& argument = arguments_[next_++];
      if (!areOptionsOver_ && argument == "--") {
        areOptionsOver_ = true;
      } else if (!IsOption(argument)) {
        positionals_.push_back(argument);
      } else if (const QXParseResult result = ReadOption(argument); result != QXParseResult::Ok) {
        return result;
      }
    }
    return AssignPositionals() && CheckRequired() ? QXParseResult::Ok : QXParseResult::Error;
  }

  QXInterface TakeInterface() { return std::move(itf_); }
  const std::string& GetReason() const { return reason_; }

 private:
  bool IsOption(const std::string& argument) const {
    if (areOptionsOver_ || argument.size() < 2 || argument[0] != '-') return false;
    double number;
    return !QXStringToNumber(argument, number) || itf_.Has(argument);
  }

  bool Fail(std::string reason) {
    reason_ = std::move(reason);
    return false;
  }

  QXParseResult ReadOption(const std::string& argument) {
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const QXParameter* parameter = itf_.GetParameter(name);
    if (!parameter) {
      const std::string_view key = WithoutDashes(name);
      if (key == "h" || key == "help") return QXParseResult::Help;
      const std::string similar = FindSimilarName(parameters_, key);
      Fail("unknown option " + name + (similar.empty() ? "" : ", did you mean " + similar + "?"));
      return QXParseResult::Error;
    }
    std::string value;
    if (equals != std::string::npos) {
      value = argument.substr(equals + 1);
    } else if (!FindValue(*parameter, value)) {
      return QXParseResult::Error;
    }
    return Set(*parameter, value) ? QXParseResult::Ok : QXParseResult::Error;
  }

  // The value of an option that is written as an argument of its own.
  bool FindValue(const QXParameter& parameter, std::string& value) {
    const std::string following = next_ < arguments_.size() ? arguments_[next_] : std::string();
    if (parameter.GetType() == QXParameterType::Bool) {
      const bool isValue = following == "true" || following == "false";
      value = isValue ? following : "true";
      if (isValue) ++next_;
      return true;
    }
    if (next_ == arguments_.size() || IsOption(following)) {
      return Fail("parameter " + parameter.GetName() + " needs a value of type " +
                  GetTypeName(parameter.GetType()));
    }
    value = following;
    ++next_;
    return true;
  }

  bool Set(const QXParameter& parameter, const std::string& value) {
    std::string reason;
    if (!CheckValue(parameter, value, reason)) return Fail(reason);
    given_.push_back(parameter.GetName());
    return itf_.Set(parameter.GetName(), value);
  }

  // Done last, so that a keyless parameter given by its name, be it late, takes no positional argument.
  bool AssignPositionals() {
    std::vector<QXParameter> keyless;
    std::ranges::copy_if(parameters_, std::back_inserter(keyless), [this](const QXParameter& parameter) {
      return parameter.GetKeyless() != 0 && std::ranges::find(given_, parameter.GetName()) == given_.end();
    });
    std::ranges::sort(keyless, {}, &QXParameter::GetKeyless);
    if (positionals_.size() > keyless.size()) {
      return Fail("unexpected argument '" + positionals_[keyless.size()] + "'");
    }
    for (std::size_t i = 0; i < positionals_.size(); ++i) {
      if (!Set(keyless[i], positionals_[i])) return false;
    }
    return true;
  }

  bool CheckRequired() {
    const auto missing = std::ranges::find_if(parameters_, [this](const QXParameter& parameter) {
      return parameter.IsRequired() && !itf_.HasValue(parameter.GetName());
    });
    return missing == parameters_.end() || Fail("parameter " + missing->GetName() + " is required");
  }

  QXInterface itf_;
  std::vector<QXParameter> parameters_;
  std::vector<std::string> arguments_;
  std::vector<std::string> positionals_;
  std::vector<std::string> given_;
  std::string reason_;
  std::size_t next_ = 0;
  bool areOptionsOver_ = false;
};

}  // namespace

QXParseResult QXParseCommandLine(QXInterface& itf, int argc, const char* const* argv) {
  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) arguments.emplace_back(argv[i]);
  CommandLineReader reader(itf, std::move(arguments));
  const QXParseResult result = reader.Read();
  if (result == QXParseResult::Ok) itf = reader.TakeInterface();
  if (result == QXParseResult::Error) QXThrow.Warning("QXParseCommandLine, %s", reader.GetReason().c_str());
  return result;
}

}  // namespace QXSystem
