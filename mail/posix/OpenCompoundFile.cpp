#include "mail/CompoundFile.h"
#include "platform/Files.h"
#include "platform/Workstation.h"

namespace kavidex::mail {

std::unique_ptr<Storage> OpenCompoundFile(std::string_view path) {
    return ReadCompoundFile(platform::TheWorkstation().files.ReadAll(path));
}

} // namespace kavidex::mail
