#include "com/adodb/CommandObject.h"

#include <cctype>

#include "com/adodb/Collections.h"
#include "com/adodb/Interfaces.h"
#include "data/Error.h"
#include "data/win32/Convert.h"
#include "platform/text.h"

namespace kavidex::com::adodb {

namespace {

constexpr const char* source = "Kavidex.Command";
constexpr std::int32_t textCommand = 1, tableCommand = 2, procedureCommand = 4, directTable = 512;
constexpr std::int32_t kinds = textCommand | tableCommand | procedureCommand | directTable;

std::string_view FirstWord(std::string_view statement) {
    const auto letter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
    while (!statement.empty() && !letter(statement.front()) && statement.front() != '[')
        statement.remove_prefix(1);
    std::size_t length = 0;
    while (length < statement.size() && letter(statement[length])) ++length;
    return statement.substr(0, length);
}

} // namespace

bool HasNoRows(const std::string& statement) {
    const std::string_view word = FirstWord(statement);
    for (const char* known : {"insert", "update", "delete", "create", "alter", "drop"})
        if (platform::EqualAsciiNoCase(word, known)) return true;
    return false;
}

data::Command CommandOf(const std::string& text, std::int32_t options) {
    const std::int32_t kind = options < 0 ? 0 : options & kinds;
    // Without a kind, a text of one word is a table's name.
    const std::string trimmed = platform::Trim(text);
    const bool oneWord = !trimmed.empty() && trimmed.find_first_of(" \t\r\n(") == std::string::npos;
    if (kind == procedureCommand) return {text, data::CommandType::StoredProcedure, {}};
    if (kind == tableCommand || kind == directTable || (kind == 0 && oneWord))
        return {"select * from " + text, data::CommandType::Text, {}};
    return {text, data::CommandType::Text, {}};
}

ComPtr<ParameterObject> ParameterObject::From(IDispatch* object) {
    return ComPtr<IDispatch>(object).Query<ParameterObject>(iidParameterObject);
}

void* ParameterObject::Further(REFIID iid) { return iid == iidParameterObject ? this : nullptr; }

data::Parameter ParameterObject::Spec() const {
    const auto type = static_cast<data::AdoType>(state.type);
    return {state.name, type, state.direction, state.size,
            data::win32::FromVariant(state.value.Get(), type)};
}

ComPtr<CommandObject> CommandObject::From(IDispatch* object) {
    return ComPtr<IDispatch>(object).Query<CommandObject>(iidCommandObject);
}

void* CommandObject::Further(REFIID iid) { return iid == iidCommandObject ? this : nullptr; }

data::Command CommandObject::Spec() const {
    data::Command command = CommandOf(state.text, state.type);
    for (const auto& parameter : lclParameters) command.parameters.push_back(parameter->Spec());
    return command;
}

Variant CommandObject::ActiveConnection() const {
    return lclConnection ? Variant(lclConnection) : Variant(static_cast<IDispatch*>(nullptr));
}

void CommandObject::SetActiveConnection(const Variant& connection) {
    lclConnection = ConnectionFor(connection);
}

ComPtr<IDispatch> CommandObject::Execute(std::int64_t& touched,
                                         const std::optional<Variant>& values,
                                         std::optional<std::int32_t> options) {
    if (!lclConnection)
        throw data::Error(data::errors::objectClosed, "The command has no connection.", source);
    data::Command command = Spec();
    if (options.value_or(-1) > 0) command.type = CommandOf(state.text, *options).type;
    if (values && values->IsArray()) {
        const auto list = platform::win32::ElementsOf(values->Get());
        for (std::size_t i = 0; i < list.size() && i < command.parameters.size(); ++i)
            if (!list[i].IsMissing())
                command.parameters[i].value =
                    data::win32::FromVariant(list[i].Get(), command.parameters[i].type);
    }
    data::Connection& connection = lclConnection->NeedOpen();
    touched = -1;
    if (command.parameters.empty() && command.type == data::CommandType::Text &&
        HasNoRows(command.text)) {
        touched = connection.Execute(command.text);
        return Make<RecordsetObject>(lclConnection, nullptr);
    }
    return Make<RecordsetObject>(lclConnection, connection.Open(command));
}

ComPtr<IDispatch> CommandObject::CreateParameter(std::optional<std::string> name,
                                                 std::optional<std::int32_t> type,
                                                 std::optional<std::int32_t> direction,
                                                 std::optional<std::int32_t> size,
                                                 std::optional<Variant> value) {
    auto made = ComPtr<ParameterObject>::Attach(new ParameterObject);
    made->state.name = name.value_or("");
    made->state.type = type.value_or(0);
    made->state.direction = direction.value_or(1);
    made->state.size = size.value_or(0);
    if (value) made->state.value = *value;
    return ComPtr<IDispatch>(made.Get());
}

ComPtr<IDispatch> CommandObject::Parameters() {
    return Make<ParametersObject>(ComPtr<CommandObject>(this));
}

std::size_t CommandObject::ParameterIndex(const Variant& index) const {
    if (index.IsNumber()) return PlaceOf(index, lclParameters.size());
    const std::string name = index.ToText();
    for (std::size_t i = 0; i < lclParameters.size(); ++i)
        if (platform::EqualNoCase(lclParameters[i]->state.name, name)) return i;
    throw data::Error(data::errors::itemNotFound, "There is no parameter " + name + ".", source);
}

namespace {

using CommandRow = Rows<CommandObject>;
using Self = CommandObject;

constexpr Member commandMembers[] = {
    CommandRow::Get<&Self::Parameters>(L"Parameters", 0),
    CommandRow::Get<&Self::ActiveConnection>(L"ActiveConnection", 1),
    CommandRow::Put<&Self::SetActiveConnection>(L"ActiveConnection", 1),
    CommandRow::Get<[](Self& self) { return self.state.text; }>(L"CommandText", 2),
    CommandRow::Put<[](Self& self, std::string text) { self.state.text = std::move(text); }>(
        L"CommandText", 2),
    CommandRow::Get<[](Self& self) { return self.state.timeout; }>(L"CommandTimeout", 3),
    CommandRow::Put<[](Self& self, std::int32_t value) { self.state.timeout = value; }>(
        L"CommandTimeout", 3),
    CommandRow::Get<[](Self& self) { return self.state.prepared; }>(L"Prepared", 4),
    CommandRow::Put<[](Self& self, bool value) { self.state.prepared = value; }>(L"Prepared", 4),
    CommandRow::Method<[](Self& self, std::optional<ByRef<Variant>>& touched,
                          std::optional<Variant> values, std::optional<std::int32_t> options) {
        std::int64_t count = -1;
        auto rows = self.Execute(count, values, options);
        if (touched) touched->value = Variant::Big(count);
        return rows;
    }>(L"Execute", 5, L"RecordsAffected,Parameters,Options"),
    CommandRow::Method<&Self::CreateParameter>(L"CreateParameter", 6,
                                               L"Name,Type,Direction,Size,Value"),
    CommandRow::Get<[](Self& self) { return self.state.type; }>(L"CommandType", 7),
    CommandRow::Put<[](Self& self, std::int32_t value) { self.state.type = value; }>(L"CommandType",
                                                                                     7),
    CommandRow::Get<[](Self& self) { return self.state.name; }>(L"Name", 8),
    CommandRow::Put<[](Self& self, std::string name) { self.state.name = std::move(name); }>(
        L"Name", 8),
    CommandRow::Get<[](Self&) { return 0; }>(L"State", 9),
};
constexpr Table commandTable{source, &iidCommand, commandMembers};

using ParameterRow = Rows<ParameterObject>;
using P = ParameterObject;

constexpr Member parameterMembers[] = {
    ParameterRow::Get<[](P& self) { return self.state.value; }>(L"Value", 0),
    ParameterRow::Put<[](P& self, Variant value) { self.state.value = std::move(value); }>(L"Value",
                                                                                           0),
    ParameterRow::Get<[](P& self) { return self.state.name; }>(L"Name", 1),
    ParameterRow::Put<[](P& self, std::string name) { self.state.name = std::move(name); }>(L"Name",
                                                                                            1),
    ParameterRow::Get<[](P& self) { return self.state.type; }>(L"Type", 2),
    ParameterRow::Put<[](P& self, std::int32_t value) { self.state.type = value; }>(L"Type", 2),
    ParameterRow::Get<[](P& self) { return self.state.direction; }>(L"Direction", 3),
    ParameterRow::Put<[](P& self, std::int32_t value) { self.state.direction = value; }>(
        L"Direction", 3),
    ParameterRow::Get<[](P& self) { return self.state.size; }>(L"Size", 4),
    ParameterRow::Put<[](P& self, std::int32_t value) { self.state.size = value; }>(L"Size", 4),
    ParameterRow::Get<[](P& self) { return self.state.precision; }>(L"Precision", 5),
    ParameterRow::Put<[](P& self, std::int32_t value) { self.state.precision = value; }>(
        L"Precision", 5),
    ParameterRow::Get<[](P& self) { return self.state.scale; }>(L"NumericScale", 6),
    ParameterRow::Put<[](P& self, std::int32_t value) { self.state.scale = value; }>(
        L"NumericScale", 6),
    ParameterRow::Get<[](P& self) { return self.state.attributes; }>(L"Attributes", 7),
    ParameterRow::Put<[](P& self, std::int32_t value) { self.state.attributes = value; }>(
        L"Attributes", 7),
};
constexpr Table parameterTable{"Kavidex.Parameter", &iidParameter, parameterMembers};

} // namespace

const Table& CommandObject::Members() const { return commandTable; }
const Table& ParameterObject::Members() const { return parameterTable; }

} // namespace kavidex::com::adodb
