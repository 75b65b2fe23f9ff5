// Recordsets made by hand, as answers of a RecordingConnection: they can be read, not written.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "data/rows/ClientRecordset.h"

namespace kavidex::tests {

struct Columns {
    std::vector<data::Field> fields;
    Columns(std::initializer_list<const char*> names) {
        for (const char* name : names) {
            fields.emplace_back();
            fields.back().name = name;
        }
    }
    Columns(std::initializer_list<data::Field> list) : fields(list) {}
};

inline data::RecordsetPtr MemoryRows(Columns columns, std::vector<std::vector<data::Value>> rows) {
    data::ResultRows result;
    result.rows.Clear(columns.fields.size());
    for (const auto& row : rows)
        for (const data::Value& value : row) result.rows.Add(value);
    result.fields = std::make_shared<std::vector<data::Field>>(std::move(columns.fields));
    return std::make_unique<data::ClientRecordset>(std::move(result), nullptr);
}

// The tables of a database as a schema rowset tells them.
inline data::RecordsetPtr TableRows(const std::vector<std::string>& names) {
    std::vector<std::vector<data::Value>> rows;
    for (const std::string& name : names) rows.push_back({name, std::string("TABLE")});
    return MemoryRows({"TABLE_NAME", "TABLE_TYPE"}, std::move(rows));
}

} // namespace kavidex::tests
