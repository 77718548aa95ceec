#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace QXSystem {
class QXErrorCollector;
}

namespace qxfp {

/// Sends the reports of the library and of the program to standard error, one line each
/// ("qxfp: warning: ...").
void InstallMessages();

/// Lets messages speak of a file by the name that the user knows where they hold the name that it has for
/// now. An empty name ends that.
void RenameInMessages(const std::string& name, const std::string& nameToShow);

/// Does some work, passes its reports on when it is done, and tells whether none of them was a warning or an
/// error. For functions of the library whose result does not show that they failed.
bool SucceedsQuietly(const std::function<void()>& work);

/// The texts of all reports that were collected, joined by semicolons.
std::string JoinMessages(const QXSystem::QXErrorCollector& collector);

/// A line at the bottom of a terminal that later messages do not break: it is taken away before a message and
/// drawn again after it. An empty text removes it. Meant for standard error on a terminal only.
void ShowStatusLine(std::string_view text);

}  // namespace qxfp
