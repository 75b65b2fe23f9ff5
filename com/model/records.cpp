// The members of the record classes as hosts see them: those that all share, and each one's own.
#include <array>

#include "com/model/faces.h"
#include "kavidex_idl.h"
#include "model/clsDocument.h"
#include "model/clsDossier.h"
#include "model/clsDossierDbRelations.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using model::clsDocument;
using model::clsDossier;
using model::clsDossierDbRelations;
using model::RecordClass;

template <class T>
using Own = Rows<SharedFace<T>>;

// Ids from 101 on.
template <class T>
constexpr std::array sharedMembers = {
    Own<T>::template Get<&RecordClass::TableName>(L"TableName", 101),
    Own<T>::template Put<&RecordClass::SetTableName>(L"TableName", 101),
    Own<T>::template Get<&RecordClass::Ordering>(L"Ordering", 102),
    Own<T>::template Put<&RecordClass::SetOrdering>(L"Ordering", 102),
    Own<T>::template Get<&RecordClass::Connected>(L"Connected", 103),
    Own<T>::template Method<&RecordClass::OpenDataSource>(L"OpenDataSource", 104),
    Own<T>::template Method<&RecordClass::CloseDataSource>(L"CloseDataSource", 105),
    Own<T>::template Method<&RecordClass::ReQuery>(L"ReQuery", 106),
    Own<T>::template Method<&RecordClass::LoadData>(L"LoadData", 107),
    Own<T>::template Method<&RecordClass::SaveNewRow>(L"SaveNewRow", 108),
    Own<T>::template Method<&RecordClass::UpdateCurrentRow>(L"UpdateCurrentRow", 109),
    Own<T>::template Method<&RecordClass::DeleteCurrentRow>(L"DeleteCurrentRow", 110),
    Own<T>::template Get<[](RecordClass& row) {
        return static_cast<std::int32_t>(row.RecordCount());
    }>(L"RecordCount", 111),
    Own<T>::template Get<[](RecordClass& row) {
        return static_cast<std::int32_t>(row.AbsolutePosition());
    }>(L"AbsolutePosition", 112),
    Own<T>::template Put<[](RecordClass& row, std::int32_t place) {
        row.SetAbsolutePosition(place);
    }>(L"AbsolutePosition", 112),
    Own<T>::template Get<&RecordClass::Eof>(L"EOF", 113),
    Own<T>::template Get<&RecordClass::Bof>(L"BOF", 114),
    Own<T>::template Method<[](RecordClass& row, std::int32_t rows) { row.Move(rows); }>(
        L"Move", 115, L"Rows"),
    Own<T>::template Method<&RecordClass::MoveFirst>(L"MoveFirst", 116),
    Own<T>::template Method<&RecordClass::MoveLast>(L"MoveLast", 117),
    Own<T>::template Method<&RecordClass::MoveNext>(L"MoveNext", 118),
    Own<T>::template Method<&RecordClass::MovePrevious>(L"MovePrevious", 119),
};

// A value property with the width of its column.
template <class T, auto get, auto set, auto size>
constexpr std::array<Member, 3> Column(const wchar_t* name, const wchar_t* sizeName, DISPID id) {
    return {Own<T>::template Get<get>(name, id), Own<T>::template Put<set>(name, id),
            Own<T>::template Get<size>(sizeName, id + 50)};
}
#define COLUMN(T, name, id)                                                                        \
    Column<T, &T::name, &T::Set##name, &T::name##_Size>(L"" #name, L"" #name "_Size", id)

template <std::size_t... sizes>
constexpr auto Joined(const std::array<Member, sizes>&... parts) {
    std::array<Member, (sizes + ...)> all{};
    std::size_t place = 0;
    const auto add = [&](const auto& part) {
        for (const Member& member : part) all[place++] = member;
    };
    (add(parts), ...);
    return all;
}

using Document = Own<clsDocument>;
constexpr std::array documentOwn = {
    Document::Get<&clsDocument::DatabaseObject>(L"DatabaseObject", 1),
    Document::PutRef<&clsDocument::SetDatabaseObject>(L"DatabaseObject", 1),
    Document::Get<&clsDocument::Criteria>(L"Criteria", 2),
    Document::Put<&clsDocument::SetCriteria>(L"Criteria", 2),
    Document::Get<&clsDocument::BaseSaveDirectory>(L"BaseSaveDirectory", 3),
    Document::Put<&clsDocument::SetBaseSaveDirectory>(L"BaseSaveDirectory", 3),
    Document::Method<&clsDocument::AddDocument>(L"AddDocument", 4,
                                                L"Source,FailIfExists,DeleteSource"),
    Document::Method<[](clsDocument& document, ByRef<std::string>& path) {
        return document.CreateEmptyDoc(path.value);
    }>(L"CreateEmptyDoc", 5, L"Path"),
};
constexpr auto documentMembers =
    Joined(documentOwn, COLUMN(clsDocument, Id, 11), COLUMN(clsDocument, DocId, 12),
           COLUMN(clsDocument, ExternalId, 13), COLUMN(clsDocument, InsertedBy, 14),
           COLUMN(clsDocument, InsertDate, 15), COLUMN(clsDocument, InsertTime, 16),
           COLUMN(clsDocument, Description, 17), COLUMN(clsDocument, RecievedFrom, 18),
           COLUMN(clsDocument, SendTo, 19), COLUMN(clsDocument, SendOn, 20),
           COLUMN(clsDocument, RecievedOn, 21), COLUMN(clsDocument, NumberOfAttatchements, 22),
           COLUMN(clsDocument, ReadOnly, 23), COLUMN(clsDocument, DocType, 24),
           sharedMembers<clsDocument>);
constexpr Table documentTable{"Kavidex.clsDocument", &DIID__clsDocument, documentMembers};

template <class T>
constexpr std::array connectionMembers = {
    Own<T>::template Get<&RecordClass::DbConnection>(L"DbConnection", 1),
    Own<T>::template PutRef<&RecordClass::SetDbConnection>(L"DbConnection", 1),
};

constexpr auto dossierMembers = Joined(
    connectionMembers<clsDossier>, COLUMN(clsDossier, Id, 11), COLUMN(clsDossier, DossierId, 12),
    COLUMN(clsDossier, DossierType, 13), COLUMN(clsDossier, ChildId, 14),
    COLUMN(clsDossier, ChildType, 15), COLUMN(clsDossier, TreeId, 16), sharedMembers<clsDossier>);
constexpr Table dossierTable{"Kavidex.clsDossier", &DIID__clsDossier, dossierMembers};

constexpr auto relationMembers =
    Joined(connectionMembers<clsDossierDbRelations>, COLUMN(clsDossierDbRelations, DbKey, 11),
           COLUMN(clsDossierDbRelations, DossierId, 12), sharedMembers<clsDossierDbRelations>);
constexpr Table relationTable{"Kavidex.clsDossierDbRelations", &DIID__clsDossierDbRelations,
                              relationMembers};

} // namespace

template <>
const Table& TableOf<clsDocument>() {
    return documentTable;
}
template <>
const Table& TableOf<clsDossier>() {
    return dossierTable;
}
template <>
const Table& TableOf<clsDossierDbRelations>() {
    return relationTable;
}

template <class T>
ComPtr<IDispatch> ModelFace<T>::Make(std::shared_ptr<T> object) {
    return SharedFace<T>::For(std::move(object));
}
template struct ModelFace<clsDocument>;
template struct ModelFace<clsDossier>;
template struct ModelFace<clsDossierDbRelations>;

template <>
ComPtr<IDispatch> NewModelObject<clsDocument>() {
    return FaceOf<clsDocument>::Make(std::make_shared<clsDocument>(platform::TheWorkstation()));
}
template <>
ComPtr<IDispatch> NewModelObject<clsDossier>() {
    return FaceOf<clsDossier>::Make(std::make_shared<clsDossier>(platform::TheWorkstation()));
}
template <>
ComPtr<IDispatch> NewModelObject<clsDossierDbRelations>() {
    return FaceOf<clsDossierDbRelations>::Make(
        std::make_shared<clsDossierDbRelations>(platform::TheWorkstation()));
}

} // namespace kavidex::com
