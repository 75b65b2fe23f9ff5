#include "data/embedded/Prepared.h"

#include "data/embedded/Arguments.h"
#include "data/embedded/Types.h"

namespace kavidex::data::embedded {

namespace {

std::string OrEmpty(const char* text) { return text ? text : ""; }

AdoType TypeOfKind(RowStore::Kind kind) {
    switch (kind) {
    case RowStore::Kind::Integer: return AdoType::Integer;
    case RowStore::Kind::Double: return AdoType::Double;
    case RowStore::Kind::Binary: return AdoType::LongVarBinary;
    default: return AdoType::VarWChar;
    }
}

} // namespace

FieldsPtr DescribeFields(sqlite3* database, sqlite3_stmt* statement, int hidden) {
    auto fields = std::make_shared<std::vector<Field>>();
    const int count = sqlite3_column_count(statement) - hidden;
    fields->reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Field field;
        field.name = OrEmpty(sqlite3_column_name(statement, i));
        field.baseTable = OrEmpty(sqlite3_column_table_name(statement, i));
        field.baseColumn = OrEmpty(sqlite3_column_origin_name(statement, i));
        const DeclaredType declared = ReadDeclared(OrEmpty(sqlite3_column_decltype(statement, i)));
        field.type = declared.type;
        field.definedSize = declared.size;
        int notNull = 0, key = 0, counter = 0;
        if (!field.baseTable.empty() &&
            sqlite3_table_column_metadata(database, "main", field.baseTable.c_str(),
                                          field.baseColumn.c_str(), nullptr, nullptr, &notNull,
                                          &key, &counter) == SQLITE_OK) {
            field.key = key != 0;
            field.nullable = notNull == 0 && key == 0;
        }
        fields->push_back(std::move(field));
    }
    return fields;
}

FieldsPtr TypedByValue(const FieldsPtr& fields, const RowStore& rows) {
    std::shared_ptr<std::vector<Field>> typed;
    for (std::size_t column = 0; column < fields->size(); ++column) {
        if (!(*fields)[column].baseColumn.empty()) continue;
        for (std::size_t row = 0; row < rows.Rows(); ++row) {
            const RowStore::Kind kind = rows.At(row, column).kind;
            if (kind == RowStore::Kind::Null) continue;
            const AdoType type = TypeOfKind(kind);
            if (type == (*fields)[column].type) break;
            if (!typed) typed = std::make_shared<std::vector<Field>>(*fields);
            (*typed)[column].type = type;
            (*typed)[column].definedSize = type == AdoType::Integer  ? 4
                                           : type == AdoType::Double ? 8
                                                                     : 0;
            break;
        }
    }
    return typed ? typed : fields;
}

LastRow::LastRow(sqlite3_stmt* statement, const Ties& ties) {
    const int count = sqlite3_column_count(statement);
    for (const int column : ties.compared) {
        lclColumns.push_back(column >= 0 ? column : count - ties.hidden - 1 - column);
        lclValues.push_back(sqlite3_value_dup(sqlite3_column_value(statement, lclColumns.back())));
    }
}

LastRow::~LastRow() {
    for (sqlite3_value* value : lclValues) sqlite3_value_free(value);
}

bool LastRow::EqualTo(sqlite3_stmt* statement) const {
    for (std::size_t i = 0; i < lclColumns.size(); ++i) {
        sqlite3_value* const kept = lclValues[i];
        const int column = lclColumns[i], type = sqlite3_column_type(statement, column);
        if (!kept) return false;
        if (type == SQLITE_NULL || IsNullArgument(kept)) {
            if (type != sqlite3_value_type(kept)) return false;
        } else if (type == SQLITE_TEXT && sqlite3_value_type(kept) == SQLITE_TEXT) {
            const auto* text =
                reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
            if (!text || !platform::EqualNoCase(RawText(kept), text)) return false;
        } else if (sqlite3_column_double(statement, column) != sqlite3_value_double(kept)) {
            return false;
        }
    }
    return true;
}

} // namespace kavidex::data::embedded
