#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QXSystem/QXInterface.h"

namespace QXSystem {

/// "-limit" and "--limit" without their dashes.
std::string_view WithoutDashes(std::string_view name);

/// "true", "yes", "on", "1" and their opposites, in either case.
bool ParseBool(std::string_view text, bool& out);

/// "bool", "integer", ...
const char* GetTypeName(QXParameterType type);

/// Whether the text is a value of the parameter's type and legal; if not, the reason names the parameter, the
/// value and what it should have been.
bool CheckValue(const QXParameter& parameter, const std::string& text, std::string& reason);

/// The parameters of an interface and of all its sub-interfaces.
std::vector<QXParameter> CollectParameters(const QXInterface& itf);

std::string JoinTexts(const std::vector<std::string>& texts, std::string_view separator);

}  // namespace QXSystem
