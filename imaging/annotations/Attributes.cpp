#include "imaging/annotations/Attributes.h"

#include <algorithm>

#include "platform/Bytes.h"
#include "platform/CodePage.h"
#include "platform/Error.h"

namespace kavidex::imaging::annotations {

namespace {

using platform::AppendLittle;
using platform::ReadLittle;
using platform::WriteLittle;

namespace field {
constexpr std::size_t type = 0, bounds = 4, colour = 20, textColour = 24, highlighting = 28,
                      transparent = 32, lineWidth = 36, font = 48, time = 112, visible = 116,
                      constant = 120, changed = 124;
constexpr std::size_t height = font, weight = font + 16, italic = font + 20, underline = font + 21,
                      strikeOut = font + 22, charSet = font + 23, face = font + 28, faceSize = 32;
} // namespace field

constexpr std::uint32_t constantWord = 0x000FF83F;

Colour ReadColour(std::string_view body, std::size_t at) {
    return {static_cast<std::uint8_t>(body[at + 2]), static_cast<std::uint8_t>(body[at + 1]),
            static_cast<std::uint8_t>(body[at])};
}

void WriteColour(std::string& body, std::size_t at, const Colour& colour) {
    body[at] = static_cast<char>(colour.blue);
    body[at + 1] = static_cast<char>(colour.green);
    body[at + 2] = static_cast<char>(colour.red);
}

Font ReadFont(std::string_view body) {
    Font font;
    font.height = ReadLittle<std::int32_t>(body, field::height);
    font.weight = ReadLittle<std::int32_t>(body, field::weight);
    font.italic = body[field::italic] != 0;
    font.underline = body[field::underline] != 0;
    font.strikeOut = body[field::strikeOut] != 0;
    font.charSet = static_cast<std::uint8_t>(body[field::charSet]);
    const std::string_view face = body.substr(field::face, field::faceSize);
    font.face = platform::FromCodePage(face.substr(0, face.find('\0')), platform::systemCodePage);
    return font;
}

void WriteFont(std::string& body, const Font& font) {
    WriteLittle(body, field::height, font.height);
    WriteLittle(body, field::weight, font.weight);
    body[field::italic] = font.italic ? 1 : 0;
    body[field::underline] = font.underline ? 1 : 0;
    body[field::strikeOut] = font.strikeOut ? 1 : 0;
    body[field::charSet] = static_cast<char>(font.charSet);
    std::string face =
        platform::ToCodePage(font.face, platform::systemCodePage).value_or(std::string("Arial"));
    face.resize(std::min(face.size(), field::faceSize - 1));
    face.resize(field::faceSize);
    body.replace(field::face, field::faceSize, face);
}

} // namespace

void ReadAttributes(std::string_view body, Mark& mark) {
    mark.type = static_cast<MarkType>(ReadLittle<std::uint32_t>(body, field::type));
    const auto edge = [&](std::size_t i) {
        return ReadLittle<std::int32_t>(body, field::bounds + 4 * i);
    };
    mark.bounds = {edge(0), edge(1), edge(2), edge(3)};
    mark.colour = ReadColour(body, field::colour);
    mark.textColour = ReadColour(body, field::textColour);
    mark.highlighting = ReadLittle<std::uint32_t>(body, field::highlighting) != 0;
    mark.transparent = ReadLittle<std::uint32_t>(body, field::transparent) != 0;
    mark.visible = ReadLittle<std::uint32_t>(body, field::visible) != 0;
    mark.lineWidth = ReadLittle<std::uint32_t>(body, field::lineWidth);
    mark.font = ReadFont(body);
    mark.created = ReadLittle<std::uint32_t>(body, field::time);
    mark.changed = ReadLittle<std::uint32_t>(body, field::changed);
}

std::string NewAttributes(const Mark& mark, std::uint32_t now) {
    std::string body(attributesSize, '\0');
    WriteLittle(body, field::type, static_cast<std::uint32_t>(mark.type));
    SetBounds(body, mark.bounds);
    WriteColour(body, field::colour, mark.colour);
    WriteColour(body, field::textColour, mark.textColour);
    WriteLittle<std::uint32_t>(body, field::highlighting, mark.highlighting ? 1 : 0);
    WriteLittle<std::uint32_t>(body, field::transparent, mark.transparent ? 1 : 0);
    WriteLittle(body, field::lineWidth, mark.lineWidth);
    if (mark.HasText()) WriteFont(body, mark.font);
    WriteLittle(body, field::time, now);
    WriteLittle<std::uint32_t>(body, field::visible, mark.visible ? 1 : 0);
    WriteLittle(body, field::constant, constantWord);
    return body;
}

bool PatchAttributes(std::string& body, const Mark& before, const Mark& after) {
    const std::string old = body;
    if (before.bounds != after.bounds) SetBounds(body, after.bounds);
    if (before.colour != after.colour) WriteColour(body, field::colour, after.colour);
    if (before.textColour != after.textColour)
        WriteColour(body, field::textColour, after.textColour);
    const auto flag = [&](std::size_t at, bool was, bool is) {
        if (was != is) WriteLittle<std::uint32_t>(body, at, is ? 1 : 0);
    };
    flag(field::highlighting, before.highlighting, after.highlighting);
    flag(field::transparent, before.transparent, after.transparent);
    flag(field::visible, before.visible, after.visible);
    if (before.lineWidth != after.lineWidth) WriteLittle(body, field::lineWidth, after.lineWidth);
    if (before.font != after.font) WriteFont(body, after.font);
    return body != old;
}

void SetBounds(std::string& body, const Box& bounds) {
    WriteLittle(body, field::bounds, bounds.left);
    WriteLittle(body, field::bounds + 4, bounds.top);
    WriteLittle(body, field::bounds + 8, bounds.right);
    WriteLittle(body, field::bounds + 12, bounds.bottom);
}

void SetChanged(std::string& body, std::uint32_t now) { WriteLittle(body, field::changed, now); }

void ReadPoints(std::string_view data, Mark& mark) {
    if (data.size() < 8) return;
    const auto most = ReadLittle<std::uint32_t>(data, 0),
               count = ReadLittle<std::uint32_t>(data, 4);
    if (count > most || count > (data.size() - 8) / 8) return;
    mark.points.clear();
    for (std::size_t i = 0; i < count; ++i)
        mark.points.push_back({ReadLittle<std::int32_t>(data, 8 + 8 * i),
                               ReadLittle<std::int32_t>(data, 12 + 8 * i)});
}

std::string PointData(const std::vector<Point>& points) {
    std::string data;
    AppendLittle(data, static_cast<std::int32_t>(points.size()));
    AppendLittle(data, static_cast<std::int32_t>(points.size()));
    for (const Point& point : points) {
        AppendLittle(data, point.x);
        AppendLittle(data, point.y);
    }
    return data;
}

void ReadText(std::string_view data, Mark& mark) {
    if (data.size() < 16) return;
    mark.orientation = ReadLittle<std::int32_t>(data, 0);
    mark.creationScale = ReadLittle<std::uint32_t>(data, 8);
    std::string_view text = data.substr(16, ReadLittle<std::uint32_t>(data, 12));
    text = text.substr(0, text.find('\0'));
    mark.text = platform::FromCodePage(text, platform::CodePageOfCharSet(mark.font.charSet));
}

std::string TextData(std::string_view bytes, std::int32_t orientation,
                     std::uint32_t creationScale) {
    std::string data;
    AppendLittle(data, orientation);
    AppendLittle<std::uint32_t>(data, 1000);
    AppendLittle(data, creationScale);
    AppendLittle(data, static_cast<std::uint32_t>(bytes.size() + 1));
    data += bytes;
    return data.append(5, '\0'); // its end, and four more as the original control has them
}

bool PatchTextPlace(std::string& data, const Mark& before, const Mark& after) {
    if (data.size() < 16) return false;
    if (before.orientation != after.orientation) WriteLittle(data, 0, after.orientation);
    if (before.creationScale != after.creationScale) WriteLittle(data, 8, after.creationScale);
    return before.orientation != after.orientation || before.creationScale != after.creationScale;
}

std::string PlacementData(std::int32_t rotation) {
    std::string data;
    AppendLittle(data, rotation);
    AppendLittle<std::int32_t>(data, 1000);
    for (int i = 0; i < 4; ++i) AppendLittle<std::int32_t>(data, 96);
    return data.append(56 - data.size(), '\0');
}

std::string EncodeText(Mark& mark) {
    constexpr std::uint8_t charSets[] = {0,   238, 204, 161, 162, 186, 177,
                                         178, 222, 163, 128, 134, 136, 129};
    const std::size_t longest = mark.type == MarkType::TextStamp ? 255 : 0xFFFF;
    const auto fits = [&](std::uint8_t charSet) {
        return platform::ToCodePage(mark.text, platform::CodePageOfCharSet(charSet));
    };
    std::optional<std::string> bytes = fits(mark.font.charSet);
    for (const std::uint8_t charSet : charSets) {
        if (bytes) break;
        if ((bytes = fits(charSet))) mark.font.charSet = charSet;
    }
    if (!bytes)
        throw platform::Error(platform::errors::invalidArgument,
                              "The text mixes scripts that a mark on a page cannot keep together");
    if (bytes->size() > longest)
        throw platform::Error(platform::errors::invalidArgument,
                              "The text is too long for a mark on a page");
    return *bytes;
}

} // namespace kavidex::imaging::annotations
