#include "system/ParameterText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "QXSystem/QXString.h"

namespace QXSystem {

namespace {

bool IsOfType(const std::string& text, QXParameterType type) {
  switch (type) {
    case QXParameterType::Bool: {
      bool value;
      return ParseBool(text, value);
    }
    case QXParameterType::Integer: {
      int value;
      return QXStringToNumber(text, value);
    }
    case QXParameterType::Unsigned: {
      unsigned value;
      return QXStringToNumber(text, value);
    }
    case QXParameterType::Float: {
      float value;
      return QXStringToNumber(text, value);
    }
    case QXParameterType::String:
      return true;
  }
  return false;
}

// A limit that is empty, or no number, is none.
bool IsInRange(const std::string& text, const std::pair<std::string, std::string>& range) {
  double value;
  double limit;
  if (!QXStringToNumber(text, value)) return true;
  if (QXStringToNumber(range.first, limit) && value < limit) return false;
  return !QXStringToNumber(range.second, limit) || value <= limit;
}

std::string DescribeRange(const std::pair<std::string, std::string>& range) {
  if (range.first.empty()) return "at most " + range.second;
  if (range.second.empty()) return "at least " + range.first;
  return "in the range " + range.first + " to " + range.second;
}

}  // namespace

std::string_view WithoutDashes(std::string_view name) {
  for (int i = 0; i < 2 && name.starts_with('-'); ++i) name.remove_prefix(1);
  return name;
}

bool ParseBool(std::string_view text, bool& out) {
  struct Word {
    std::string_view text;
    bool value;
  };
  static constexpr std::array<Word, 8> words = {{{"true", true},
                                                 {"false", false},
                                                 {"yes", true},
                                                 {"no", false},
                                                 {"on", true},
                                                 {"off", false},
                                                 {"1", true},
                                                 {"0", false}}};
  const auto isSameLetter = [](unsigned char a, unsigned char b) { return std::tolower(a) == b; };
  const auto word = std::ranges::find_if(
      words, [&](const Word& candidate) { return std::ranges::equal(text, candidate.text, isSameLetter); });
  if (word == words.end()) return false;
  out = word->value;
  return true;
}

const char* GetTypeName(QXParameterType type) {
  static constexpr std::array<const char*, 5> names = {"bool", "integer", "unsigned", "float", "string"};
  return names[static_cast<std::size_t>(type)];
}

bool CheckValue(const QXParameter& parameter, const std::string& text, std::string& reason) {
  const std::string subject = "value '" + text + "' of parameter " + parameter.GetName() + " is not ";
  if (!IsOfType(text, parameter.GetType())) {
    reason = subject + "of type " + GetTypeName(parameter.GetType());
    return false;
  }
  const std::vector<std::string>& legal = parameter.GetLegalValues();
  if (!legal.empty() && std::ranges::find(legal, text) == legal.end()) {
    reason = subject + "one of " + JoinTexts(legal, ", ");
    return false;
  }
  if (!IsInRange(text, parameter.GetLegalRange())) {
    reason = subject + DescribeRange(parameter.GetLegalRange());
    return false;
  }
  return true;
}

std::vector<QXParameter> CollectParameters(const QXInterface& itf) {
  std::vector<QXParameter> parameters = itf.GetParameters();
  for (const QXInterface& subInterface : itf.GetInterfaces()) {
    const std::vector<QXParameter> more = CollectParameters(subInterface);
    parameters.insert(parameters.end(), more.begin(), more.end());
  }
  return parameters;
}

std::string JoinTexts(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += separator;
    joined += text;
  }
  return joined;
}

}  // namespace QXSystem
