#include "data/rows/RowSearch.h"

#include "data/Error.h"
#include "data/rows/RowOrder.h"

namespace kavidex::data {

namespace {

void NeedRow(const Recordset& rows) {
    if (rows.Eof() || rows.Bof())
        throw Error(errors::badEof, "There is no current row.", "Recordset");
}

} // namespace

void FindRow(Recordset& rows, std::string_view criteria, std::int64_t skip, Direction direction) {
    NeedRow(rows);
    const std::vector<Field>& fields = rows.Fields();
    RowStore current(fields.size());
    const RowTest meets = ParseFilter(criteria, fields, current);
    const std::int64_t step = direction == Direction::Forward ? 1 : -1;
    for (rows.Move(step * skip); !rows.Eof() && !rows.Bof(); rows.Move(step)) {
        current.Clear(fields.size());
        for (std::size_t i = 0; i < fields.size(); ++i) current.Add(rows.Get(i));
        if (meets(0)) return;
    }
}

std::string RowsAsText(Recordset& rows, std::int64_t count, const TextForm& form) {
    NeedRow(rows);
    std::string text;
    for (std::int64_t row = 0; (count < 0 || row < count) && !rows.Eof(); ++row, rows.MoveNext()) {
        for (std::size_t i = 0; i < rows.Fields().size(); ++i) {
            if (i > 0) text += form.column;
            const Value& value = rows.Get(i);
            text += IsNull(value) ? form.null : ToText(value);
        }
        text += form.row;
    }
    return text;
}

} // namespace kavidex::data
