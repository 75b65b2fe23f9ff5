// What tblDocExtraInfo keeps of a document that came or went as mail.
#pragma once

#include <cstdint>
#include <string>

namespace kavidex::model {

struct MailInfo {
    std::string sendTo, recievedFrom, sendOn, recievedOn;
    std::int32_t numberOfAttatchements = 0;
};

} // namespace kavidex::model
