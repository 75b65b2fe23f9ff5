// The sample form as a real dialog, driven by messages as a user's keys make them.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>
#include <oleacc.h>

#include <functional>

#include <gtest/gtest.h>

#include "controls/common/win32/GdiObject.h"
#include "controls/forms/win32/FormWindow.h"
#include "controls/forms/win32/WindowsForms.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Owner.h"
#include "platform/win32/Variant.h"
#include "tests/fakes/FakeWorkstation.h"
#include "tests/unit/controls/SampleForm.h"

namespace kavidex::controls::forms::win32 {

namespace {

std::vector<std::function<void()>> steps; // one at each turn of the dialog's message loop

void CALLBACK NextStep(HWND, UINT, UINT_PTR, DWORD) {
    if (steps.empty()) return;
    const auto step = steps.front();
    steps.erase(steps.begin());
    step();
}

std::string NameOf(HWND window) {
    platform::win32::ComPtr<IAccessible> object;
    if (FAILED(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                          __uuidof(IAccessible),
                                          reinterpret_cast<void**>(object.Put()))))
        return "no object";
    VARIANT self{};
    self.vt = VT_I4;
    BSTR name = nullptr;
    object->get_accName(self, &name);
    const std::string text = name ? platform::win32::FromWide(name) : "no name";
    SysFreeString(name);
    return text;
}

} // namespace

class FormWindowTest : public testing::Test {
protected:
    void SetUp() override {
        OleInitialize(nullptr);
        host = CreateWindowExW(0, L"STATIC", L"host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 600,
                               400, nullptr, nullptr, nullptr, nullptr);
        steps.clear();
        lclTimer = SetTimer(nullptr, 0, 20, NextStep);
    }
    void TearDown() override {
        KillTimer(nullptr, lclTimer);
        DestroyWindow(host);
        EXPECT_EQ(controls::win32::GdiObjectsAlive(), lclAlive);
        OleUninitialize();
    }

    bool Show(std::vector<std::function<void()>> acts) {
        steps = std::move(acts);
        // A form that does not close by itself must not hold the tests up.
        for (int i = 0; i < 20; ++i) steps.push_back([] {});
        steps.push_back([this] {
            ADD_FAILURE() << "the form stayed open";
            form.Close(false);
        });
        return forms.ShowModal(form);
    }
    static auto Press(WPARAM key) {
        return [key] { PostMessageW(GetFocus(), WM_KEYDOWN, key, 0); };
    }
    static auto Alt(char letter) {
        return [letter] {
            PostMessageW(GetFocus(), WM_SYSCHAR, static_cast<WPARAM>(letter), 1 << 29);
        };
    }
    std::function<void()> ExpectFocus(const char* field) {
        return [this, field] { EXPECT_EQ(Focused(), field); };
    }
    std::string Focused() {
        for (const Field& field : form.Fields())
            if (WindowOf(field.Name()) == GetFocus()) return std::string(field.Name());
        return "something else";
    }
    // By Ctrl+Tab, or with Shift.
    std::int32_t PageByKey(bool back) {
        BYTE before[256], keys[256]{};
        GetKeyboardState(before);
        keys[VK_CONTROL] = 0x80;
        keys[VK_SHIFT] = back ? 0x80 : 0;
        SetKeyboardState(keys);
        EXPECT_TRUE(static_cast<FormWindow*>(form.View())
                        ->TranslateKey({GetFocus(), WM_KEYDOWN, VK_TAB, 0, 0, {}}));
        SetKeyboardState(before);
        return form["TabStrip1"].Selected();
    }
    HWND WindowOf(std::string_view field) {
        return static_cast<FormWindow*>(form.View())->WindowOf(field);
    }

    tests::FakeWorkstation machine;
    Form form{tests::sample::layout, machine};
    HWND host = nullptr;
    WindowsForms forms{machine, [this] { return host; }};

private:
    UINT_PTR lclTimer = 0;
    int lclAlive = controls::win32::GdiObjectsAlive();
};

TEST_F(FormWindowTest, IsReachedByTabAndMnemonicsAndEndsByEnterAndEscape) {
    form["txtName"].SetText("x");
    EXPECT_TRUE(Show({ExpectFocus("txtName"), Press(VK_TAB), ExpectFocus("txtPath"), Press(VK_TAB),
                      Press(VK_TAB), ExpectFocus("cmbKind"), Alt('o'), ExpectFocus("txtNote"),
                      [this] {
                          EXPECT_EQ(PageByKey(false), 2);
                          EXPECT_EQ(PageByKey(false), 1) << "around";
                          EXPECT_EQ(PageByKey(true), 2);
                          EXPECT_EQ(PageByKey(true), 1);
                      },
                      Alt('n'), ExpectFocus("txtName"),
                      [this] {
                          EXPECT_FALSE(IsWindowEnabled(host));
                          EXPECT_EQ(platform::win32::Owner(), GetActiveWindow())
                              << "message boxes belong to the dialog";
                          SendMessageW(GetFocus(), EM_REPLACESEL, FALSE,
                                       reinterpret_cast<LPARAM>(L"yé"));
                      },
                      Press(VK_RETURN)}));
    EXPECT_EQ(form["txtName"].Text(), "yé") << "it was selected when the focus came";
    EXPECT_TRUE(IsWindowEnabled(host));
    EXPECT_EQ(platform::win32::Owner(), nullptr);
    EXPECT_FALSE(Show({Press(VK_ESCAPE)}));
    EXPECT_FALSE(Show({Alt('o'), ExpectFocus("txtNote"), Press(VK_ESCAPE)})) << "from a memo too";
    EXPECT_FALSE(Show({[] { PostMessageW(GetActiveWindow(), WM_CLOSE, 0, 0); }}));
}

TEST_F(FormWindowTest, AFormWithinAFormBelongsToIt) {
    Form inner(tests::sample::layout, machine);
    HWND outer = nullptr, owner = nullptr;
    form.On("btnApply", What::Clicked, [&](FieldEvent&) { forms.ShowModal(inner); });
    Show({[&] {
              outer = GetActiveWindow();
              SendMessageW(WindowOf("btnApply"), BM_CLICK, 0, 0);
          },
          [&] {
              owner = GetWindow(GetActiveWindow(), GW_OWNER);
              EXPECT_FALSE(IsWindowEnabled(outer));
              EXPECT_FALSE(IsWindowEnabled(host));
              inner.Close(false);
          },
          [&] {
              EXPECT_TRUE(IsWindowEnabled(outer));
              EXPECT_FALSE(IsWindowEnabled(host));
          },
          Press(VK_ESCAPE)});
    EXPECT_EQ(owner, outer);
}

TEST_F(FormWindowTest, TellsItsNamesToAScreenReader) {
    Show({[this] {
              EXPECT_EQ(NameOf(WindowOf("txtName")), "Naam:");
              EXPECT_EQ(NameOf(WindowOf("txtNote")), "Opmerking:");
              EXPECT_EQ(NameOf(WindowOf("chkReadOnly")), "Alleen lezen");
              EXPECT_EQ(NameOf(GetActiveWindow()), "Voorbeeld");
          },
          Press(VK_ESCAPE)});
}

TEST_F(FormWindowTest, ShowsAPageAndHidesTheOthers) {
    Show({[this] {
              EXPECT_TRUE(IsWindowVisible(WindowOf("optIcons")));
              EXPECT_FALSE(IsWindowVisible(WindowOf("lstFiles")));
              SendMessageW(WindowOf("TabStrip1"), TCM_SETCURFOCUS, 1, 0);
              EXPECT_EQ(form["TabStrip1"].Selected(), 2);
              EXPECT_FALSE(IsWindowVisible(WindowOf("optIcons")));
              EXPECT_TRUE(IsWindowVisible(WindowOf("lstFiles")));
              EXPECT_NE(Focused(), "txtName") << "the focus must not stay on a hidden field";
          },
          Press(VK_ESCAPE)});
}

TEST_F(FormWindowTest, ListAndTreeHandOverWhatTheUserDoes) {
    form["TabStrip1"].Select(2);
    form["lstFiles"].SetItems({{5, {"b", "1 KB"}}, {6, {"a", "2 KB"}, 0, "", true}});
    form["lstFiles"].Select(5);
    form["treTypes"].SetItems({{1, {"top"}}, {2, {"child"}, 1}, {3, {"other"}}});
    std::string told;
    form.On("lstFiles", What::Changed, [&](FieldEvent& event) {
        told += "s" + std::to_string(event.field.SelectedItems().size());
    });
    form.On("lstFiles", What::Checked, [&](FieldEvent&) { told += "c"; });
    form.On("lstFiles", What::Activated, [&](FieldEvent&) { told += "a"; });
    form.On("treTypes", What::Edited, [&](FieldEvent& event) { told += event.text; });
    Show({[this] { SetFocus(WindowOf("lstFiles")); }, Press(VK_DOWN), Press(VK_SPACE), [] {},
          Press(VK_RETURN),
          [&] {
              EXPECT_EQ(told, "s1ca");
              EXPECT_EQ(form["lstFiles"].Selected(), 6);
              EXPECT_FALSE(form["lstFiles"].Find(6)->checked);
              form.HeadingClicked(form["lstFiles"], 0);
              EXPECT_EQ(form["lstFiles"].Items()[0].id, 6);
              told.clear();
              SetFocus(WindowOf("treTypes"));
          },
          Press(VK_DOWN), Press(VK_F2),
          [this] {
              const auto edit = reinterpret_cast<HWND>(
                  SendMessageW(WindowOf("treTypes"), TVM_GETEDITCONTROL, 0, 0));
              ASSERT_NE(edit, nullptr);
              SetWindowTextW(edit, L"renamed");
          },
          Press(VK_RETURN), [] {}, // ends the editor, not the form
          [&] {
              EXPECT_EQ(told, "renamed");
              EXPECT_EQ(form["treTypes"].Find(form["treTypes"].Selected())->Cell(), "renamed");
              form["lstFiles"].EditItem(6, 0);
              SetWindowTextW(GetFocus(), L"z");
          },
          Press(VK_TAB),
          [this] {
              EXPECT_EQ(form["lstFiles"].Find(6)->Cell(), "z");
              wchar_t type[20];
              GetClassNameW(GetFocus(), type, 20);
              EXPECT_STREQ(type, L"Edit") << "the next cell that can be edited";
              SetWindowTextW(GetFocus(), L"kept not");
          },
          Press(VK_ESCAPE),
          [this] {
              EXPECT_EQ(form["lstFiles"].Find(6)->Cell(2), "");
              EXPECT_FALSE(form.IsClosed()) << "Escape belonged to the editor";
          },
          Press(VK_ESCAPE)});
}

TEST_F(FormWindowTest, GrowsWithItsFieldsAndNotBelowItsLeastSize) {
    Show({[this] {
              RECT before, small, field, wide;
              const HWND dialog = GetActiveWindow();
              GetWindowRect(dialog, &before);
              GetWindowRect(WindowOf("txtName"), &field);
              SetWindowPos(dialog, nullptr, 0, 0, before.right - before.left + 100,
                           before.bottom - before.top, SWP_NOMOVE);
              GetWindowRect(WindowOf("txtName"), &wide);
              EXPECT_EQ(wide.right - wide.left, field.right - field.left + 100);
              SetWindowPos(dialog, nullptr, 0, 0, 50, 50, SWP_NOMOVE);
              GetWindowRect(dialog, &small);
              EXPECT_EQ(small.right - small.left, before.right - before.left);
          },
          Press(VK_ESCAPE)});
}

TEST_F(FormWindowTest, APanelLeavesToItsHostWhatItHasNoUseFor) {
    constexpr FieldRow rows[] = {{"txtOne", Kind::Edit, {4, 4, 80, 13}, "Een"},
                                 {"txtTwo", Kind::Edit, {4, 20, 80, 13}, "Twee"}};
    const Layout layout{"panel", "", 90, 40, false, rows};
    Form plain(layout, machine);
    FormWindow panel(plain, machine);
    ASSERT_NE(panel.Create(host, {0, 0, 300, 200}), nullptr);
    panel.TakeFocus();
    EXPECT_EQ(GetFocus(), panel.WindowOf("txtOne"));
    EXPECT_EQ(NameOf(panel.WindowOf("txtTwo")), "Twee");
    const auto key = [&](WPARAM code) {
        return panel.TranslateKey({GetFocus(), WM_KEYDOWN, code, 0, 0, {}});
    };
    EXPECT_FALSE(key(VK_ESCAPE));
    EXPECT_FALSE(key(VK_RETURN));
    EXPECT_FALSE(key(VK_F10));
    EXPECT_TRUE(key(VK_TAB));
    EXPECT_EQ(GetFocus(), panel.WindowOf("txtTwo"));
    EXPECT_TRUE(key(VK_LEFT));
    EXPECT_FALSE(key(VK_TAB)) << "it goes on behind the panel";
}

} // namespace kavidex::controls::forms::win32
