// Splitting and stapling while the host goes on to another dossier.
#include "tests/fakes/SmallTiff.h"
#include "tests/unit/controls/BinderFixture.h"

namespace kavidex::controls {
namespace {

struct PageTurns : Binder {
    const data::ConnectionPtr first = connection;
    const data::ConnectionPtr second = data::EmbeddedDatabase::Create(machine.Path("second.kvx"));
    const std::string temporary = machine.Path("temp");
    OwnTemporaryFolder own{temporary};

    void OpenIn(const data::ConnectionPtr& database) {
        connection = database;
        binder->SetDbConnection(nullptr);
        binder->SetDbConnection(database);
        ASSERT_EQ(Open("key"), 0);
    }
    // Of one page or two each.
    void Add(const std::vector<std::string>& names) {
        std::vector<std::string> files;
        for (const auto& name : names)
            files.push_back(File(name + ".tif", tests::SmallTiff(name == "een" ? "ab" : "c")));
        ASSERT_EQ(binder->AddFiles(files, "", 0, false, true), 0);
    }
    std::string Outline() {
        std::string lines;
        for (const auto& item : binder->treCorr().AllItems())
            lines += std::to_string(item->Id()) + " " + item->Description() + "\n";
        return lines;
    }
};

} // namespace

TEST_F(PageTurns, TheOtherDossierStaysAsItIsThoughItsDocumentsHaveTheSameIds) {
    machine.files.CreateDirectories(temporary);
    OpenIn(second);
    Setting("Storage", "DocumentPath", machine.Path("store"));
    Add({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"});
    const auto before = Outline();
    OpenIn(first);
    for (const char* entry : {"unpackwithdel", "withdel"}) {
        bool reached = true;
        for (int turn = 1; reached; ++turn) {
            ASSERT_LT(turn, 100);
            for (const char* name : {"een", "twee"})
                if (!binder->treCorr().GetItem(0, name)) Add({name});
            binder->treCorr().ClearSelectedItems();
            for (const char* name : {"een", "twee"})
                if (std::string_view(entry) == "withdel" || std::string_view(name) == "een")
                    binder->treCorr().NodeChecked(binder->treCorr().GetItem(0, name)->Id(), true);
            int pumps = 0;
            machine.busy.onPump = [&] {
                if (++pumps == turn) OpenIn(second);
            };
            machine.messages.shown.clear();
            binder->MenuChosen({entry, 0, {}});
            machine.busy.onPump = nullptr;
            reached = pumps >= turn;
            const auto where = std::string(entry) + ", turn " + std::to_string(turn);
            if (reached) {
                EXPECT_EQ(Outline(), before) << where;
                EXPECT_TRUE(turn > 1 || Told(": het dossier is gesloten")) << where;
                OpenIn(first);
            }
            EXPECT_TRUE(machine.files.List(temporary, "*.tif", false).empty()) << where;
        }
    }
}

} // namespace kavidex::controls
