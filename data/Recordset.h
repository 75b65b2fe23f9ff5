// A client-side, static, optimistically locked recordset, shaped like ADO's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/Value.h"

namespace kavidex::data {

struct Field {
    std::string name; // the column's name, or its alias in the statement
    AdoType type = AdoType::VarWChar;
    std::int64_t definedSize = 0; // characters or bytes as ADO counts them
    std::string baseTable;        // empty for an expression
    std::string baseColumn;       // empty for an expression
    bool key = false;             // part of the base table's primary key
    bool nullable = true;
};

// A closed recordset (State 0) comes from a statement without rows; all but IsOpen and Close then
// throw errors::objectClosed. Reading a field at BOF or EOF throws errors::badEof; a name that is
// no field errors::itemNotFound.
class Recordset {
public:
    virtual ~Recordset() = default;

    virtual bool IsOpen() const = 0;
    virtual void Close() = 0;

    virtual bool Eof() const = 0;
    virtual bool Bof() const = 0;
    virtual std::int64_t RecordCount() const = 0;
    // 1-based; 0 or below when there is no current row (-1 no rows, -2 BOF, -3 EOF as ADO has it).
    virtual std::int64_t AbsolutePosition() const = 0;
    // From 1; beyond the last row is EOF. Below 1 throws errors::invalidArgument.
    virtual void SetAbsolutePosition(std::int64_t position) = 0;
    virtual void Move(std::int64_t rows) = 0;
    virtual void MoveFirst() = 0;
    virtual void MoveLast() = 0;
    virtual void MoveNext() = 0;
    virtual void MovePrevious() = 0;

    virtual const std::vector<Field>& Fields() const = 0;
    // The current row's value, pending changes included; valid until the row or recordset moves.
    virtual const Value& Get(std::size_t field) const = 0;
    // Changes the current row in memory; Update writes it.
    virtual void Set(std::size_t field, Value value) = 0;

    virtual void AddNew() = 0;
    // Writes the pending changes; errors::rowChanged when someone else changed or removed the row.
    virtual void Update() = 0;
    virtual void CancelUpdate() = 0;
    // Deletes the current row; the next move leaves it.
    virtual void Delete() = 0;
    virtual void Requery() = 0;

    // "[Name] ASC, Other DESC" over the rows in memory, stable; an empty text restores the order
    // of the statement.
    virtual void SetSort(std::string_view order) = 0;
    virtual std::string Sort() const = 0;
    // "Name = 'x' and Id > 3" over the rows in memory; empty shows all rows.
    virtual void SetFilter(std::string_view criteria) = 0;
    virtual std::string Filter() const = 0;

    // The rows in the order of the statement without the filter, for reading only, with a current
    // row of their own; changes made afterwards are not seen in it. Engines without such copies
    // throw errors::featureNotAvailable.
    virtual std::unique_ptr<Recordset> Clone() const;

    // Conveniences over the above.
    std::size_t IndexOf(std::string_view name) const; // without case; throws errors::itemNotFound
    const Value& Get(std::string_view name) const { return Get(IndexOf(name)); }
    void Set(std::string_view name, Value value) { Set(IndexOf(name), std::move(value)); }
};

using RecordsetPtr = std::unique_ptr<Recordset>;

} // namespace kavidex::data
