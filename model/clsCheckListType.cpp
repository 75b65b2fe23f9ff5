#include "model/clsCheckListType.h"

#include <algorithm>
#include <limits>

#include "data/Error.h"
#include "data/logText.h"
#include "data/modData.h"
#include "model/Store.h"
#include "platform/Log.h"
#include "platform/Workstation.h"

namespace kavidex::model {
namespace {

std::int16_t ToInt16(const data::Value& value) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(
        std::clamp<std::int32_t>(data::ToInt32(value), Limits::min(), Limits::max()));
}

} // namespace

clsCheckListType::clsCheckListType(const platform::Workstation& workstation)
    : lclWorkstation(workstation) {}

std::int32_t clsCheckListType::GetType(std::string_view dossierType, std::string_view tabType) {
    if (dossierType.empty() && lclCheckListTabType.empty()) return 2;
    if (!tabType.empty())
        lclCheckListTabType = std::string(dossierType).append("^").append(tabType);
    lclFields.clear();
    lclUnread = false;
    if (!lclConnection) return 0;
    try {
        lclUnread = true;
        LoadFields();
        lclUnread = false;
        return 0;
    } catch (const std::exception& error) {
        lclWorkstation.log.Write("clsCheckListType.GetType", data::InLog(error));
        return -1;
    }
}

void clsCheckListType::LoadFields() {
    // The key stands between the quotes as it is.
    const data::RecordsetPtr rows = Store(lclConnection)
                                        .Read("Select * FROM tblCheckListFields where TabType = '" +
                                              lclCheckListTabType + "' Order by intOrder");
    for (; !rows->Eof(); rows->MoveNext()) {
        auto field = std::make_shared<clsField>();
        field->SetFieldId(data::ToInt32(rows->Get("Id")));
        field->SetFieldDescription(TrimmedText(rows->Get("FieldDescription")));
        field->SetFieldType(TrimmedText(rows->Get("FieldType")));
        field->SetOrder(ToInt16(rows->Get("intOrder")));
        field->SetNumberToRecieve(ToInt16(rows->Get("NumberToRecieve")));
        field->SetDescriptionsToCheck(TrimmedText(rows->Get("DescriptionsToCheck")));
        lclFields.push_back(std::move(field));
    }
    rows->Close();
}

void clsCheckListType::NewType() {
    lclFields.clear();
    lclUnread = false;
}

clsFieldPtr clsCheckListType::CreateField(std::int16_t order, std::string_view fieldDescription,
                                          std::int16_t numberToRecieve,
                                          std::string_view descriptionsToCheck,
                                          std::string_view fieldType) {
    auto field = std::make_shared<clsField>();
    field->SetOrder(order);
    field->SetFieldDescription(fieldDescription);
    field->SetNumberToRecieve(numberToRecieve);
    field->SetDescriptionsToCheck(descriptionsToCheck);
    field->SetFieldType(fieldType);
    lclFields.push_back(field);
    return field;
}

void clsCheckListType::DeleteRows() {
    Store(lclConnection)
        .Write("Delete from tblCheckListFields where TabType = " +
               data::SqlValue(lclCheckListTabType));
}

void clsCheckListType::UpdateCurrentType() {
    if (!lclConnection) return;
    if (lclUnread)
        throw data::Error(data::errors::badEof,
                          "The list " + lclCheckListTabType +
                              " could not be read, so it is not replaced.",
                          "clsCheckListType");
    const Store store(lclConnection);
    Transaction transaction(store, lclWorkstation);
    DeleteRows();
    for (const clsFieldPtr& field : lclFields)
        store.Write("Insert into tblChecklistFields (TabType , intOrder, FieldDescription, "
                    "FieldType, NumberToRecieve, DescriptionsToCheck) Values(" +
                    data::SqlValue(lclCheckListTabType) + "," + Number(field->Order()) + "," +
                    data::SqlValue(field->FieldDescription()) + "," +
                    data::SqlValue(field->FieldType()) + "," + Number(field->NumberToRecieve()) +
                    "," + data::SqlValue(field->DescriptionsToCheck()) + ")");
    transaction.Commit();
}

void clsCheckListType::DeleteCurrentType() {
    if (lclConnection) DeleteRows();
}

} // namespace kavidex::model
