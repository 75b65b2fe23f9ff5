// The COM faces of the model's classes: include it where rows take or return them.
#pragma once

#include "com/SharedFace.h"
#include "com/adodb/ConnectionFace.h"

namespace kavidex::model {
class clsTree;
class clsItem;
class clsItemCol;
class clsDocument;
class clsDossier;
class clsDossierDbRelations;
class clsUserAuth;
class clsCheckListType;
class clsField;
} // namespace kavidex::model

namespace kavidex::com {

template <class T>
struct ModelFace {
    static ComPtr<IDispatch> Make(std::shared_ptr<T> object);
};
template <>
struct FaceOf<model::clsTree> : ModelFace<model::clsTree> {};
template <>
struct FaceOf<model::clsItem> : ModelFace<model::clsItem> {};
template <>
struct FaceOf<model::clsItemCol> : ModelFace<model::clsItemCol> {};
template <>
struct FaceOf<model::clsDocument> : ModelFace<model::clsDocument> {};
template <>
struct FaceOf<model::clsDossier> : ModelFace<model::clsDossier> {};
template <>
struct FaceOf<model::clsDossierDbRelations> : ModelFace<model::clsDossierDbRelations> {};
template <>
struct FaceOf<model::clsUserAuth> : ModelFace<model::clsUserAuth> {};
template <>
struct FaceOf<model::clsCheckListType> : ModelFace<model::clsCheckListType> {};
template <>
struct FaceOf<model::clsField> : ModelFace<model::clsField> {};

// A new object for hosts and scripts, over the machine itself; each class has its own definition.
template <class T>
ComPtr<IDispatch> NewModelObject();

} // namespace kavidex::com
