// The COM faces of the data room's classes: include it where rows take or return them.
#pragma once

#include "com/SharedFace.h"
#include "com/adodb/ConnectionFace.h"

namespace kavidex::data {
class clsTable;
class clsSettings;
} // namespace kavidex::data

namespace kavidex::com {

template <>
struct FaceOf<data::clsTable> {
    static ComPtr<IDispatch> Make(std::shared_ptr<data::clsTable> object);
};
template <>
struct FaceOf<data::clsSettings> {
    static ComPtr<IDispatch> Make(std::shared_ptr<data::clsSettings> object);
};

// New objects for hosts and scripts, over the machine itself.
ComPtr<IDispatch> NewEmbeddedDatabase();
ComPtr<IDispatch> NewTable();
ComPtr<IDispatch> NewSettings();

} // namespace kavidex::com
