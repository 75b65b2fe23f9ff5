// The form engine without a window.
#include <gtest/gtest.h>

#include "controls/forms/Form.h"
#include "controls/forms/Mnemonics.h"
#include "platform/Error.h"
#include "tests/fakes/FakeForms.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/unit/controls/SampleForm.h"

namespace kavidex::controls::forms {

class FormTest : public testing::Test {
protected:
    tests::FakeWorkstation machine;
    Form form{tests::sample::layout, machine};
};

TEST_F(FormTest, FieldsAreReachedOnTheirPageAndFrameOnly) {
    tests::FormUser user(form);
    EXPECT_TRUE(user.CanUse("optIcons"));
    EXPECT_FALSE(user.CanUse("lstFiles"));
    user.Choose("TabStrip1", 2);
    EXPECT_FALSE(user.CanUse("optIcons")) << "its frame stands on the other page";
    EXPECT_TRUE(user.CanUse("lstFiles"));
    user.Choose("TabStrip1", 1);
    form["frmShow"].SetEnabled(false);
    EXPECT_FALSE(user.CanUse("optIcons"));
    form["txtName"].SetReadOnly(true);
    EXPECT_THROW(user.Type("txtName", "x"), std::logic_error);
}

TEST_F(FormTest, OneOptionOfAGroupIsChosen) {
    tests::FormUser user(form);
    user.Tick("optIcons");
    user.Tick("optList");
    EXPECT_FALSE(user.Ticked("optIcons"));
    user.Tick("chkReadOnly");
    EXPECT_TRUE(user.Ticked("optList"));
}

TEST_F(FormTest, AFailingHandlerIsToldWithItsNumberAndLeavesTheFormOpen) {
    form.On("btnOk", What::Clicked,
            [](auto&) { throw platform::Error(platform::errors::accessDenied, "no"); });
    tests::FormUser user(form);
    user.Click("btnOk");
    EXPECT_FALSE(form.IsClosed());
    ASSERT_EQ(machine.messages.shown.size(), 1U);
    EXPECT_EQ(machine.messages.shown[0].text, "-2147024891 no");
    EXPECT_EQ(machine.messages.shown[0].caption, "Error in frmSample");
    EXPECT_TRUE(machine.log.Has("frmSample", "no"));
    EXPECT_THROW(form["txtUnknown"], platform::Error);
}

TEST_F(FormTest, ItemsKeepTheirSelectionAreSortedFoundEditedAndRemovedWithAllBelow) {
    Field& list = form["lstFiles"];
    list.SetItems({{1, {"zeta", "1"}}, {2, {"Alfa", "2"}}, {3, {"beta", "3"}}});
    tests::FormUser user(form);
    user.Choose("TabStrip1", 2);
    user.ChooseAll("lstFiles", {1, 3});
    form.HeadingClicked(list, 0);
    EXPECT_EQ(list.Items().front().Cell(), "Alfa");
    form.HeadingClicked(list, 0);
    EXPECT_EQ(list.Items().front().Cell(), "zeta");
    list.SetItems({{3, {"beta"}}, {4, {"gamma beta"}}, {5, {"Beta 2"}}});
    EXPECT_EQ(list.SelectedItems(), std::vector<std::int32_t>{3});
    EXPECT_EQ(list.Find("be", 0, 3)->id, 5) << "a beginning goes before a part";
    EXPECT_EQ(list.Find("ma")->id, 4);
    EXPECT_EQ(list.Find("delta"), nullptr);

    list.SetItems({{1, {"a", "1"}}});
    form.On("lstFiles", What::Edited, [](FieldEvent& event) { event.refused = event.text == "b"; });
    EXPECT_FALSE(user.EditItem("lstFiles", 1, "b"));
    EXPECT_TRUE(user.EditItem("lstFiles", 1, "c", 2));
    EXPECT_EQ(list.Find(1)->texts, (std::vector<std::string>{"a", "1", "c"}));

    Field& tree = form["treTypes"];
    tree.SetItems({{1, {"top"}}, {2, {"child"}, 1}, {3, {"grandchild"}, 2}, {4, {"other"}}});
    tree.RemoveItem(2);
    EXPECT_EQ(tree.Items().size(), 2U);
    form.On("treTypes", What::Expanding, [&](FieldEvent& event) {
        tree.AddItem({9, {"late"}, event.item});
    });
    user.Expand("treTypes", 1);
    EXPECT_EQ(tree.Find(9)->parent, 1);
}

TEST_F(FormTest, MnemonicsAreDistinctAndLeadToInputs) {
    const auto captions = CaptionsWithMnemonics(form);
    const auto of = [&](const char* name) {
        for (std::size_t i = 0; i < captions.size(); ++i)
            if (form.Fields()[i].Name() == name) return captions[i];
        return std::string("?");
    };
    EXPECT_EQ(of("lblName"), "&Naam:");
    EXPECT_EQ(of("lblPath"), "&Map && pad:");
    EXPECT_EQ(of("lblNote"), "&Opmerking:");
    EXPECT_EQ(of("frmShow"), "Tonen als");
    EXPECT_EQ(of("btnOk"), "OK");
    EXPECT_EQ(of("btnApply"), "&Toepassen");
    EXPECT_EQ(of("txtName"), "");
}

TEST(FormLayout, GrowsBySidesItKeepsTo) {
    const Box box{10, 10, 100, 20};
    EXPECT_EQ(Grown(box, anchor::leftTop, 50, 30), box);
    EXPECT_EQ(Grown(box, anchor::rightBottom, 50, 30), (Box{60, 40, 100, 20}));
    EXPECT_EQ(Grown(box, anchor::all, 50, 30), (Box{10, 10, 150, 50}));
}

} // namespace kavidex::controls::forms
