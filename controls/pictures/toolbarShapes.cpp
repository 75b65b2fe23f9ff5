// The buttons of toolbars.
#include "controls/pictures/NamedPictures.h"

namespace kavidex::controls {

namespace {

using Layer = PictureLayer;

// A sheet with a plus.
constexpr Layer newItem[] = {
    {0x6B6B6B, false, false, 5, {{{2, 1}, {9, 1}, {12, 4}, {12, 15}, {2, 15}}}},
    {0xFFFFFF, true, false, 5, {{{3, 2}, {8.6F, 2}, {11, 4.4F}, {11, 14}, {3, 14}}}},
    {0x6B6B6B, false, false, 3, {{{8.4F, 1.6F}, {11.6F, 4.8F}, {8.4F, 4.8F}}}},
    {0xFFFFFF, true, true, 2, {{{11.5F, 11.5F}, {4.5F, 4.5F}}}},
    {0x2E8B3D, false, true, 2, {{{11.5F, 11.5F}, {3.8F, 3.8F}}}},
    {0xFFFFFF, true, false, 4, {{{10.9F, 9.2F}, {12.1F, 9.2F}, {12.1F, 13.8F}, {10.9F, 13.8F}}}},
    {0xFFFFFF, true, false, 4, {{{9.2F, 10.9F}, {13.8F, 10.9F}, {13.8F, 12.1F}, {9.2F, 12.1F}}}},
};
// A window in two panes.
constexpr Layer placement[] = {
    {0x4A6A8A, false, false, 4, {{{1, 2}, {15, 2}, {15, 14}, {1, 14}}}},
    {0xFFFFFF, true, false, 4, {{{2, 5}, {6, 5}, {6, 13}, {2, 13}}}},
    {0xD6E6F5, true, false, 4, {{{7, 5}, {14, 5}, {14, 13}, {7, 13}}}},
};
constexpr Layer previous[] = {
    {0x2E5E91,
     false,
     false,
     7,
     {{{1.5F, 8}, {8, 2}, {8, 5.8F}, {14.5F, 5.8F}, {14.5F, 10.2F}, {8, 10.2F}, {8, 14}}}},
};
constexpr Layer next[] = {
    {0x2E5E91,
     false,
     false,
     7,
     {{{14.5F, 8}, {8, 2}, {8, 5.8F}, {1.5F, 5.8F}, {1.5F, 10.2F}, {8, 10.2F}, {8, 14}}}},
};

// Two sheets held by a staple.
constexpr Layer stapler[] = {
    {0x6B6B6B, false, false, 4, {{{5, 1}, {15, 1}, {15, 13}, {5, 13}}}},
    {0xFFFFFF, true, false, 4, {{{6, 2}, {14, 2}, {14, 12}, {6, 12}}}},
    {0x6B6B6B, false, false, 4, {{{1, 4}, {11, 4}, {11, 15.5F}, {1, 15.5F}}}},
    {0xFFFFFF, true, false, 4, {{{2, 5}, {10, 5}, {10, 14.5F}, {2, 14.5F}}}},
    {0x2E5E91, false, false, 4, {{{3, 6.5F}, {8, 6.5F}, {8, 7.8F}, {3, 7.8F}}}},
    {0x2E5E91, false, false, 4, {{{3, 7.8F}, {4.2F, 7.8F}, {4.2F, 10}, {3, 10}}}},
    {0x2E5E91, false, false, 4, {{{6.8F, 7.8F}, {8, 7.8F}, {8, 10}, {6.8F, 10}}}},
};
// Sheets that go apart.
constexpr Layer unpack[] = {
    {0x6B6B6B, false, false, 4, {{{0.5F, 1}, {6, 1}, {6, 9}, {0.5F, 9}}}},
    {0xFFFFFF, true, false, 4, {{{1.5F, 2}, {5, 2}, {5, 8}, {1.5F, 8}}}},
    {0x6B6B6B, false, false, 4, {{{10, 1}, {15.5F, 1}, {15.5F, 9}, {10, 9}}}},
    {0xFFFFFF, true, false, 4, {{{11, 2}, {14.5F, 2}, {14.5F, 8}, {11, 8}}}},
    {0x2E5E91,
     false,
     false,
     7,
     {{{1, 12.5F}, {4, 10}, {4, 11.7F}, {7.4F, 11.7F}, {7.4F, 13.3F}, {4, 13.3F}, {4, 15}}}},
    {0x2E5E91,
     false,
     false,
     7,
     {{{15, 12.5F}, {12, 10}, {12, 11.7F}, {8.6F, 11.7F}, {8.6F, 13.3F}, {12, 13.3F}, {12, 15}}}},
};
// A scanner with its lid up.
constexpr Layer scan[] = {
    {0x6B6B6B, false, false, 4, {{{1, 2.2F}, {2.2F, 1}, {14.6F, 7}, {13.6F, 8.4F}}}},
    {0x4A6A8A, false, false, 4, {{{1, 9}, {15, 9}, {15, 14}, {1, 14}}}},
    {0xD6E6F5, true, false, 4, {{{2, 10}, {14, 10}, {14, 13}, {2, 13}}}},
    {0x2E8B3D, false, false, 4, {{{3, 11}, {13, 11}, {13, 12}, {3, 12}}}},
};

constexpr NamedPicture rows[] = {
    {"Stapler", stapler},           {"Unpack", unpack},    {"Scan", scan},    {"New", newItem},
    {"WindowPlacement", placement}, {"Prevdoc", previous}, {"Nextdoc", next},
};

} // namespace

std::span<const NamedPicture> ToolbarPictures() { return rows; }

} // namespace kavidex::controls
