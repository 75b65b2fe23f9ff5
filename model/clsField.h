// One item that a checklist expects.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kavidex::model {

class clsField {
public:
    std::int32_t FieldId() const { return lclFieldId; } // the row's Id
    void SetFieldId(std::int32_t id) { lclFieldId = id; }
    const std::string& FieldDescription() const { return lclFieldDescription; }
    void SetFieldDescription(std::string_view text) { lclFieldDescription = text; }
    const std::string& Description() const { return lclDescription; }
    void SetDescription(std::string_view text) { lclDescription = text; }
    std::int16_t Order() const { return lclOrder; }
    void SetOrder(std::int16_t order) { lclOrder = order; }
    const std::string& FieldType() const { return lclFieldType; }
    void SetFieldType(std::string_view type) { lclFieldType = type; }
    std::int16_t NumberToRecieve() const { return lclNumberToRecieve; }
    void SetNumberToRecieve(std::int16_t number) { lclNumberToRecieve = number; }
    const std::string& DescriptionsToCheck() const { return lclDescriptionsToCheck; }
    void SetDescriptionsToCheck(std::string_view text) { lclDescriptionsToCheck = text; }

    // Flags and layout, not stored.
    bool FieldIsExternal() const { return lclFieldIsExternal; }
    void SetFieldIsExternal(bool external) { lclFieldIsExternal = external; }
    bool FieldIsIndex() const { return lclFieldIsIndex; }
    void SetFieldIsIndex(bool index) { lclFieldIsIndex = index; }
    std::int32_t Top() const { return lclTop; }
    void SetTop(std::int32_t top) { lclTop = top; }
    std::int32_t Left() const { return lclLeft; }
    void SetLeft(std::int32_t left) { lclLeft = left; }
    std::int32_t Height() const { return lclHeight; }
    void SetHeight(std::int32_t height) { lclHeight = height; }
    std::int32_t Width() const { return lclWidth; }
    void SetWidth(std::int32_t width) { lclWidth = width; }

private:
    std::int32_t lclFieldId = 0;
    std::string lclFieldDescription, lclDescription, lclFieldType, lclDescriptionsToCheck;
    std::int16_t lclOrder = 0, lclNumberToRecieve = 0;
    bool lclFieldIsExternal = false, lclFieldIsIndex = false;
    std::int32_t lclTop = 0, lclLeft = 0, lclHeight = 0, lclWidth = 0;
};

using clsFieldPtr = std::shared_ptr<clsField>;

} // namespace kavidex::model
