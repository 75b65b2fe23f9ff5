#include "com/control/Bags.h"

#include <cstring>

#include "com/controls/HostObjects.h"
#include "data/win32/Convert.h"
#include "platform/win32/Late.h"
#include "platform/win32/Variant.h"

namespace kavidex::com {

namespace {

using controls::BagWidth;
using platform::win32::Bstr;
using platform::win32::Variant;

constexpr char magic[4] = {'K', 'V', 'X', '1'};
constexpr std::uint32_t longest = 16u << 20; // a control's properties are never near this

enum class Kind : std::uint8_t { Null, Bool, Whole, Floating, Text, Binary };

VARTYPE TypeFor(const data::Value& value, BagWidth width) {
    constexpr VARTYPE types[] = {VT_EMPTY, VT_BOOL, VT_I4, VT_R8, VT_BSTR, VT_EMPTY};
    if (width == BagWidth::Short && std::holds_alternative<std::int64_t>(value)) return VT_I2;
    return types[value.index()];
}

void PutNumber(std::string& bytes, std::uint64_t number, int width) {
    for (int i = 0; i < width; ++i) bytes += static_cast<char>(number >> (8 * i));
}

// Numbers and texts from a run of bytes; past its end it says so and gives zeroes.
struct Reader {
    std::string_view bytes;
    bool good = true;

    std::string_view Take(std::size_t count) {
        if (count > bytes.size()) {
            good = false;
            return {};
        }
        const auto result = bytes.substr(0, count);
        bytes.remove_prefix(count);
        return result;
    }
    std::uint64_t Number(int width) {
        std::uint64_t number = 0;
        const auto taken = Take(static_cast<std::size_t>(width));
        for (std::size_t i = 0; i < taken.size(); ++i)
            number |= std::uint64_t{static_cast<std::uint8_t>(taken[i])} << (8 * i);
        return number;
    }
};

std::string Payload(const data::Value& value) {
    std::string bytes;
    switch (static_cast<Kind>(value.index())) {
    case Kind::Null: break;
    case Kind::Bool: PutNumber(bytes, std::get<bool>(value) ? 1 : 0, 1); break;
    case Kind::Whole:
        PutNumber(bytes, static_cast<std::uint64_t>(std::get<std::int64_t>(value)), 8);
        break;
    case Kind::Floating: {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &std::get<double>(value), sizeof bits);
        PutNumber(bytes, bits, 8);
        break;
    }
    case Kind::Text: bytes = std::get<std::string>(value); break;
    case Kind::Binary:
        bytes.assign(std::get<data::Bytes>(value).begin(), std::get<data::Bytes>(value).end());
        break;
    }
    return bytes;
}

std::optional<data::Value> FromPayload(Kind kind, std::string_view payload) {
    Reader reader{payload};
    switch (kind) {
    case Kind::Null: return data::Value{};
    case Kind::Bool: return data::Value{reader.Number(1) != 0};
    case Kind::Whole: return data::Value{static_cast<std::int64_t>(reader.Number(8))};
    case Kind::Floating: {
        const std::uint64_t bits = reader.Number(8);
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return data::Value{number};
    }
    case Kind::Text: return data::Value{std::string(payload)};
    case Kind::Binary: return data::Value{data::Bytes(payload.begin(), payload.end())};
    }
    return std::nullopt;
}

// Streams may give less than asked for in one call.
bool ReadFully(IStream& stream, void* target, ULONG count) {
    auto* place = static_cast<char*>(target);
    while (count > 0) {
        ULONG got = 0;
        if (FAILED(stream.Read(place, count, &got)) || got == 0) return false;
        place += got;
        count -= got;
    }
    return true;
}

} // namespace

std::optional<data::Value> HostBag::Read(std::string_view name, const data::Value& wanted,
                                         BagWidth width) {
    const Bstr wide(name);
    // First as the wanted kind, which tells the bag what to convert to; then as it is kept.
    for (const VARTYPE type : {TypeFor(wanted, width), static_cast<VARTYPE>(VT_EMPTY)}) {
        Variant value;
        value.Address()->vt = type;
        if (SUCCEEDED(lclBag.Read(wide.Get(), value.Address(), lclLog))) {
            if (value.IsEmpty() || value.IsObject()) return std::nullopt;
            return data::win32::FromVariant(value.Get());
        }
        value.Address()->vt = VT_EMPTY; // what a failed call leaves is not to be freed
    }
    return std::nullopt;
}

std::optional<controls::FontFace> HostBag::ReadFont(std::string_view name) {
    const Bstr wide(name);
    for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN, VT_EMPTY}) {
        Variant value;
        value.Address()->vt = type;
        if (type != VT_EMPTY) value.Address()->punkVal = nullptr;
        if (FAILED(lclBag.Read(wide.Get(), value.Address(), lclLog))) {
            value.Address()->vt = VT_EMPTY;
            continue;
        }
        if (value.IsObject() && value.Get().punkVal) return FontFrom(value.ToDispatch());
    }
    return PropertyBag::ReadFont(name);
}

void HostBag::WriteFont(std::string_view name, const controls::FontFace& font) {
    const Bstr wide(name);
    Variant object(FontObject(font));
    if (FAILED(lclBag.Write(wide.Get(), object.Address()))) PropertyBag::WriteFont(name, font);
}

void HostBag::Write(std::string_view name, const data::Value& value, BagWidth width) {
    const Bstr wide(name);
    const auto type = width == BagWidth::Short ? data::AdoType::SmallInt : data::AdoType::Variant;
    Variant variant = data::win32::ToVariant(value, type);
    platform::win32::Check(lclBag.Write(wide.Get(), variant.Address()), "Kavidex");
}

std::optional<data::Value> StreamBag::Read(std::string_view name, const data::Value&, BagWidth) {
    const auto found = lclItems.find(name);
    if (found == lclItems.end()) return std::nullopt;
    return found->second;
}

void StreamBag::Write(std::string_view name, const data::Value& value, BagWidth) {
    lclItems.insert_or_assign(std::string(name), value);
}

std::string StreamBag::Bytes() const {
    std::string body;
    for (const auto& [name, value] : lclItems) {
        const std::string payload = Payload(value);
        PutNumber(body, name.size(), 2);
        body += name;
        PutNumber(body, value.index(), 1);
        PutNumber(body, payload.size(), 4);
        body += payload;
    }
    return body;
}

bool StreamBag::Parse(std::string_view bytes) {
    std::map<std::string, data::Value, std::less<>> items;
    Reader reader{bytes};
    while (!reader.bytes.empty()) {
        const std::string name(reader.Take(reader.Number(2)));
        const auto kind = static_cast<Kind>(reader.Number(1));
        const auto payload = reader.Take(reader.Number(4));
        if (!reader.good) return false;
        if (auto value = FromPayload(kind, payload))
            items.insert_or_assign(name, *std::move(value));
    }
    lclItems = std::move(items);
    return true;
}

bool StreamBag::Load(IStream& stream) {
    char head[8];
    if (!ReadFully(stream, head, sizeof head) || std::memcmp(head, magic, sizeof magic) != 0)
        return false;
    Reader length{{head + 4, 4}};
    const auto size = static_cast<std::uint32_t>(length.Number(4));
    if (size > longest) return false;
    std::string body(size, '\0');
    return ReadFully(stream, body.data(), size) && Parse(body);
}

HRESULT StreamBag::Save(IStream& stream) const {
    const std::string body = Bytes();
    std::string bytes(magic, sizeof magic);
    PutNumber(bytes, body.size(), 4);
    bytes += body;
    ULONG written = 0;
    const HRESULT result = stream.Write(bytes.data(), static_cast<ULONG>(bytes.size()), &written);
    if (FAILED(result)) return result;
    return written == bytes.size() ? S_OK : STG_E_MEDIUMFULL;
}

std::size_t StreamBag::Size() const { return Bytes().size() + 8; }

} // namespace kavidex::com
