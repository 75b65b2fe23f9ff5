// Settings, and the states of a checklist.
#include "controls/pictures/NamedPictures.h"

namespace kavidex::controls {

namespace {

using Layer = PictureLayer;

// A wheel with eight teeth.
constexpr Layer settings[] = {
    {0x4A6A8A, false, false, 4, {{{6.8F, 0.6F}, {9.2F, 0.6F}, {9.2F, 15.4F}, {6.8F, 15.4F}}}},
    {0x4A6A8A, false, false, 4, {{{0.6F, 6.8F}, {15.4F, 6.8F}, {15.4F, 9.2F}, {0.6F, 9.2F}}}},
    {0x4A6A8A, false, false, 4, {{{3.6F, 1.9F}, {14.1F, 12.4F}, {12.4F, 14.1F}, {1.9F, 3.6F}}}},
    {0x4A6A8A, false, false, 4, {{{12.4F, 1.9F}, {14.1F, 3.6F}, {3.6F, 14.1F}, {1.9F, 12.4F}}}},
    {0x4A6A8A, false, true, 2, {{{8, 8}, {5.4F, 5.4F}}}},
    {0xFFFFFF, true, true, 2, {{{8, 8}, {2.4F, 2.4F}}}},
};
// A list with one line ticked.
constexpr Layer checklist[] = {
    {0x6B6B6B, false, false, 4, {{{2, 1}, {14, 1}, {14, 15}, {2, 15}}}},
    {0xFFFFFF, true, false, 4, {{{3, 2}, {13, 2}, {13, 14}, {3, 14}}}},
    {0x6B6B6B, false, false, 4, {{{8, 4.4F}, {12, 4.4F}, {12, 5.6F}, {8, 5.6F}}}},
    {0x6B6B6B, false, false, 4, {{{8, 10.4F}, {12, 10.4F}, {12, 11.6F}, {8, 11.6F}}}},
    {0x2E8B3D,
     false,
     false,
     6,
     {{{3.8F, 5}, {4.7F, 4.1F}, {5.5F, 4.9F}, {7.2F, 2.8F}, {8, 3.6F}, {5.6F, 6.8F}}}},
    {0xB03A2E, false, false, 4, {{{4.2F, 9.6F}, {6.8F, 9.6F}, {6.8F, 12.4F}, {4.2F, 12.4F}}}},
    {0xFFFFFF, true, false, 4, {{{4.9F, 10.3F}, {6.1F, 10.3F}, {6.1F, 11.7F}, {4.9F, 11.7F}}}},
};
// The shapes differ as much as the colours.
constexpr Layer present[] = {
    {0x2E8B3D, false, true, 2, {{{8, 8}, {6.5F, 6.5F}}}},
    {0xFFFFFF,
     true,
     false,
     6,
     {{{4.2F, 8.2F}, {5.6F, 6.8F}, {7.2F, 8.4F}, {10.6F, 4.8F}, {12, 6.2F}, {7.2F, 11.2F}}}},
};
constexpr Layer missing[] = {
    {0xB03A2E, false, true, 2, {{{8, 8}, {6.5F, 6.5F}}}},
    {0xFFFFFF, true, false, 4, {{{7, 3.6F}, {9, 3.6F}, {9, 9.4F}, {7, 9.4F}}}},
    {0xFFFFFF, true, false, 4, {{{7, 10.6F}, {9, 10.6F}, {9, 12.6F}, {7, 12.6F}}}},
};
constexpr Layer optional[] = {
    {0x6B6B6B, false, true, 2, {{{8, 8}, {6.5F, 6.5F}}}},
    {0xFFFFFF, true, true, 2, {{{8, 8}, {5, 5}}}},
};

constexpr NamedPicture rows[] = {
    {"Settings", settings},    {"WithCheckList", checklist}, {"checkpresent", present},
    {"checkmissing", missing}, {"checkoptional", optional},
};

} // namespace

std::span<const NamedPicture> AdminPictures() { return rows; }

} // namespace kavidex::controls
