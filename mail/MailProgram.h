// A saved mail as the workstation's mail program opens it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "mail/SavedMail.h"

namespace kavidex::platform {
struct Workstation;
}

namespace kavidex::mail {

// Held as long as the mail is being shown: a program that can open a file only by making an item of
// it in its own store has that item removed when this goes.
class OpenedMail {
public:
    virtual ~OpenedMail() = default;
    virtual const SavedMail& Content() const = 0; // its number of attachments, not their names
};

// Throws platform::Error without a mail program, and when it does not open the file.
std::unique_ptr<OpenedMail> OpenByMailProgram(const platform::Workstation& workstation,
                                              const std::string& path);

} // namespace kavidex::mail
