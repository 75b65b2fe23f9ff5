// The faces of ADODB.Command, its Parameters and a Parameter.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "com/adodb/ConnectionObject.h"

namespace kavidex::com::adodb {

class ParameterObject : public Automation {
public:
    const Table& Members() const override;
    static ComPtr<ParameterObject> From(IDispatch* object);

    struct State {
        std::string name;
        std::int32_t type = 0, direction = 1, size = 0, precision = 0, scale = 0, attributes = 64;
        Variant value;
    } state;
    data::Parameter Spec() const;

protected:
    void* Further(REFIID iid) override;
};

class CommandObject : public Reporting {
public:
    static ComPtr<CommandObject> From(IDispatch* object);
    const Table& Members() const override;

    // What the command says, ready for an engine.
    data::Command Spec() const;
    const ComPtr<ConnectionObject>& Connection() const { return lclConnection; }

    Variant ActiveConnection() const;
    void SetActiveConnection(const Variant& connection);
    ComPtr<IDispatch> Execute(std::int64_t& touched, const std::optional<Variant>& values,
                              std::optional<std::int32_t> options);
    ComPtr<IDispatch> CreateParameter(std::optional<std::string> name,
                                      std::optional<std::int32_t> type,
                                      std::optional<std::int32_t> direction,
                                      std::optional<std::int32_t> size,
                                      std::optional<Variant> value);
    ComPtr<IDispatch> Parameters();
    std::vector<ComPtr<ParameterObject>>& ParameterList() { return lclParameters; }
    std::size_t ParameterIndex(const Variant& index) const;

    struct State {
        std::string text, name;
        std::int32_t type = 8, timeout = 30; // 8: adCmdUnknown, found out from the text
        bool prepared = false;
    } state;

protected:
    ConnectionObject* Reporter() override { return lclConnection.Get(); }
    void* Further(REFIID iid) override;

private:
    ComPtr<ConnectionObject> lclConnection;
    std::vector<ComPtr<ParameterObject>> lclParameters;
};

// A text with the command type that ADO's options give it: a table's name becomes its select.
data::Command CommandOf(const std::string& text, std::int32_t options);
// Whether the statement only changes things; such a statement answers with the rows touched.
bool HasNoRows(const std::string& statement);

} // namespace kavidex::com::adodb
