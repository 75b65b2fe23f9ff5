#include "com/adodb/Collections.h"

#include "com/adodb/Interfaces.h"
#include "com/dispatch/Enumerator.h"
#include "data/Error.h"
#include "platform/text.h"

namespace kavidex::com::adodb {

std::size_t PlaceOf(const Variant& index, std::size_t count) {
    const std::int64_t place = index.ToInt64();
    if (place < 0 || place >= static_cast<std::int64_t>(count))
        throw data::Error(data::errors::itemNotFound,
                          "The collection has no item " + std::to_string(place) + ".",
                          "Kavidex.Collection");
    return static_cast<std::size_t>(place);
}

namespace {

// Every collection walks by its own count and item.
template <class Collection>
ComPtr<IUnknown> Walk(const Collection& collection) {
    const ComPtr<Collection> alive(const_cast<Collection*>(&collection));
    return MakeEnumerator([alive](std::size_t place) -> std::optional<Variant> {
        if (place >= static_cast<std::size_t>(alive->Count())) return std::nullopt;
        return alive->Item(Variant(static_cast<std::int32_t>(place)));
    });
}

} // namespace

std::int32_t FieldObject::ActualSize() const {
    const data::Value& value = lclRecordset->Rows().Get(lclIndex);
    if (const auto* text = std::get_if<std::string>(&value)) {
        const auto units = platform::ToUtf16(*text).size();
        const data::AdoType type = About().type;
        const bool wide = type == data::AdoType::WChar || type == data::AdoType::VarWChar ||
                          type == data::AdoType::LongVarWChar;
        return static_cast<std::int32_t>(wide ? 2 * units : units);
    }
    if (const auto* bytes = std::get_if<data::Bytes>(&value))
        return static_cast<std::int32_t>(bytes->size());
    return data::IsNull(value) ? 0 : static_cast<std::int32_t>(About().definedSize);
}

std::int32_t FieldObject::Attributes() const {
    constexpr std::int32_t updatable = 4, nullable = 0x20, mayBeNull = 0x40, keyColumn = 0x8000;
    const data::Field& field = About();
    return (field.baseColumn.empty() ? 0 : updatable) |
           (field.nullable ? nullable | mayBeNull : 0) | (field.key ? keyColumn : 0);
}

ComPtr<IDispatch> FieldObject::Properties() const {
    const data::Field field = About();
    return Make<PropertiesObject>(
        std::vector<std::string>{"BASECOLUMNNAME", "BASETABLENAME", "KEYCOLUMN"},
        [field](const std::string& name) {
            if (platform::EqualAsciiNoCase(name, "BASECOLUMNNAME"))
                return Variant(field.baseColumn);
            if (platform::EqualAsciiNoCase(name, "BASETABLENAME")) return Variant(field.baseTable);
            if (platform::EqualAsciiNoCase(name, "KEYCOLUMN")) return Variant(field.key);
            throw data::Error(data::errors::itemNotFound, "There is no property " + name + ".",
                              "Kavidex.Field");
        });
}

ConnectionObject* FieldObject::Reporter() {
    return ConnectionObject::From(lclRecordset->ActiveConnection().ToDispatch().Get()).Get();
}

ConnectionObject* FieldsObject::Reporter() {
    return ConnectionObject::From(lclRecordset->ActiveConnection().ToDispatch().Get()).Get();
}

std::int32_t FieldsObject::Count() const {
    return lclRecordset->State() ? static_cast<std::int32_t>(lclRecordset->Rows().Fields().size())
                                 : 0;
}

Variant FieldsObject::Item(const Variant& index) const {
    return {Make<FieldObject>(lclRecordset, lclRecordset->FieldIndex(index))};
}

ComPtr<IUnknown> FieldsObject::NewEnum() const { return Walk(*this); }

Variant PropertiesObject::Item(const Variant& index) const {
    const std::string name =
        index.IsNumber() ? lclNames[PlaceOf(index, lclNames.size())] : index.ToText();
    return {Make<PropertyObject>(Property{name, lclFind(name)})};
}

ComPtr<IUnknown> PropertiesObject::NewEnum() const { return Walk(*this); }

Variant ErrorsObject::Item(const Variant& index) const {
    const auto& list = lclConnection->ErrorList();
    return {Make<ErrorObject>(list[PlaceOf(index, list.size())])};
}

ComPtr<IUnknown> ErrorsObject::NewEnum() const { return Walk(*this); }

Variant ParametersObject::Item(const Variant& index) const {
    return {lclCommand->ParameterList()[lclCommand->ParameterIndex(index)]};
}

void ParametersObject::Append(const ComPtr<IDispatch>& parameter) {
    auto known = ParameterObject::From(parameter.Get());
    if (!known)
        throw data::Error(data::errors::invalidArgument, "The object is no parameter of this kind.",
                          "Kavidex.Parameters");
    lclCommand->ParameterList().push_back(std::move(known));
}

void ParametersObject::Delete(const Variant& index) {
    auto& list = lclCommand->ParameterList();
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(lclCommand->ParameterIndex(index)));
}

ComPtr<IUnknown> ParametersObject::NewEnum() const { return Walk(*this); }

} // namespace kavidex::com::adodb
