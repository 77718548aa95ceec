#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "QXSystem/QXInterface.h"
#include "QXSystem/QXString.h"
#include "system/ParameterText.h"

namespace QXSystem {

namespace {

void AddLine(std::string& text, std::string_view line) {
  if (line.empty()) return;
  text += "      ";
  text += line;
  text += '\n';
}

std::string DescribeNames(const QXParameter& parameter) {
  std::string text = parameter.GetName();
  if (!parameter.GetAlias().empty()) text += ", " + parameter.GetAlias();
  text += std::string(" <") + GetTypeName(parameter.GetType()) + ">";
  if (parameter.GetKeyless() != 0) text += ", argument " + std::to_string(parameter.GetKeyless());
  if (parameter.IsRequired()) text += ", required";
  return text;
}

std::string DescribeLegal(const QXParameter& parameter) {
  if (!parameter.GetLegalValues().empty()) return "Values: " + JoinTexts(parameter.GetLegalValues(), ", ");
  const auto& [low, high] = parameter.GetLegalRange();
  if (low.empty() && high.empty()) return {};
  if (high.empty()) return "Values: at least " + low;
  return low.empty() ? "Values: at most " + high : "Values: " + low + " to " + high;
}

void AddParameterHelp(std::string& text, const QXParameter& parameter) {
  text += "  " + DescribeNames(parameter) + '\n';
  AddLine(text, parameter.GetBrief());
  if (parameter.HasDefault()) AddLine(text, "Default: " + parameter.GetDefault());
  AddLine(text, DescribeLegal(parameter));
  std::vector<std::string> lines;
  QXStringTokenize(lines, parameter.GetDetail(), "\n", true);
  for (const std::string& line : lines) {
    AddLine(text, std::string_view(line).substr(std::min(line.find_first_not_of(" \t"), line.size())));
  }
}

void AddInterfaceHelp(std::string& text, const QXInterface& itf, const std::string& heading) {
  bool hasHeading = false;
  for (const QXParameter& parameter : itf.GetParameters()) {
    if (!parameter.IsVisible()) continue;
    if (!hasHeading) text += '\n' + heading + ":\n";
    hasHeading = true;
    AddParameterHelp(text, parameter);
  }
  for (const QXInterface& subInterface : itf.GetInterfaces()) {
    AddInterfaceHelp(text, subInterface, subInterface.GetName());
  }
}

}  // namespace

std::string QXGetInterfaceHelp(const QXInterface& itf, const std::string& usageLine) {
  std::string text = usageLine + '\n';
  if (!itf.GetBrief().empty()) text += itf.GetBrief() + '\n';
  AddInterfaceHelp(text, itf, "Parameters");
  return text;
}

}  // namespace QXSystem
