// UTF-16 texts as the wide ODBC calls take them.
#pragma once

#include <string>

#include "OdbcHeaders.h"
#include "platform/text.h"

namespace kavidex::data::odbc {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t), "wide ODBC characters are UTF-16");

inline SQLWCHAR* Raw(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

template <class Number>
Number Length(const std::u16string& text) {
    return static_cast<Number>(text.size());
}

inline std::string UpToZero(const std::u16string& text) {
    return platform::ToUtf8(std::u16string_view(text).substr(0, text.find(u'\0')));
}

} // namespace kavidex::data::odbc
