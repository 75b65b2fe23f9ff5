#include "model/RecordClass.h"

#include "data/logText.h"
#include "model/Store.h"
#include "platform/Error.h"
#include "platform/ErrorNumber.h"
#include "platform/Log.h"
#include "platform/Messages.h"
#include "platform/Workstation.h"

namespace kavidex::model {

RecordClass::RecordClass(const platform::Workstation& workstation, std::string_view table,
                         std::string_view title, std::string_view className)
    : lclWorkstation(workstation), lclTableName(table), lclTitle(title), lclClassName(className) {}

RecordClass::~RecordClass() {
    try {
        CloseDataSource();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write(lclClassName, data::InLog(error));
    }
}

bool RecordClass::OpenDataSource() {
    lclConnected = lclSaved = false;
    lclOpenFailed = true;
    return Guarded("OpenDataSource", [&] {
        lclRecordset = ReadRows(SelectStatement());
        const std::string other = lclRecordset->Eof() ? OtherStatement() : std::string();
        if (!other.empty()) lclRecordset = ReadRows(other);
        lclConnected = true;
        lclOpenFailed = false;
        if (AtRow()) RowChanged();
        return true;
    });
}

data::RecordsetPtr RecordClass::ReadRows(const std::string& statement) const {
    data::RecordsetPtr rows = Store(lclConnection).Read(statement);
    if (!LiveRows().empty()) rows->SetFilter(LiveRows());
    return rows;
}

void RecordClass::CloseDataSource() {
    lclOpenFailed = false;
    if (!lclRecordset || !lclConnected) return;
    if (lclRecordset->IsOpen()) lclRecordset->Close();
    lclRecordset.reset();
    lclConnected = false;
}

void RecordClass::ReQuery() {
    if (!lclConnected) return;
    CloseDataSource();
    OpenDataSource();
}

bool RecordClass::LoadData() {
    return Guarded("LoadData", [&] {
        if (!AtRow()) return false;
        ReadRow(*lclRecordset);
        return true;
    });
}

bool RecordClass::AtRow() const {
    return lclConnected && lclRecordset && lclRecordset->IsOpen() && !lclRecordset->Bof() &&
           !lclRecordset->Eof();
}

std::int64_t RecordClass::FieldSize(std::string_view column) const {
    if (!AtRow()) return 0;
    return lclRecordset->Fields()[lclRecordset->IndexOf(column)].definedSize;
}

std::int64_t RecordClass::RecordCount() const {
    return lclConnected ? lclRecordset->RecordCount() : 0;
}

std::int64_t RecordClass::AbsolutePosition() const {
    return lclConnected ? lclRecordset->AbsolutePosition() : 0;
}

void RecordClass::SetAbsolutePosition(std::int64_t position) {
    if (!lclConnected || position < 1) return;
    lclRecordset->SetAbsolutePosition(position);
    Moved();
}

bool RecordClass::Eof() const {
    return !lclConnected || lclRecordset->Eof() || lclRecordset->RecordCount() == 0;
}

bool RecordClass::Bof() const { return !lclConnected || lclRecordset->Bof(); }

void RecordClass::Moved() {
    lclSaved = false;
    if (AtRow()) RowChanged();
}

void RecordClass::Move(std::int64_t rows) {
    if (!lclConnected) return;
    lclRecordset->Move(rows);
    Moved();
}

void RecordClass::MovePrevious() {
    if (!lclConnected) return;
    lclRecordset->MovePrevious();
    Moved();
}

void RecordClass::MoveQuietly(void (data::Recordset::*move)()) {
    if (!lclConnected) return;
    try {
        if (lclRecordset->RecordCount() <= 0) return;
        (lclRecordset.get()->*move)();
        Moved();
    } catch (const std::exception& error) {
        lclWorkstation.log.Write(lclClassName, data::InLog(error));
    }
}

void RecordClass::MoveFirst() { MoveQuietly(&data::Recordset::MoveFirst); }
void RecordClass::MoveLast() { MoveQuietly(&data::Recordset::MoveLast); }
void RecordClass::MoveNext() { MoveQuietly(&data::Recordset::MoveNext); }

void RecordClass::ReportNoRow(std::string_view where) const {
    lclWorkstation.log.Write(lclClassName + "." + std::string(where), "There is no current row");
}

void RecordClass::Report(std::string_view where, const std::exception& error) const {
    const auto* const known = dynamic_cast<const platform::Error*>(&error);
    const std::int32_t number =
        known ? platform::ShownNumber(known->Number()) : platform::errors::fail;
    lclWorkstation.log.Write(lclClassName + "." + std::string(where), data::InLog(error));
    platform::Message message;
    message.caption = data::Translated(lclTranslation, lclTitle, {lclClassName});
    message.text = number == 0
                       ? data::Translated(lclTranslation, "An unknown runtime error has occured.")
                       : data::Translated(lclTranslation, "Error #$%$: $%$",
                                          {(number > 0 ? " " : "") + Number(number), error.what()});
    lclWorkstation.messages.Show(message);
}

} // namespace kavidex::model
