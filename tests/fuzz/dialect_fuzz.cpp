// The dialect's scanner and translator under arbitrary statements. What the translator lets through
// must be one statement that SQLite can at least judge, and must not leave the engine's hands.
#include <cstdint>
#include <memory>
#include <string_view>

#include "data/Error.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "data/embedded/Translator.h"

namespace {

using namespace kavidex::data;

// Opened once; everything a statement does is undone.
Connection& Database() {
    static const ConnectionPtr connection = EmbeddedDatabase::CreateInMemory();
    return *connection;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view statement(reinterpret_cast<const char*>(data), size);
    try {
        embedded::Shape shape;
        shape.Read(statement);
        // Reading a shape and translating must agree on the literals.
        const embedded::Translation translation = embedded::Translate(statement);
        if (translation.statements.empty()) __builtin_trap();
    } catch (const Error& error) {
        if (error.Number() != errors::syntax && error.Number() != errors::noTable) __builtin_trap();
        return 0;
    }
    Connection& database = Database();
    database.BeginTrans();
    try {
        const RecordsetPtr rows = database.Open({std::string(statement)});
        if (rows->IsOpen())
            for (; !rows->Eof(); rows->MoveNext())
                for (std::size_t i = 0; i < rows->Fields().size(); ++i) rows->Get(i);
    } catch (const Error&) { // refused by SQLite
    }
    database.RollbackTrans();
    if (database.Open({"Select count(*) from tblSettings"})->Get(0) != Value(std::int64_t{1}))
        __builtin_trap();
    return 0;
}
