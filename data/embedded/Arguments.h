// What the engine's functions share: their arguments read, their results given.
#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "data/Value.h"
#include "platform/text.h"

namespace kavidex::data::embedded {

inline bool IsNullArgument(sqlite3_value* value) {
    return sqlite3_value_type(value) == SQLITE_NULL;
}

inline std::string_view RawText(sqlite3_value* value) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
    return text ? std::string_view(text, static_cast<std::size_t>(sqlite3_value_bytes(value)))
                : std::string_view();
}

// Floating numbers as Basic writes them; everything else as SQLite does.
inline std::string TextOf(sqlite3_value* value) {
    if (sqlite3_value_type(value) == SQLITE_FLOAT)
        return ToText(Value(sqlite3_value_double(value)));
    return std::string(RawText(value));
}

inline double NumberOf(sqlite3_value* value) {
    return sqlite3_value_type(value) == SQLITE_TEXT ? platform::Val(RawText(value))
                                                    : sqlite3_value_double(value);
}

inline void Return(sqlite3_context* context, std::string_view text) {
    sqlite3_result_text64(context, text.data() ? text.data() : "", text.size(), SQLITE_TRANSIENT,
                          SQLITE_UTF8);
}

struct Registration {
    const char* name;
    int arguments; // -1: any number
    void (*run)(sqlite3_context*, int, sqlite3_value**);
};

// SQLite's result code.
template <std::size_t Count>
int Register(sqlite3* database, const Registration (&functions)[Count]) {
    for (const Registration& function : functions)
        if (const int result =
                sqlite3_create_function_v2(database, function.name, function.arguments,
                                           SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                                           nullptr, function.run, nullptr, nullptr, nullptr);
            result != SQLITE_OK)
            return result;
    return SQLITE_OK;
}

} // namespace kavidex::data::embedded
