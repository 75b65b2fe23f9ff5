// The small objects of ADODB: Fields and Field, Properties and Property, Errors and Error. Each
// collection makes its members when they are asked for; all keep alive what they speak of.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "com/adodb/CommandObject.h"
#include "com/adodb/RecordsetObject.h"

namespace kavidex::com::adodb {

class FieldObject : public Reporting {
public:
    FieldObject(ComPtr<RecordsetObject> recordset, std::size_t index)
        : lclRecordset(std::move(recordset)), lclIndex(index) {}
    const Table& Members() const override;

    const data::Field& About() const { return lclRecordset->Rows().Fields()[lclIndex]; }
    Variant Value() const { return lclRecordset->Value(lclIndex); }
    void SetValue(const Variant& value) { lclRecordset->SetValue(lclIndex, value); }
    std::int32_t ActualSize() const; // bytes, as ADO counts them; -1 is never given
    std::int32_t Attributes() const;
    ComPtr<IDispatch> Properties() const;

protected:
    ConnectionObject* Reporter() override;

private:
    ComPtr<RecordsetObject> lclRecordset;
    std::size_t lclIndex;
};

class FieldsObject : public Reporting {
public:
    explicit FieldsObject(ComPtr<RecordsetObject> recordset) : lclRecordset(std::move(recordset)) {}
    const Table& Members() const override;

    std::int32_t Count() const;
    Variant Item(const Variant& index) const;
    ComPtr<IUnknown> NewEnum() const;

protected:
    ConnectionObject* Reporter() override;

private:
    ComPtr<RecordsetObject> lclRecordset;
};

struct Property {
    std::string name;
    Variant value;
};

class PropertyObject : public Automation {
public:
    explicit PropertyObject(Property given) : property(std::move(given)) {}
    const Table& Members() const override;
    const Property property;
};

class PropertiesObject : public Automation {
public:
    // `find` throws for an unknown name; `names` are those that enumeration shows.
    PropertiesObject(std::vector<std::string> names,
                     std::function<Variant(const std::string&)> find)
        : lclNames(std::move(names)), lclFind(std::move(find)) {}
    const Table& Members() const override;

    std::int32_t Count() const { return static_cast<std::int32_t>(lclNames.size()); }
    Variant Item(const Variant& index) const;
    ComPtr<IUnknown> NewEnum() const;

private:
    std::vector<std::string> lclNames;
    std::function<Variant(const std::string&)> lclFind;
};

class ErrorObject : public Automation {
public:
    explicit ErrorObject(data::ErrorDetail given) : detail(std::move(given)) {}
    const Table& Members() const override;
    const data::ErrorDetail detail;
};

class ErrorsObject : public Automation {
public:
    explicit ErrorsObject(ComPtr<ConnectionObject> connection)
        : lclConnection(std::move(connection)) {}
    const Table& Members() const override;

    std::int32_t Count() const {
        return static_cast<std::int32_t>(lclConnection->ErrorList().size());
    }
    Variant Item(const Variant& index) const;
    void Clear() { lclConnection->ErrorList().clear(); }
    ComPtr<IUnknown> NewEnum() const;

private:
    ComPtr<ConnectionObject> lclConnection;
};

class ParametersObject : public Automation {
public:
    explicit ParametersObject(ComPtr<CommandObject> command) : lclCommand(std::move(command)) {}
    const Table& Members() const override;

    std::int32_t Count() const {
        return static_cast<std::int32_t>(lclCommand->ParameterList().size());
    }
    Variant Item(const Variant& index) const;
    void Append(const ComPtr<IDispatch>& parameter);
    void Delete(const Variant& index);
    ComPtr<IUnknown> NewEnum() const;

private:
    ComPtr<CommandObject> lclCommand;
};

// The place in a collection of `count` that a number means; throws errors::itemNotFound.
std::size_t PlaceOf(const Variant& index, std::size_t count);

} // namespace kavidex::com::adodb
