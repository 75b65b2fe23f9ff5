// Makes ADODB.Connection objects of the machine's own ADO.
#pragma once

#include "data/AdoFactory.h"

namespace kavidex::data::win32 {

class LateAdoFactory : public AdoFactory {
public:
    std::shared_ptr<AdoConnection> Create() override;
};

} // namespace kavidex::data::win32
