// Turns the errors of a late-bound call into the data layer's, with the statement that met them.
#pragma once

#include <string_view>

#include "data/Error.h"

namespace kavidex::data::win32 {

template <class Work>
auto Guarded(std::string_view statement, Work work) {
    try {
        return work();
    } catch (const Error&) {
        throw;
    } catch (const platform::Error& error) {
        throw Error(error.Number(), error.what(), error.Source(), std::string(statement));
    }
}

} // namespace kavidex::data::win32
