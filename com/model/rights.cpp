// The members of clsUserAuth, clsCheckListType and clsField as hosts see them.
#include "com/dispatch/Enumerator.h"
#include "com/model/faces.h"
#include "kavidex_idl.h"
#include "model/clsCheckListType.h"
#include "model/clsField.h"
#include "model/clsUserAuth.h"
#include "platform/Error.h"
#include "platform/Workstation.h"

namespace kavidex::com {

namespace {

using model::clsCheckListType;
using model::clsField;
using model::clsFieldPtr;
using model::clsUserAuth;

using Auth = Rows<SharedFace<clsUserAuth>>;
using Text = ByRef<std::string>;

constexpr Member authMembers[] = {
    Auth::Get<&clsUserAuth::UserId>(L"UserId", 1),
    Auth::Put<&clsUserAuth::SetUserId>(L"UserId", 1),
    Auth::Get<&clsUserAuth::DbConnection>(L"DbConnection", 2),
    Auth::PutRef<&clsUserAuth::SetDbConnection>(L"DbConnection", 2),
    Auth::Method<&clsUserAuth::GetRight>(L"GetRight", 3, L"Key"),
    Auth::Method<&clsUserAuth::SetRight>(L"SetRight", 4, L"Key,Value"),
    Auth::Method<[](clsUserAuth& auth, Text& key, Text& value) {
        return auth.GetFirstRight(key.value, value.value);
    }>(L"GetFirstRight", 5, L"Key,Value"),
    Auth::Method<[](clsUserAuth& auth, Text& key, Text& value) {
        return auth.GetNextRight(key.value, value.value);
    }>(L"GetNextRight", 6, L"Key,Value"),
    Auth::Method<&clsUserAuth::LoadRights>(L"LoadRights", 7),
    Auth::Method<&clsUserAuth::SaveRights>(L"SaveRights", 8),
    Auth::Method<&clsUserAuth::DeleteRights>(L"DeleteRights", 9),
    Auth::Method<&clsUserAuth::RenameUser>(L"RenameUser", 10, L"OldName,NewName"),
    Auth::Method<[](clsUserAuth& auth) {
        return model::UseRights(platform::TheWorkstation(), auth.DbConnection());
    }>(L"UseRights", 11),
};
constexpr Table authTable{"Kavidex.clsUserAuth", &DIID__clsUserAuth, authMembers};

// The fields of a checklist as a collection counted from 1; a window on the list's own.
class FieldList : public Automation {
public:
    explicit FieldList(std::shared_ptr<clsCheckListType> list) : lclList(std::move(list)) {}
    const Table& Members() const override;

    std::int32_t Count() const { return static_cast<std::int32_t>(Fields().size()); }
    clsFieldPtr Item(std::int32_t place) const { return Fields()[Checked(place)]; }
    void Add(const clsFieldPtr& field) {
        if (!field)
            throw platform::Error(platform::errors::invalidArgument, "There is no field to add.",
                                  "Kavidex.clsCheckListType");
        auto fields = Fields();
        fields.push_back(field);
        lclList->SetCheckListFields(std::move(fields));
    }
    void Remove(std::int32_t place) {
        auto fields = Fields();
        fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(Checked(place)));
        lclList->SetCheckListFields(std::move(fields));
    }
    ComPtr<IUnknown> NewEnum() const {
        return MakeEnumerator([list = lclList](std::size_t place) -> std::optional<Variant> {
            const auto& fields = list->CheckListFields();
            if (place >= fields.size()) return std::nullopt;
            return Convert<clsFieldPtr>::To(fields[place]);
        });
    }

private:
    const std::vector<clsFieldPtr>& Fields() const { return lclList->CheckListFields(); }
    std::size_t Checked(std::int32_t place) const {
        if (place < 1 || place > Count())
            throw platform::Error(9, "Subscript out of range",
                                  "Kavidex.clsCheckListType"); // as Basic's collections
        return static_cast<std::size_t>(place - 1);
    }

    std::shared_ptr<clsCheckListType> lclList;
};

constexpr Member listMembers[] = {
    Rows<FieldList>::Get<&FieldList::Item>(L"Item", 0, L"Index"),
    Rows<FieldList>::Get<&FieldList::Count>(L"Count", 1),
    Rows<FieldList>::Method<&FieldList::Add>(L"Add", 2, L"Field"),
    Rows<FieldList>::Method<&FieldList::Remove>(L"Remove", 3, L"Index"),
    Rows<FieldList>::Get<&FieldList::NewEnum>(L"NewEnum", DISPID_NEWENUM),
};
constexpr Table listTable{"Kavidex.CheckListFields", &DIID__clsFields, listMembers};
const Table& FieldList::Members() const { return listTable; }

using TypeFace = SharedFace<clsCheckListType>;
using Type = Rows<TypeFace>;

constexpr Member typeMembers[] = {
    Type::Get<&clsCheckListType::DbConnection>(L"DbConnection", 1),
    Type::PutRef<&clsCheckListType::SetDbConnection>(L"DbConnection", 1),
    Type::Get<&clsCheckListType::CheckListId>(L"CheckListId", 2),
    Type::Put<&clsCheckListType::SetCheckListId>(L"CheckListId", 2),
    Type::Get<&clsCheckListType::CheckListTabType>(L"CheckListTabType", 3),
    Type::Put<&clsCheckListType::SetCheckListTabType>(L"CheckListTabType", 3),
    Type::Get<[](TypeFace& face) { return Make<FieldList>(face.Shared()); }>(L"CheckListFields", 4),
    Type::Method<&clsCheckListType::GetType>(L"GetType", 5, L"DossierType,TabType"),
    Type::Method<&clsCheckListType::NewType>(L"NewType", 6),
    Type::Method<&clsCheckListType::CreateField>(
        L"CreateField", 7, L"Order,FieldDescription,NumberToRecieve,DescriptionsToCheck,FieldType"),
    Type::Method<&clsCheckListType::UpdateCurrentType>(L"UpdateCurrentType", 8),
    Type::Method<&clsCheckListType::DeleteCurrentType>(L"DeleteCurrentType", 9),
};
constexpr Table typeTable{"Kavidex.clsCheckListType", &DIID__clsCheckListType, typeMembers};

using Field = Rows<SharedFace<clsField>>;

constexpr Member fieldMembers[] = {
    Field::Get<&clsField::FieldId>(L"FieldId", 1),
    Field::Put<&clsField::SetFieldId>(L"FieldId", 1),
    Field::Get<&clsField::FieldDescription>(L"FieldDescription", 2),
    Field::Put<&clsField::SetFieldDescription>(L"FieldDescription", 2),
    Field::Get<&clsField::Description>(L"Description", 3),
    Field::Put<&clsField::SetDescription>(L"Description", 3),
    Field::Get<&clsField::Order>(L"Order", 4),
    Field::Put<&clsField::SetOrder>(L"Order", 4),
    Field::Get<&clsField::FieldType>(L"FieldType", 5),
    Field::Put<&clsField::SetFieldType>(L"FieldType", 5),
    Field::Get<&clsField::NumberToRecieve>(L"NumberToRecieve", 6),
    Field::Put<&clsField::SetNumberToRecieve>(L"NumberToRecieve", 6),
    Field::Get<&clsField::DescriptionsToCheck>(L"DescriptionsToCheck", 7),
    Field::Put<&clsField::SetDescriptionsToCheck>(L"DescriptionsToCheck", 7),
    Field::Get<&clsField::FieldIsExternal>(L"FieldIsExternal", 8),
    Field::Put<&clsField::SetFieldIsExternal>(L"FieldIsExternal", 8),
    Field::Get<&clsField::FieldIsIndex>(L"FieldIsIndex", 9),
    Field::Put<&clsField::SetFieldIsIndex>(L"FieldIsIndex", 9),
    Field::Get<&clsField::Top>(L"Top", 10),
    Field::Put<&clsField::SetTop>(L"Top", 10),
    Field::Get<&clsField::Left>(L"Left", 11),
    Field::Put<&clsField::SetLeft>(L"Left", 11),
    Field::Get<&clsField::Height>(L"Height", 12),
    Field::Put<&clsField::SetHeight>(L"Height", 12),
    Field::Get<&clsField::Width>(L"Width", 13),
    Field::Put<&clsField::SetWidth>(L"Width", 13),
};
constexpr Table fieldTable{"Kavidex.clsField", &DIID__clsField, fieldMembers};

} // namespace

template <>
const Table& TableOf<clsUserAuth>() {
    return authTable;
}
template <>
const Table& TableOf<clsCheckListType>() {
    return typeTable;
}
template <>
const Table& TableOf<clsField>() {
    return fieldTable;
}

template <class T>
ComPtr<IDispatch> ModelFace<T>::Make(std::shared_ptr<T> object) {
    return SharedFace<T>::For(std::move(object));
}
template struct ModelFace<clsUserAuth>;
template struct ModelFace<clsCheckListType>;
template struct ModelFace<clsField>;

template <>
ComPtr<IDispatch> NewModelObject<clsUserAuth>() {
    return FaceOf<clsUserAuth>::Make(std::make_shared<clsUserAuth>(platform::TheWorkstation()));
}
template <>
ComPtr<IDispatch> NewModelObject<clsCheckListType>() {
    return FaceOf<clsCheckListType>::Make(
        std::make_shared<clsCheckListType>(platform::TheWorkstation()));
}
template <>
ComPtr<IDispatch> NewModelObject<clsField>() {
    return FaceOf<clsField>::Make(std::make_shared<clsField>());
}

} // namespace kavidex::com
