// The folder of one mail among the user's temporary files: what is made for the mail lies there,
// and goes with it.
#pragma once

#include <string>

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::mail {

class MailFolder {
public:
    // Also removes those of earlier days, which a program that was killed left behind. Throws
    // platform::Error.
    explicit MailFolder(const platform::Workstation& workstation);
    ~MailFolder();
    MailFolder(const MailFolder&) = delete;
    MailFolder& operator=(const MailFolder&) = delete;

    const std::string& Path() const { return lclPath; }

private:
    const platform::Workstation& lclWorkstation;
    std::string lclPath;
};

} // namespace kavidex::mail
