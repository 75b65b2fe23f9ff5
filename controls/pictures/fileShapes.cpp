// Families of file types, for a system that has no icon of its own for one: a sheet with a sign.
#include "controls/pictures/NamedPictures.h"

namespace kavidex::controls {

namespace {

using Layer = PictureLayer;

constexpr Layer pdf[] = {
    {0xC0392B, false, false, 5, {{{2.5F, 1}, {10, 1}, {13.5F, 4.5F}, {13.5F, 15}, {2.5F, 15}}}},
    {0xFFFFFF, true, false, 5, {{{3.5F, 2}, {9.5F, 2}, {12.5F, 5}, {12.5F, 14}, {3.5F, 14}}}},
    {0xC0392B, false, false, 3, {{{9.5F, 1.5F}, {13, 5}, {9.5F, 5}}}},
    {0xC0392B, false, false, 4, {{{3.5F, 7}, {12.5F, 7}, {12.5F, 12}, {3.5F, 12}}}},
    {0xFFFFFF, true, false, 4, {{{5, 8}, {6, 8}, {6, 11}, {5, 11}}}},
    {0xFFFFFF, true, false, 4, {{{5, 8}, {7.5F, 8}, {7.5F, 8.9F}, {5, 8.9F}}}},
    {0xFFFFFF, true, false, 4, {{{6.6F, 8}, {7.5F, 8}, {7.5F, 10}, {6.6F, 10}}}},
    {0xFFFFFF, true, false, 4, {{{5, 9.2F}, {7.5F, 9.2F}, {7.5F, 10}, {5, 10}}}},
    {0xFFFFFF, true, false, 4, {{{8.8F, 8}, {9.7F, 8}, {9.7F, 11}, {8.8F, 11}}}},
    {0xFFFFFF, true, false, 4, {{{8.8F, 8}, {11, 8}, {11, 8.8F}, {8.8F, 8.8F}}}},
    {0xFFFFFF, true, false, 4, {{{8.8F, 9.3F}, {10.6F, 9.3F}, {10.6F, 10}, {8.8F, 10}}}},
};
constexpr Layer word[] = {
    {0x2B579A, false, false, 5, {{{2.5F, 1}, {10, 1}, {13.5F, 4.5F}, {13.5F, 15}, {2.5F, 15}}}},
    {0xFFFFFF, true, false, 5, {{{3.5F, 2}, {9.5F, 2}, {12.5F, 5}, {12.5F, 14}, {3.5F, 14}}}},
    {0x2B579A, false, false, 3, {{{9.5F, 1.5F}, {13, 5}, {9.5F, 5}}}},
    {0x2B579A, false, false, 4, {{{5, 5.5F}, {8.5F, 5.5F}, {8.5F, 6.5F}, {5, 6.5F}}}},
    {0x2B579A, false, false, 4, {{{5, 7.5F}, {11, 7.5F}, {11, 8.5F}, {5, 8.5F}}}},
    {0x2B579A, false, false, 4, {{{5, 9.5F}, {11, 9.5F}, {11, 10.5F}, {5, 10.5F}}}},
    {0x2B579A, false, false, 4, {{{5, 11.5F}, {9, 11.5F}, {9, 12.5F}, {5, 12.5F}}}},
};
constexpr Layer sheet[] = {
    {0x217346, false, false, 5, {{{2.5F, 1}, {10, 1}, {13.5F, 4.5F}, {13.5F, 15}, {2.5F, 15}}}},
    {0xFFFFFF, true, false, 5, {{{3.5F, 2}, {9.5F, 2}, {12.5F, 5}, {12.5F, 14}, {3.5F, 14}}}},
    {0x217346, false, false, 3, {{{9.5F, 1.5F}, {13, 5}, {9.5F, 5}}}},
    {0x217346, false, false, 4, {{{4.5F, 6.5F}, {11.5F, 6.5F}, {11.5F, 13}, {4.5F, 13}}}},
    {0xFFFFFF, true, false, 4, {{{5.1F, 7.2F}, {6.7F, 7.2F}, {6.7F, 8.6F}, {5.1F, 8.6F}}}},
    {0xFFFFFF, true, false, 4, {{{7.2F, 7.2F}, {8.8F, 7.2F}, {8.8F, 8.6F}, {7.2F, 8.6F}}}},
    {0xFFFFFF, true, false, 4, {{{9.3F, 7.2F}, {10.9F, 7.2F}, {10.9F, 8.6F}, {9.3F, 8.6F}}}},
    {0xFFFFFF, true, false, 4, {{{5.1F, 9.2F}, {6.7F, 9.2F}, {6.7F, 10.6F}, {5.1F, 10.6F}}}},
    {0xFFFFFF, true, false, 4, {{{7.2F, 9.2F}, {8.8F, 9.2F}, {8.8F, 10.6F}, {7.2F, 10.6F}}}},
    {0xFFFFFF, true, false, 4, {{{9.3F, 9.2F}, {10.9F, 9.2F}, {10.9F, 10.6F}, {9.3F, 10.6F}}}},
    {0xFFFFFF, true, false, 4, {{{5.1F, 11.2F}, {6.7F, 11.2F}, {6.7F, 12.6F}, {5.1F, 12.6F}}}},
    {0xFFFFFF, true, false, 4, {{{7.2F, 11.2F}, {8.8F, 11.2F}, {8.8F, 12.6F}, {7.2F, 12.6F}}}},
    {0xFFFFFF, true, false, 4, {{{9.3F, 11.2F}, {10.9F, 11.2F}, {10.9F, 12.6F}, {9.3F, 12.6F}}}},
};
constexpr Layer mail[] = {
    {0x5B6B7A, false, false, 4, {{{1, 3}, {15, 3}, {15, 13}, {1, 13}}}},
    {0xF7F3E3, true, false, 4, {{{2, 4}, {14, 4}, {14, 12}, {2, 12}}}},
    {0x5B6B7A,
     false,
     false,
     6,
     {{{1.5F, 3.5F}, {8, 9.5F}, {14.5F, 3.5F}, {14.5F, 4.8F}, {8, 10.8F}, {1.5F, 4.8F}}}},
};
constexpr Layer picture[] = {
    {0x4A6A8A, false, false, 4, {{{1, 2}, {15, 2}, {15, 14}, {1, 14}}}},
    {0xCFE8F7, true, false, 4, {{{2, 3}, {14, 3}, {14, 13}, {2, 13}}}},
    {0xF2C230, false, true, 2, {{{11, 5.5F}, {1.4F, 1.4F}}}},
    {0x3E8E41, false, false, 5, {{{2, 13}, {6, 6.5F}, {9, 11}, {10.5F, 9}, {14, 13}}}},
};
constexpr Layer text[] = {
    {0x6B6B6B, false, false, 5, {{{2.5F, 1}, {10, 1}, {13.5F, 4.5F}, {13.5F, 15}, {2.5F, 15}}}},
    {0xFFFFFF, true, false, 5, {{{3.5F, 2}, {9.5F, 2}, {12.5F, 5}, {12.5F, 14}, {3.5F, 14}}}},
    {0x6B6B6B, false, false, 3, {{{9.5F, 1.5F}, {13, 5}, {9.5F, 5}}}},
    {0x6B6B6B, false, false, 4, {{{5, 6.2F}, {11, 6.2F}, {11, 7.1F}, {5, 7.1F}}}},
    {0x6B6B6B, false, false, 4, {{{5, 8}, {11, 8}, {11, 8.9F}, {5, 8.9F}}}},
    {0x6B6B6B, false, false, 4, {{{5, 9.8F}, {11, 9.8F}, {11, 10.7F}, {5, 10.7F}}}},
    {0x6B6B6B, false, false, 4, {{{5, 11.6F}, {11, 11.6F}, {11, 12.5F}, {5, 12.5F}}}},
};
constexpr Layer archive[] = {
    {0x8A6D3B, false, false, 4, {{{1.5F, 4}, {14.5F, 4}, {14.5F, 14}, {1.5F, 14}}}},
    {0xE6CB8F, true, false, 4, {{{2.5F, 7}, {13.5F, 7}, {13.5F, 13}, {2.5F, 13}}}},
    {0xE6CB8F, true, false, 4, {{{2.5F, 5}, {13.5F, 5}, {13.5F, 6.2F}, {2.5F, 6.2F}}}},
    {0x6B5022, false, false, 4, {{{8, 5}, {9, 5}, {9, 6.2F}, {8, 6.2F}}}},
    {0x6B5022, false, false, 4, {{{7, 6.2F}, {8, 6.2F}, {8, 7.4F}, {7, 7.4F}}}},
    {0x6B5022, false, false, 4, {{{8, 7.4F}, {9, 7.4F}, {9, 8.6F}, {8, 8.6F}}}},
    {0x6B5022, false, false, 4, {{{7, 8.6F}, {8, 8.6F}, {8, 9.8F}, {7, 9.8F}}}},
    {0x6B5022, false, false, 4, {{{8, 9.8F}, {9, 9.8F}, {9, 11}, {8, 11}}}},
    {0x6B5022, false, false, 4, {{{6.8F, 11}, {9.2F, 11}, {9.2F, 13}, {6.8F, 13}}}},
};
constexpr Layer web[] = {
    {0x2E75B6, false, true, 2, {{{8, 8}, {7, 7}}}},
    {0xFFFFFF, true, true, 2, {{{8, 8}, {6, 6}}}},
    {0x2E75B6, false, true, 2, {{{8, 8}, {3.2F, 6.5F}}}},
    {0xFFFFFF, true, true, 2, {{{8, 8}, {2.3F, 6}}}},
    {0x2E75B6, false, false, 4, {{{1.5F, 7.5F}, {14.5F, 7.5F}, {14.5F, 8.5F}, {1.5F, 8.5F}}}},
};
constexpr Layer slides[] = {
    {0xB7472A, false, false, 5, {{{2.5F, 1}, {10, 1}, {13.5F, 4.5F}, {13.5F, 15}, {2.5F, 15}}}},
    {0xFFFFFF, true, false, 5, {{{3.5F, 2}, {9.5F, 2}, {12.5F, 5}, {12.5F, 14}, {3.5F, 14}}}},
    {0xB7472A, false, false, 3, {{{9.5F, 1.5F}, {13, 5}, {9.5F, 5}}}},
    {0xB7472A, false, true, 2, {{{8, 9.5F}, {3.4F, 3.4F}}}},
    {0xFFFFFF, true, false, 4, {{{8, 9.5F}, {8, 5.8F}, {11.8F, 5.8F}, {11.8F, 9.5F}}}},
    {0xE39A83, false, false, 4, {{{8.8F, 8.7F}, {8.8F, 5.9F}, {10.8F, 6.6F}, {11.7F, 8.7F}}}},
};

constexpr NamedPicture rows[] = {
    {"pdf", pdf},         {"word", word},       {"sheet", sheet},
    {"mail", mail},       {"picture", picture}, {"text", text},
    {"archive", archive}, {"web", web},         {"slides", slides},
};

} // namespace

std::span<const NamedPicture> FilePictures() { return rows; }

} // namespace kavidex::controls
