#include "data/Recordset.h"

#include "data/Error.h"
#include "platform/text.h"

namespace kavidex::data {

std::unique_ptr<Recordset> Recordset::Clone() const {
    throw Error(errors::featureNotAvailable, "This recordset cannot be copied.", "Recordset");
}

std::size_t Recordset::IndexOf(std::string_view name) const {
    const std::vector<Field>& fields = Fields();
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (fields[i].name.size() == name.size() &&
            platform::EqualAsciiNoCase(fields[i].name, name))
            return i;
    throw Error(errors::itemNotFound, "The recordset has no field '" + std::string(name) + "'.",
                "Recordset");
}

} // namespace kavidex::data
