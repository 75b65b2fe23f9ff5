// The names that mails and their attachments get as files, and the form in which their times are
// kept.
#pragma once

#include <string>
#include <string_view>

namespace kavidex::platform {
struct DateTime;
class Files;
} // namespace kavidex::platform

namespace kavidex::mail {

// A mail dropped from the mail program: "/", "\", ":" and "?" are blanks, a mail without subject
// bears its running number, from 1.
std::string DroppedMailName(std::string_view subject, int runningNumber);

// A sent mail: "/", "\" and ":" are blanks ("?" stays), one without subject is "Email".
std::string SentMailName(std::string_view subject);

// An attachment's display name: "-" and ":" are blanks.
std::string DisplayName(std::string_view name);

// For a name that the file system refused: every character that no file name takes is a blank, and
// the whole is short enough. The same for what is a file name already.
std::string SafeName(std::string_view name);

// `folder` + `name` + `extension` (with its dot), with " (1)", " (2)" and so on behind the name
// while there is such a file.
std::string FreePath(platform::Files& files, std::string_view folder, std::string_view name,
                     std::string_view extension);

// yyyymmdd, the hour in two digits, minute and second without leading zeros.
std::string MomentNumber(const platform::DateTime& when);

} // namespace kavidex::mail
