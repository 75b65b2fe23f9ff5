// A loop that reads and changes every row through the ADO engine, against the same loop made by
// hand: rows read in blocks that are kept, each changed on the object itself.
#include <objbase.h>

#include <stdexcept>
#include <string>

#include "bench/ratio.h"
#include "com/adodb/ConnectionObject.h"
#include "com/adodb/RecordsetObject.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/win32/LateAdoConnection.h"
#include "platform/win32/Late.h"
#include "platform/win32/Variant.h"

using namespace kavidex;
using platform::win32::Late;
using platform::win32::Variant;

namespace {

constexpr int rowCount = 10'000, rounds = 5;
constexpr std::int64_t blockRows = 256;
constexpr const char* statement = "select * from tblThing order by Id";

data::ConnectionPtr Filled() {
    const data::ConnectionPtr engine = data::EmbeddedDatabase::CreateInMemory();
    engine->Execute("create table tblThing (Id COUNTER CONSTRAINT IdThing PRIMARY KEY, "
                    "Name TEXT(255), Amount LONG, Made DATETIME)");
    engine->BeginTrans();
    for (int i = 0; i < rowCount; ++i)
        engine->Execute("insert into tblThing (Name, Amount, Made) values ('row " +
                        std::to_string(i) + "', 0, '2026-11-22 13:14:15')");
    engine->CommitTrans();
    return engine;
}

void Edit(data::Connection& connection) {
    const data::RecordsetPtr rows = connection.Open({statement});
    for (; !rows->Eof(); rows->MoveNext()) {
        rows->Set("Amount", data::ToInt64(rows->Get("Amount")) + 1);
        rows->Update();
    }
}

void EditByHand(const Late& connection) {
    const Late rows(connection.Call(L"Execute", {statement}));
    const Late amount = rows.Child(L"Fields").Child(L"Item", {"Amount"});
    const std::int64_t count = rows.Get(L"RecordCount").ToInt64();
    for (std::int64_t first = 1; first <= count; first += blockRows) {
        rows.Put(L"AbsolutePosition", {Variant::Big(first)});
        const Variant block = rows.Call(L"GetRows", {Variant::Big(blockRows)});
        const auto columns = platform::win32::ColumnsOf(block.Get());
        for (std::size_t i = 0; i < columns[2].size(); ++i) {
            rows.Put(L"AbsolutePosition", {Variant::Big(first + static_cast<std::int64_t>(i))});
            amount.Put(L"Value", {columns[2][i].ToInt32() + 1});
            rows.Call(L"Update");
        }
    }
}

} // namespace

int main() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const data::ConnectionPtr engine = Filled();
    const Late object(com::ComPtr<IDispatch>(com::Make<com::adodb::ConnectionObject>(engine)));
    data::win32::LateAdoConnection connection(object);
    const auto inTransaction = [&](auto work) {
        return [&engine, work] {
            engine->BeginTrans();
            work();
            engine->CommitTrans();
        };
    };
    const bench::Times times = bench::Measure(inTransaction([&] { Edit(connection); }),
                                              inTransaction([&] { EditByHand(object); }), rounds);
    const std::int64_t edits =
        data::ToInt64(engine->Open({"select sum(Amount) from tblThing"})->Get(0));
    if (edits != std::int64_t{2} * rounds * rowCount) {
        std::printf("%lld of the rows were changed\n", static_cast<long long>(edits));
        return 1;
    }
    return bench::AtMost("ADO: change each of 10,000 rows / block kept", times, 1.3) ? 0 : 1;
}
