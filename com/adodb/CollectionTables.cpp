// The members of the small objects as scripts see them.
#include "com/adodb/Collections.h"
#include "com/adodb/Interfaces.h"

namespace kavidex::com::adodb {

namespace {

template <class Collection>
constexpr Member item = Rows<Collection>::template Get<&Collection::Item>(L"Item", 0, L"Index");
template <class Collection>
constexpr Member count = Rows<Collection>::template Get<&Collection::Count>(L"Count", 1);
template <class Collection>
constexpr Member newEnum = Rows<Collection>::template Get<&Collection::NewEnum>(L"_NewEnum",
                                                                                DISPID_NEWENUM);

using Field = Rows<FieldObject>;
constexpr Member fieldMembers[] = {
    Field::Get<&FieldObject::Value>(L"Value", 0),
    Field::Put<&FieldObject::SetValue>(L"Value", 0),
    Field::Get<[](FieldObject& self) { return self.About().name; }>(L"Name", 1100),
    Field::Get<[](FieldObject& self) { return self.About().type; }>(L"Type", 1102),
    Field::Get<[](FieldObject& self) {
        return static_cast<std::int32_t>(self.About().definedSize);
    }>(L"DefinedSize", 1103),
    Field::Get<&FieldObject::ActualSize>(L"ActualSize", 1109),
    Field::Get<&FieldObject::Attributes>(L"Attributes", 1114),
    Field::Get<&FieldObject::Properties>(L"Properties", 500),
};
constexpr Table fieldTable{"Kavidex.Field", &iidField, fieldMembers};

constexpr Member fieldsMembers[] = {item<FieldsObject>, count<FieldsObject>, newEnum<FieldsObject>};
constexpr Table fieldsTable{"Kavidex.Fields", &iidFields, fieldsMembers};

using Named = Rows<PropertyObject>;
constexpr Member propertyMembers[] = {
    Named::Get<[](PropertyObject& self) { return self.property.value; }>(L"Value", 0),
    Named::Get<[](PropertyObject& self) { return self.property.name; }>(L"Name", 1),
    Named::Get<[](PropertyObject& self) {
        return static_cast<std::int32_t>(self.property.value.Type());
    }>(L"Type", 2),
};
constexpr Table propertyTable{"Kavidex.Property", &iidProperty, propertyMembers};

constexpr Member propertiesMembers[] = {item<PropertiesObject>, count<PropertiesObject>,
                                        newEnum<PropertiesObject>};
constexpr Table propertiesTable{"Kavidex.Properties", &iidProperties, propertiesMembers};

using Failed = Rows<ErrorObject>;
constexpr Member errorMembers[] = {
    Failed::Get<[](ErrorObject& self) { return self.detail.description; }>(L"Description", 0),
    Failed::Get<[](ErrorObject& self) { return self.detail.number; }>(L"Number", 1),
    Failed::Get<[](ErrorObject& self) { return self.detail.source; }>(L"Source", 2),
    Failed::Get<[](ErrorObject& self) { return self.detail.number; }>(L"NativeError", 3),
};
constexpr Table errorTable{"Kavidex.Error", &iidError, errorMembers};

constexpr Member errorsMembers[] = {item<ErrorsObject>, count<ErrorsObject>, newEnum<ErrorsObject>,
                                    Rows<ErrorsObject>::Method<&ErrorsObject::Clear>(L"Clear", 2)};
constexpr Table errorsTable{"Kavidex.Errors", &iidErrors, errorsMembers};

constexpr Member parametersMembers[] = {
    item<ParametersObject>, count<ParametersObject>, newEnum<ParametersObject>,
    Rows<ParametersObject>::Method<&ParametersObject::Append>(L"Append", 2, L"Object"),
    Rows<ParametersObject>::Method<&ParametersObject::Delete>(L"Delete", 3, L"Index")};
constexpr Table parametersTable{"Kavidex.Parameters", &iidParameters, parametersMembers};

} // namespace

const Table& FieldObject::Members() const { return fieldTable; }
const Table& FieldsObject::Members() const { return fieldsTable; }
const Table& PropertyObject::Members() const { return propertyTable; }
const Table& PropertiesObject::Members() const { return propertiesTable; }
const Table& ErrorObject::Members() const { return errorTable; }
const Table& ErrorsObject::Members() const { return errorsTable; }
const Table& ParametersObject::Members() const { return parametersTable; }

} // namespace kavidex::com::adodb
