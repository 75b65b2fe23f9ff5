#include "platform/CodePage.h"

namespace kavidex::platform {

namespace {

struct Row {
    std::uint8_t charSet;
    std::uint32_t codePage;
};

constexpr Row rows[] = {
    {0, 1252},   {128, 932},  {129, 949},  {130, 1361}, {134, 936},
    {136, 950},  {161, 1253}, {162, 1254}, {163, 1258}, {177, 1255},
    {178, 1256}, {186, 1257}, {204, 1251}, {222, 874},  {238, 1250},
};

} // namespace

std::uint32_t CodePageOfCharSet(std::uint8_t charSet) {
    for (const Row& row : rows)
        if (row.charSet == charSet) return row.codePage;
    return systemCodePage;
}

} // namespace kavidex::platform
