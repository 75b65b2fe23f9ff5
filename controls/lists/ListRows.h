// Where a list's rows come from: anything that can be asked by position, or a recordset.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data/Recordset.h"

namespace kavidex::controls {

class ListRows {
public:
    virtual ~ListRows() = default;
    virtual std::size_t Count() const = 0;
    // Tells rows apart, whatever their order.
    virtual std::int32_t Id(std::size_t row) const = 0;
    virtual std::string Text(std::size_t row, std::string_view field) const = 0;
    // Appends what compares, byte by byte, as the rows sort by the field. Many keys share one text:
    // a hundred thousand of their own cost more than the sorting.
    virtual void SortKey(std::size_t row, std::string_view field, std::string& to) const;
    virtual bool HasPictures() const { return false; }
    virtual std::string Picture(std::size_t) const { return {}; }
};

// The rows of a recordset, in its order; values are shown as text, trimmed, and sorted by what they
// are. `idField` names a number; `typeField`, when there is one, an item type or file extension
// that chooses the picture.
class RecordsetRows : public ListRows {
public:
    RecordsetRows(data::RecordsetPtr rows, std::string_view idField,
                  std::string_view typeField = {});

    std::size_t Count() const override;
    std::int32_t Id(std::size_t row) const override;
    std::string Text(std::size_t row, std::string_view field) const override;
    void SortKey(std::size_t row, std::string_view field, std::string& to) const override;
    bool HasPictures() const override { return !lclTypeField.empty(); }
    std::string Picture(std::size_t row) const override;

private:
    const data::Value& At(std::size_t row, std::string_view field) const;

    data::RecordsetPtr lclRows;
    std::string lclIdField, lclTypeField;
};

} // namespace kavidex::controls
