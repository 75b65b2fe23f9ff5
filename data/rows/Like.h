// The patterns of `like` in the Access dialect.
#pragma once

#include <string_view>

namespace kavidex::data {

// Without case. % and * stand for any run of characters, _ and ? for one, [abc], [a-f] and [!abc]
// for one of (or none of) a list, so that patterns of either wildcard family match. A [ without its
// ] stands for itself.
bool LikeMatch(std::string_view pattern, std::string_view text);

} // namespace kavidex::data
