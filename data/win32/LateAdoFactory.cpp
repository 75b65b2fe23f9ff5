#include "data/win32/LateAdoFactory.h"

#include "data/win32/LateAdoConnection.h"

namespace kavidex::data::win32 {

std::shared_ptr<AdoConnection> LateAdoFactory::Create() {
    return std::make_shared<LateAdoConnection>(platform::win32::Late::Create("ADODB.Connection"));
}

} // namespace kavidex::data::win32
