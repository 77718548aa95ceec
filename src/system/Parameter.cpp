#include <utility>

#include "QXSystem/QXInterface.h"

namespace QXSystem {

QXParameter::QXParameter(std::string name, QXParameterType type) : name_(std::move(name)), type_(type) {}

QXParameter& QXParameter::SetAlias(std::string alias) {
  alias_ = std::move(alias);
  return *this;
}

QXParameter& QXParameter::SetDefault(std::string text) {
  default_ = std::move(text);
  hasDefault_ = true;
  return *this;
}

QXParameter& QXParameter::SetBrief(std::string text) {
  brief_ = std::move(text);
  return *this;
}

QXParameter& QXParameter::SetDetail(std::string text) {
  detail_ = std::move(text);
  return *this;
}

QXParameter& QXParameter::AddLegalValue(std::string text) {
  legalValues_.push_back(std::move(text));
  return *this;
}

QXParameter& QXParameter::SetLegalRange(std::string low, std::string high) {
  legalRange_ = {std::move(low), std::move(high)};
  return *this;
}

QXParameter& QXParameter::SetKeyless(unsigned position) {
  keyless_ = position;
  return *this;
}

QXParameter& QXParameter::SetRequired(bool isRequired) {
  isRequired_ = isRequired;
  return *this;
}

QXParameter& QXParameter::SetVisible(bool isVisible) {
  isVisible_ = isVisible;
  return *this;
}

}  // namespace QXSystem
