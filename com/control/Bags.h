// Where a control's properties come from and go to: the host's property bag, or a stream of ours.
#pragma once

#include <windows.h>
#include <ocidl.h>

#include <map>
#include <string>

#include "controls/common/PropertyBag.h"

namespace kavidex::com {

// The host's own bag. A value that does not convert counts as absent.
class HostBag final : public controls::PropertyBag {
public:
    HostBag(IPropertyBag& bag, IErrorLog* log) : lclBag(bag), lclLog(log) {}
    std::optional<data::Value> Read(std::string_view name, const data::Value& wanted,
                                    controls::BagWidth width) override;
    void Write(std::string_view name, const data::Value& value, controls::BagWidth width) override;
    // As an object, the way hosts keep fonts; a bag that refuses objects gets the text.
    std::optional<controls::FontFace> ReadFont(std::string_view name) override;
    void WriteFont(std::string_view name, const controls::FontFace& font) override;

private:
    IPropertyBag& lclBag;
    IErrorLog* lclLog;
};

// Named values as bytes. The form: "KVX1", the number of bytes that follow (32 bits, little-endian
// as all numbers), then items of name length (16 bits), name (UTF-8), kind (8 bits), payload length
// (32 bits) and payload. Items of unknown name or kind are passed over, so that older and newer
// libraries read each other's streams.
class StreamBag final : public controls::PropertyBag {
public:
    std::optional<data::Value> Read(std::string_view name, const data::Value& wanted,
                                    controls::BagWidth width) override;
    void Write(std::string_view name, const data::Value& value, controls::BagWidth width) override;

    // Reads exactly what Save wrote. False, and nothing changed, when the bytes are not ours.
    bool Load(IStream& stream);
    HRESULT Save(IStream& stream) const;
    std::size_t Size() const;

    // The same without a stream; `bytes` begins behind the length.
    bool Parse(std::string_view bytes);
    std::string Bytes() const;

private:
    std::map<std::string, data::Value, std::less<>> lclItems;
};

} // namespace kavidex::com
