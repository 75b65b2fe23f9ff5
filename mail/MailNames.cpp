#include "mail/MailNames.h"

#include <algorithm>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/text.h"
#include "platform/utf8.h"

namespace kavidex::mail {

namespace {

constexpr std::size_t longestName = 120; // so that the path of a temporary file fits Windows

std::string Blanked(std::string_view text, std::string_view characters) {
    std::string result(text);
    for (char& c : result)
        if (characters.find(c) != std::string_view::npos) c = ' ';
    return result;
}

} // namespace

std::string DroppedMailName(std::string_view subject, int runningNumber) {
    if (subject.empty()) return "Leeg onderwerp " + std::to_string(runningNumber);
    return Blanked(subject, "/\\:?");
}

std::string SentMailName(std::string_view subject) {
    auto name = Blanked(subject, "/\\:");
    return platform::TrimView(name).empty() ? "Email" : name;
}

std::string DisplayName(std::string_view name) { return Blanked(name, "-:"); }

std::string SafeName(std::string_view name) {
    if (platform::IsFileName(name) && name.size() <= longestName) return std::string(name);
    std::string result;
    for (std::size_t i = 0; i < name.size();) {
        const platform::CodePoint point = platform::DecodeUtf8(name, i);
        const std::string_view character = name.substr(i, point.length);
        if (result.size() + character.size() > longestName) break;
        const bool taken = point.valid && platform::CanBeInFileName(character[0]);
        result += taken ? character : " ";
        i += point.length;
    }
    while (!result.empty() && (result.back() == ' ' || result.back() == '.')) result.pop_back();
    if (platform::IsDeviceName(result)) result.insert(0, "_");
    return result.empty() ? "Email" : result;
}

std::string FreePath(platform::Files& files, std::string_view folder, std::string_view name,
                     std::string_view extension) {
    const std::string base = platform::JoinPath(folder, name);
    std::string path = base + std::string(extension);
    for (int counter = 1; files.FileExists(path); ++counter)
        path = base + " (" + std::to_string(counter) + ")" + std::string(extension);
    return path;
}

std::string MomentNumber(const platform::DateTime& when) {
    std::string text = platform::DateNumber(when);
    if (when.hour < 10) text += '0';
    return text + std::to_string(when.hour) + std::to_string(when.minute) +
           std::to_string(when.second);
}

} // namespace kavidex::mail
