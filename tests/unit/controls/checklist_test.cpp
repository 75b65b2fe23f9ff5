// The checklist of a dossier: what is counted as present, what users say of it, and the panel in
// the binder.
#include "tests/unit/controls/BinderFixture.h"

#include "controls/checklist/ctlChecklist.h"
#include "model/clsCheckListType.h"

namespace kavidex::controls {

namespace {

struct Checklists : Binder {
    std::int32_t post = 0, proof = 0;

    void SetUp() override {
        Binder::SetUp();
        connection->Execute(
            "insert into tblDossierTypes (TypeId, DossierType) values (7, 'Za''ak')");
        connection->Execute("insert into tblDossierTabs (DossierTypeId, TabDescription, TabType, "
                            "IntOrder, AutoCreate) values (7, 'Bewijs %YYYY', 'Bewijs', 1, 'yes')");
        Define("Za'ak^Bewijs", {{"Paspoort", 1, "pas*;identiteit", "tif;pdf"},
                                {"Loonstrook", 2, "", ""},
                                {"Geboren", 1, "", "Datum"},
                                {"Extra", 0, "", ""}});
        Define("Za'ak^Post", {{"Brief", 1, "", ""}});
        ASSERT_EQ(Open("K1"), 0);
        post = binder->treCorr().AddTab("Post", Root())->Id();
        proof = binder->treCorr().AddTab("Bewijs 2026", Root())->Id();
        binder->SetShowCheckList(" Za'ak ");
    }
    struct Wanted {
        const char* text;
        std::int16_t number;
        const char *descriptions, *type;
    };
    void Define(const char* key, const std::vector<Wanted>& items) {
        tests::On<model::clsCheckListType> list(machine, connection);
        list.SetCheckListTabType(key);
        std::int16_t order = 0;
        for (const auto& item : items)
            list.CreateField(++order, item.text, item.number, item.descriptions, item.type);
        list.UpdateCurrentType();
    }
    void Document(const char* name, const char* type, std::int32_t folder) {
        binder->treCorr().Add(0, type, nullptr, 1, name, folder);
    }
    // Document, presence, needed, value, folder of every line shown.
    std::string Shown() {
        std::string text;
        for (const auto& item : binder->Checklist().Form()["lstItems"].Items())
            text += item.texts[0] + "=" + item.texts[1] + (item.checked ? "+ " : " ");
        return text;
    }
};

} // namespace

TEST_F(Checklists, CountWhatTheFoldersHoldByTypeAndDescription) {
    EXPECT_TRUE(binder->ChecklistShown());
    EXPECT_EQ(Shown(), "Brief=Ontbreekt Paspoort=Ontbreekt Loonstrook=Ontbreekt "
                       "Geboren=Ontbreekt Extra=Niet verplicht ");
    Document("PASPOORT jansen", "doc", proof); // of another type
    Document("Loonstrook mei", "doc", proof);
    Document("Identiteitsbewijs", "TIF", proof);
    Document("Brief", "pdf", proof); // in another folder
    EXPECT_EQ(Shown(), "Brief=Ontbreekt Paspoort=Aanwezig+ Loonstrook=1 van 2 "
                       "Geboren=Ontbreekt Extra=Niet verplicht ");
    Document("Brief van de bank", "pdf", binder->treCorr().AddTab("In", post)->Id());
    EXPECT_EQ(binder->Checklist().Missing(), 2);

    // The list of the chosen folder alone; of one without a list, all.
    tests::FormUser user(binder->Checklist().Form());
    binder->Checklist().SetFolderId(post);
    EXPECT_EQ(Shown(), "Brief=Aanwezig+ ");
    user.Tick("chkWhole");
    user.Tick("chkMissing");
    EXPECT_EQ(Shown(), "Loonstrook=1 van 2 Geboren=Ontbreekt ");
    binder->SetShowCheckList("");
    EXPECT_FALSE(binder->ChecklistShown());
    EXPECT_EQ(Shown(), "");
}

TEST_F(Checklists, KeepWhatUsersSayAndRefuseWhatAnotherHasSaidMeanwhile) {
    int changed = 0;
    const auto heard = binder->EvChecklistChanged.Subscribe([&] { ++changed; });
    tests::FormUser user(binder->Checklist().Form());
    user.TickItem("lstItems", 1);
    EXPECT_FALSE(user.EditItem("lstItems", 2, "vandaag", 3)) << "documents have no value";
    user.EditItem("lstItems", 4, "31-02-2026", 3);
    EXPECT_TRUE(Told("'31-02-2026' is geen datum"));
    user.EditItem("lstItems", 4, "28-02-2026", 3);
    user.EditItem("lstItems", 3, "Nee", 2);
    EXPECT_EQ(changed, 3);
    EXPECT_EQ(Shown(), "Brief=Aanwezig+ Paspoort=Ontbreekt Loonstrook=Niet nodig "
                       "Geboren=Aanwezig+ Extra=Niet verplicht ");
    EXPECT_EQ(binder->Checklist().Form()["lstItems"].Find(1)->texts[5], "15-11-2026 jansen");

    // Another user's control of the same dossier sees it, and changes it.
    tests::On<ctlChecklist> other(machine, connection);
    other.SetCheckListType("Za'ak^Bewijs");
    other.SetTreeId(binder->Id());
    machine.user.name = "piet";
    tests::FormUser piet(other.Form());
    ASSERT_EQ(other.Form()["lstItems"].Items().size(), 4U);
    EXPECT_EQ(other.Form()["lstItems"].Find(3)->texts[3], "28-02-2026");
    piet.EditItem("lstItems", 3, "01-03-2026", 3);
    machine.user.name = "jansen";
    user.EditItem("lstItems", 4, "02-03-2026", 3);
    EXPECT_TRUE(Told("Dit is intussen door 'piet' gewijzigd"));
    EXPECT_EQ(binder->Checklist().Form()["lstItems"].Find(4)->texts[3], "01-03-2026");
    EXPECT_EQ(changed, 3);
    EXPECT_EQ(Count("tblCheckListRefFields"), 3);

    // A folder that somebody deleted takes no value, and no rights none.
    binder->treCorr().Tree()->fncLoadCollectionFromDatabase(post);
    connection->Execute(
        "update tblTreeItem set TreeItemId = -TreeItemId, ParentId = -ParentId where "
        "TreeItemId = " +
        std::to_string(post));
    user.TickItem("lstItems", 1, false);
    EXPECT_TRUE(Told("Brief") ||
                machine.messages.shown.back().caption.find("ctlChecklist") != std::string::npos);
    EXPECT_EQ(changed, 3);
    Setting("Rights", "Use", "true");
    binder->SetUserAuth(std::make_shared<model::clsUserAuth>(machine));
    user.TickItem("lstItems", 2);
    EXPECT_TRUE(Told("U heeft geen bevoegdheid om de checklist te wijzigen"));
    EXPECT_EQ(Count("tblCheckListRefFields"), 3);
}

TEST_F(Checklists, TheButtonTogglesThePanelAndNamesWhatItWouldDo) {
    const auto button = [&] {
        for (const auto& item : binder->Toolbar())
            if (item.name == "WithCheckList") return item;
        return ToolbarItem{};
    };
    EXPECT_TRUE(button().visible);
    EXPECT_TRUE(button().pressed);
    EXPECT_EQ(button().tooltip, "Verberg checklist");
    binder->ButtonClicked("WithCheckList");
    EXPECT_FALSE(binder->ChecklistShown());
    EXPECT_EQ(button().tooltip, "Toon checklist");
    MapBag bag;
    binder->SaveProperties(bag);
    EXPECT_EQ(data::ToText(bag.values["ChecklistPresent"]), "False");
    binder->SetShowCheckList("");
    EXPECT_FALSE(button().visible);
    binder->SetShowCheckList("Za'ak");
    EXPECT_TRUE(binder->ChecklistShown());
}

} // namespace kavidex::controls
