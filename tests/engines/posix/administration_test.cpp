// What an administrator keeps, over every engine: texts as they were typed, and two programs at the
// same time.
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <map>

#include "controls/admin/ctlChecklistEditor.h"
#include "controls/admin/ctlDefaultFolders.h"
#include "controls/admin/ctlRights.h"
#include "controls/settings/frmSettings.h"
#include "controls/tree/DefaultTabs.h"
#include "data/embedded/EmbeddedDatabase.h"
#include "model/Checklist.h"
#include "model/clsUserAuth.h"
#include "model/dossierTypes.h"
#include "model/post.h"
#include "platform/Error.h"
#include "tests/engines/ModelOverEngines.h"
#include "tests/fakes/FakeForms.h"

namespace kavidex::tests {

namespace {

class AdministrationOverEngines : public ModelOverEngines {
protected:
    template <class Editor>
    std::unique_ptr<Editor> Open(const data::ConnectionPtr& on) {
        return forms.EditorOn<Editor>(machine, on);
    }
    std::string Told() {
        return machine.messages.shown.empty() ? "" : machine.messages.shown.back().text;
    }
    // The work of each number in a process of its own with a connection of its own, at once.
    void InProcesses(int count, const std::function<void(int, const data::ConnectionPtr&)>& work) {
        std::vector<pid_t> processes;
        for (int number = 0; number < count; ++number) {
            const pid_t process = ::fork();
            if (process == 0) {
                int result = 1;
                try {
                    work(number, database->Connect());
                    result = testing::Test::HasFailure() ? 1 : 0;
                } catch (const std::exception& error) {
                    std::fprintf(stderr, "process %d: %s\n", number, error.what());
                }
                ::_exit(result);
            }
            processes.push_back(process);
        }
        for (const pid_t process : processes) {
            int status = 0;
            ::waitpid(process, &status, 0);
            EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
        }
    }

    FakeForms forms;
};

} // namespace

TEST_P(AdministrationOverEngines, TextsComeBackAsTheyWereTyped) {
    const std::string type = "Zaak \\ 'x'", user = "DOMEIN\\jan";
    const Store store(connection);
    const auto id = AddDossierType(machine, store, type, type);
    EXPECT_EQ(FindDossierType(machine, connection, type).id, id);
    for (int save = 0; save < 2; ++save) { // what is saved again does not grow
        const auto folders = Open<controls::ctlDefaultFolders>(connection);
        FormUser sees(folders->Form());
        sees.Click("btnNew");
        sees.EditItem("treFolders", sees.edited, save ? "In" : "Post");
        if (save) sees.PressKey("treFolders", 0x27, true); // below the one before it
        EXPECT_TRUE(folders->Save()) << Told();
        const auto lists = Open<controls::ctlChecklistEditor>(connection);
        FormUser writes(lists->Form());
        writes.Type("cmbTab", "Post");
        writes.Click("btnNew");
        writes.EditItem("lstLines", writes.edited, save ? "a" : "C:\\map\\*");
        EXPECT_TRUE(lists->Save()) << Told();
    }
    EXPECT_EQ(controls::DefaultTabs("Dossiertype=" + type, connection, machine),
              (std::vector<std::string>{"Post", "Post\\In"}));
    EXPECT_EQ(LoadChecklist(machine, connection, type + "^Post").at(0)->FieldDescription(),
              "C:\\map\\*");

    const auto place = MakeUserTree(machine, store, "Gebruikers");
    RightsHolder holder{0, 0, false, user, {}};
    holder.rights.set(3);
    AddHolder(machine, store, place, holder);
    const auto holders = LoadHolders(machine, store);
    ASSERT_EQ(holders.size(), 1U);
    EXPECT_EQ(holders[0].name, user);
    EXPECT_EQ(holders[0].rights, holder.rights);

    forms.users = {[&](FormUser& changes) {
        changes.Type("txtDocumentPath", "\\\\server\\deel");
        changes.Click("btnOk");
        EXPECT_TRUE(changes.Form().IsClosed()) << Told();
    }};
    controls::frmSettings(machine, connection, nullptr, nullptr).Show(forms);
    forms.users = {
        [&](FormUser& sees) { EXPECT_EQ(sees.Text("txtDocumentPath"), "\\\\server\\deel"); }};
    controls::frmSettings(machine, connection, nullptr, nullptr).Show(forms);
}

// Both begin where there are no users yet; each gives Jan the rights that it is there for, one at a
// time, and again when the other was first.
TEST_P(AdministrationOverEngines, TwoProgramsChangeTheSameRightsAndLoseNone) {
    constexpr int programs = 2, each = 13;
    InProcesses(programs, [&](int number, const data::ConnectionPtr& own) {
        const auto idOf = [](controls::ctlRights& editor, std::string_view name) {
            for (const auto& item : editor.Form()["treUsers"].Items())
                if (item.Cell() == name) return item.id;
            return 0;
        };
        const auto editor = Open<controls::ctlRights>(own);
        FormUser user(editor->Form());
        const auto until = [&](const std::function<bool()>& change) {
            for (int tries = 0; tries < 200; ++tries) {
                if (change() && editor->Save()) return;
                editor->Undo();
            }
            ADD_FAILURE() << number << ": " << Told();
        };
        until([&] {
            if (idOf(*editor, "Jan") != 0) return true;
            user.Click("btnUser");
            return user.EditItem("treUsers", user.edited, "Jan");
        });
        for (int i = 0; i < each; ++i)
            until([&] {
                user.Choose("treUsers", idOf(*editor, "Jan"));
                user.TickItem("treRights", 101 + number * each + i);
                return true;
            });
    });
    const auto holders = LoadHolders(machine, Store(connection));
    ASSERT_EQ(holders.size(), 1U);
    EXPECT_TRUE(holders[0].rights.all()) << holders[0].rights;
    EXPECT_EQ(Number("select count(*) from tblTree"), 1);
}

TEST_P(AdministrationOverEngines, TwoProgramsMakeTheSameTypesOnce) {
    constexpr int types = 8;
    InProcesses(2, [&](int number, const data::ConnectionPtr& own) {
        FakeForms asks;
        const auto editor = asks.EditorOn<controls::ctlDefaultFolders>(machine, own);
        FormUser user(editor->Form());
        std::string name;
        const auto known = [&] {
            for (const auto& item : editor->Form()["cmbType"].Items())
                if (item.Cell() == name) return true;
            return false;
        };
        for (int type = 0; type < types; ++type) {
            name = "Zaak " + std::to_string(type);
            for (int tries = 0; tries < 50 && !known(); ++tries) {
                asks.users = {[&](FormUser& named) {
                    named.Type("txtName", name.c_str());
                    named.Click("btnOk");
                }};
                user.Click("btnNewType");
                editor->Refresh();
            }
            EXPECT_TRUE(known()) << number << ": " << Told();
        }
    });
    EXPECT_EQ(Number("select count(*) from tblDossierTypes"), types);
}

// Three hand out the same post, each to a user of its own, and take some of it back.
TEST_P(AdministrationOverEngines, PostIsInOneFolderWhoeverHandsItOut) {
    constexpr int programs = 3, letters = 12;
    const Store store(connection);
    const auto place = MakeUserTree(machine, store, "Gebruikers");
    const auto folder = PostFolder(machine, store, place, "Post");
    const auto tree = Tree(place.tree);
    std::vector<RightsHolder> users;
    for (const char* name : {"Jan", "Piet", "Kees"}) {
        users.push_back({0, 0, false, name, {}});
        users.back().id = AddHolder(machine, store, place, users.back());
    }
    for (int i = 0; i < letters; ++i)
        ASSERT_TRUE(tree->AddChildItem(0, "tif", nullptr, i, "Brief", folder));
    const auto act = [&](const Store& on, const std::function<PostResult()>& work) {
        for (int tries = 0; tries < 50; ++tries) try {
                Transaction transaction(on, machine);
                const auto result = work();
                if (result == PostResult::Done) transaction.Commit();
                return result;
            } catch (
                const platform::Error&) { // a server may end one of two who wait for each other
                ::usleep(2000);
            }
        ADD_FAILURE() << "never got through";
        return PostResult::Gone;
    };
    InProcesses(programs, [&](int number, const data::ConnectionPtr& own) {
        const Store on(own);
        const auto& user = users[static_cast<std::size_t>(number)];
        int given = 0;
        for (const auto& letter : PostIn(on, folder)) {
            const NodeId items[] = {letter.id};
            if (act(on, [&] {
                    return GivePost(machine, on, place, folder, items, user, "Lees dit");
                }) != PostResult::Done)
                continue;
            if (++given % 5 != 0) continue;
            const auto box = PostBoxes(on, place).at(user.id).folder;
            EXPECT_EQ(act(on, [&] { return TakePostBack(on, box, items, folder); }),
                      PostResult::Done);
        }
    });
    std::map<NodeId, int> met;
    for (const auto& letter : PostIn(store, folder)) ++met[letter.id];
    const auto boxes = PostBoxes(store, place);
    EXPECT_LE(boxes.size(), users.size());
    for (const auto& [user, box] : boxes) {
        const auto items = PostIn(store, box.folder);
        EXPECT_EQ(static_cast<int>(items.size()), box.count);
        for (const auto& letter : items) {
            ++met[letter.id];
            EXPECT_EQ(letter.from, folder);
            EXPECT_EQ(letter.remark, "Lees dit");
        }
    }
    EXPECT_EQ(met.size(), static_cast<std::size_t>(letters));
    for (const auto& [letter, times] : met) EXPECT_EQ(times, 1) << letter;
    EXPECT_EQ(Number("select count(*) from tblTreeItem where Type = 'userpost'"),
              static_cast<std::int32_t>(boxes.size()));
}

KAVIDEX_OVER_ENGINES(AdministrationOverEngines);

// A database that takes no writes: every editor says so, and what it shows stays.
TEST(Administration, ADatabaseThatOnlyReadsIsTold) {
    FakeWorkstation machine;
    FakeForms forms;
    const auto connection = data::EmbeddedDatabase::Create(machine.Path("a.kdb"));
    On<data::clsUpdateDb>(machine, connection).fncUpdateDb();
    const auto told = [&] { return machine.messages.shown.back().text; };
    const Store store(connection);
    AddDossierType(machine, store, "Zaak", "Zaak");
    const auto place = MakeUserTree(machine, store, "Gebruikers");
    AddHolder(machine, store, place, {0, 0, false, "Jan", {}});
    const auto closed = data::EmbeddedDatabase::OpenReadOnly(machine.Path("a.kdb"));

    On<controls::ctlRights> rights(machine, closed);
    FormUser user(rights.Form());
    user.Choose("treUsers", rights.Form()["treUsers"].Items().front().id);
    user.TickItem("treRights", 1);
    EXPECT_FALSE(rights.Save());
    EXPECT_NE(told().find("Opslaan is niet gelukt: "), std::string::npos) << told();
    EXPECT_TRUE(rights.IsChanged());
    const auto folders = forms.EditorOn<controls::ctlDefaultFolders>(machine, closed);
    FormUser edits(folders->Form());
    edits.Click("btnNew");
    EXPECT_FALSE(folders->Save());
    forms.users = {[](FormUser& named) {
        named.Type("txtName", "Polis");
        named.Click("btnOk");
    }};
    machine.messages.answers = {platform::Answer::No}; // the folder is not kept
    const auto before = machine.messages.shown.size();
    edits.Click("btnNewType");
    EXPECT_EQ(machine.messages.shown.size(), before + 2);
    EXPECT_EQ(folders->Form()["cmbType"].Items().size(), 1U);
    forms.users = {[&](FormUser& changes) {
        changes.Type("txtDocumentPath", "C:\\x");
        changes.Click("btnOk");
        EXPECT_NE(told().find("kunnen niet opgeslagen worden"), std::string::npos) << told();
    }};
    EXPECT_FALSE(controls::frmSettings(machine, closed, nullptr, nullptr).Show(forms));
    EXPECT_FALSE(LoadHolders(machine, store).front().rights.any());
}

} // namespace kavidex::tests
