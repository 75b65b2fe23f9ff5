// Mails and attachments that are dragged out of other programs, as files of ours among the user's
// temporary ones; and what a saved mail's document row keeps of it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "controls/intake/Filer.h"
#include "model/MailInfo.h"
#include "platform/Exchange.h"

namespace kavidex::mail {
class MailSource;
}

namespace kavidex::controls {

// What is selected in the mail program, and those of its attachments that the user agrees to. None,
// and told so where `tell` says it, when the mail program is not the one that can be asked, or does
// not answer.
std::optional<std::vector<IntakeFile>> FilesOfMailProgram(IntakeSite& site, bool tell);

// Files that another program hands out. What cannot be had is told.
std::vector<IntakeFile> FilesOf(IntakeSite& site, const std::vector<platform::VirtualFile>& files);

// By the mail program, else from the file itself. What neither tells is "Not retrieved", and noted.
model::MailInfo MailInfoOf(IntakeSite& site, const std::string& path);
// The same without a binder; `program` may be null.
model::MailInfo MailInfoOf(const platform::Workstation& machine, mail::MailSource* program,
                           const std::string& path);

} // namespace kavidex::controls
