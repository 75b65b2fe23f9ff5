// The items of a folder tree.
#include "controls/pictures/NamedPictures.h"

namespace kavidex::controls {

namespace {

using Layer = PictureLayer;

constexpr Layer closedTab[] = {
    {0xB27A12, false, false, 6, {{{1, 3}, {6, 3}, {7.5F, 4.5F}, {15, 4.5F}, {15, 14}, {1, 14}}}},
    {0xE8B03A, true, false, 6, {{{2, 4}, {5.6F, 4}, {7.1F, 5.5F}, {14, 5.5F}, {14, 7}, {2, 7}}}},
    {0xFFD471, true, false, 4, {{{2, 7}, {14, 7}, {14, 13}, {2, 13}}}},
};
constexpr Layer openTab[] = {
    {0xB27A12, false, false, 6, {{{1, 3}, {6, 3}, {7.5F, 4.5F}, {13, 4.5F}, {13, 14}, {1, 14}}}},
    {0xE8B03A, true, false, 6, {{{2, 4}, {5.6F, 4}, {7.1F, 5.5F}, {12, 5.5F}, {12, 13}, {2, 13}}}},
    {0xB27A12, false, false, 4, {{{3.5F, 7}, {16, 7}, {13.5F, 14}, {1, 14}}}},
    {0xFFD471, true, false, 4, {{{4.2F, 8}, {14.6F, 8}, {12.8F, 13}, {2.4F, 13}}}},
};
constexpr Layer note[] = {
    {0x9A8A2E, false, false, 5, {{{2, 1}, {14, 1}, {14, 11}, {10, 15}, {2, 15}}}},
    {0xFFF3A6, true, false, 5, {{{3, 2}, {13, 2}, {13, 10.6F}, {9.6F, 14}, {3, 14}}}},
    {0xD9C65A, false, false, 3, {{{9.6F, 10.6F}, {13, 10.6F}, {9.6F, 14}}}},
    {0x8B7B25, false, false, 4, {{{4.5F, 4}, {11.5F, 4}, {11.5F, 5}, {4.5F, 5}}}},
    {0x8B7B25, false, false, 4, {{{4.5F, 6.5F}, {11.5F, 6.5F}, {11.5F, 7.5F}, {4.5F, 7.5F}}}},
    {0x8B7B25, false, false, 4, {{{4.5F, 9}, {8.5F, 9}, {8.5F, 10}, {4.5F, 10}}}},
};
constexpr Layer users[] = {
    {0x6C8FB5, false, true, 2, {{{11, 5.5F}, {2.5F, 2.5F}}}},
    {0x6C8FB5, false, false, 6, {{{7, 14}, {7, 11}, {9, 9}, {13, 9}, {15, 11}, {15, 14}}}},
    {0xFFFFFF, true, true, 2, {{{5.5F, 5.5F}, {3.6F, 3.6F}}}},
    {0xFFFFFF,
     true,
     false,
     6,
     {{{0, 15}, {0, 11}, {2.5F, 8.5F}, {8.5F, 8.5F}, {11, 11}, {11, 15}}}},
    {0x2E5E91, false, true, 2, {{{5.5F, 5.5F}, {2.8F, 2.8F}}}},
    {0x2E5E91,
     false,
     false,
     6,
     {{{1, 14}, {1, 11.5F}, {3, 9.5F}, {8, 9.5F}, {10, 11.5F}, {10, 14}}}},
};
constexpr Layer selectedUser[] = {
    {0x2E5E91, false, true, 2, {{{8, 5}, {3.4F, 3.4F}}}},
    {0x2E5E91, false, false, 6, {{{2, 15}, {2, 12}, {5, 9.5F}, {11, 9.5F}, {14, 12}, {14, 15}}}},
    {0x8DB4DC, true, true, 2, {{{8, 5}, {2.2F, 2.2F}}}},
};
constexpr Layer unknown[] = {
    {0x7A7A7A, false, false, 5, {{{3, 1}, {10, 1}, {14, 5}, {14, 15}, {3, 15}}}},
    {0xFFFFFF, true, false, 5, {{{4, 2}, {9.5F, 2}, {13, 5.5F}, {13, 14}, {4, 14}}}},
    {0x7A7A7A, false, false, 3, {{{9.5F, 2}, {13, 5.5F}, {9.5F, 5.5F}}}},
};

constexpr NamedPicture rows[] = {
    {"closedtab", closedTab},       {"opentab", openTab}, {"attachtment", note},
    {"Close", closedTab},           {"Open", openTab},    {"Users", users},
    {"SelectedUser", selectedUser}, {"unknown", unknown},
};

} // namespace

std::span<const NamedPicture> ItemPictures() { return rows; }

} // namespace kavidex::controls
