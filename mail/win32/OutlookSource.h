// The mail program that is driven by automation, "outlook.Application".
#pragma once

#include <memory>

#include "mail/MailSource.h"

namespace kavidex::mail::win32 {

std::unique_ptr<MailSource> MakeMailSource();

} // namespace kavidex::mail::win32
