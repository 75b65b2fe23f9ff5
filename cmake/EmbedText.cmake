# cmake -DINPUT=... -DOUTPUT=... -DNAME=namespace::name -P EmbedText.cmake: a source file that holds
# the input's bytes as `const std::string_view NAME`.
file(READ ${INPUT} hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
string(REGEX MATCH "^(.*)::([^:]+)$" whole ${NAME})
file(WRITE ${OUTPUT} "#include <string_view>
namespace ${CMAKE_MATCH_1} {
extern const std::string_view ${CMAKE_MATCH_2};
static constexpr char bytes[] = {${bytes}'\\0'};
const std::string_view ${CMAKE_MATCH_2}(bytes, sizeof(bytes) - 1);
}
")
