#pragma once

#include <string>
#include <string_view>

namespace qxfp {

/// Sends the reports of the library and of the program to standard error, one line each
/// ("qxfp: warning: ...").
void InstallMessages();

/// Lets messages speak of a file by the name that the user knows where they hold the name that it has for
/// now. An empty name ends that.
void RenameInMessages(const std::string& name, const std::string& nameToShow);

/// A line at the bottom of a terminal that later messages do not break: it is taken away before a message and
/// drawn again after it. An empty text removes it. Meant for standard error on a terminal only.
void ShowStatusLine(std::string_view text);

}  // namespace qxfp
