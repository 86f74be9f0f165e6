#include "windowing/MessageLoop.h"
#include "windowing/PropertySheet.h"

#include "support/FakeBoxes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>

using namespace tessera;

namespace {

constexpr UINT kEdit = 100;
constexpr UINT kCheck = 101;
constexpr UINT kGo = WM_APP + 7;

DialogTemplate sample()
{
    DialogTemplate pattern("Caf\xE9", 200, 100);
    pattern.label("odd", 99, {5, 5, 60, 10})
        .edit(kEdit, {5, 20, 100, 12})
        .checkBox("Check", kCheck, {5, 40, 90, 10});
    pattern.button("OK", IDOK, {5, 60, 50, 14}, BS_DEFPUSHBUTTON)
        .button("Cancel", IDCANCEL, {60, 60, 50, 14});
    return pattern;
}

class SampleDialog : public Mapped<SampleDialog, Dialog> {
public:
    static std::span<const MapEntry<SampleDialog>> messageMap()
    {
        static constexpr MapEntry<SampleDialog> map[] = {{kGo, &SampleDialog::onGo},
                                                         {kCheck, BN_CLICKED, &SampleDialog::onCheck}};
        return map;
    }
    std::function<void(SampleDialog&)> script;
    int checks = 0;
    std::string typed;

protected:
    bool onInitDialog() override
    {
        PostMessageA(handle(), kGo, 0, 0);
        return true;
    }
    void onOk() override
    {
        typed = itemText(kEdit);
        Dialog::onOk();
    }

private:
    Handled onGo(const Message&)
    {
        script(*this);
        return 33;
    }
    void onCheck(const Command&) { ++checks; }
};

} // namespace

TEST(Dialog, RunsModallyByATemplateInMemory)
{
    SampleDialog dialog;
    dialog.script = [](SampleDialog& running) {
        char caption[20];
        GetWindowTextA(running.handle(), caption, sizeof caption);
        EXPECT_STREQ(caption, "Caf\xE9");
        running.setItemText(kEdit, "typed");
        SendMessageA(running.item(kCheck), BM_CLICK, 0, 0);
        EXPECT_TRUE(running.isChecked(kCheck));
        EXPECT_NE(SendMessageA(running.item(99), WM_GETFONT, 0, 0), 0);
        std::array<char, 256> victim{}; // of another program, which sends this by itself
        SendMessageA(running.handle(), WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(victim.data()));
        EXPECT_EQ(victim, (std::array<char, 256>{}));
        SendMessageA(running.item(IDOK), BM_CLICK, 0, 0);
    };
    EXPECT_EQ(dialog.showModal(nullptr, sample()), IDOK);
    EXPECT_EQ(dialog.typed, "typed");
    EXPECT_EQ(dialog.checks, 1);
    EXPECT_EQ(dialog.handle(), nullptr);

    dialog.script = [](SampleDialog& running) { SendMessageA(running.handle(), WM_CLOSE, 0, 0); };
    EXPECT_EQ(dialog.showModal(nullptr, sample()), IDCANCEL); // and a second time
}

TEST(Dialog, ModelessDiesWithItsObjectAndAnswersMessages)
{
    HWND handle = nullptr;
    {
        SampleDialog dialog;
        dialog.script = [](SampleDialog&) {};
        ASSERT_TRUE(dialog.create(nullptr, sample()));
        handle = dialog.handle();
        EXPECT_EQ(SendMessageA(handle, kGo, 0, 0), 33);
    }
    EXPECT_FALSE(IsWindow(handle));
}

TEST(Dialog, AMissingResourceIsNoDialog)
{
    SampleDialog dialog;
    EXPECT_EQ(dialog.showModal(nullptr, 4711), -1);
}

namespace {

// A page that writes down what the sheet asks and plays its part when it is shown.
class Page : public Mapped<Page, PropertyPage> {
public:
    using Step = std::function<void(Page&)>;
    Page(std::string caption, std::vector<std::string>& log) : Mapped(std::move(caption)), m_log(log) {}

    static std::span<const MapEntry<Page>> messageMap()
    {
        static constexpr MapEntry<Page> map[] = {{kGo, &Page::onGo}};
        return map;
    }
    Step shown;
    bool allow = true;

protected:
    DialogTemplate pattern() const override
    {
        return std::move(
            DialogTemplate(caption(), 275, 175, DialogTemplate::kPageStyle).edit(kEdit, {5, 5, 90, 12}));
    }
    void onSetActive() override
    {
        say("active");
        PostMessageA(handle(), kGo, 0, 0);
    }
    bool onWizardNext() override { return say("next"), allow; }
    bool onWizardBack() override { return say("back"), allow; }
    bool onWizardFinish() override { return say("finish"), allow; }
    bool onApply() override { return say("apply"), allow; }
    bool onQueryCancel() override { return say("query"), allow; }
    void onReset() override { say("reset"); }

private:
    void say(const std::string& text) { m_log.push_back(std::to_string(index()) + " " + text); }
    Handled onGo(const Message&)
    {
        if (shown) {
            shown(*this);
        }
        return 0;
    }
    std::vector<std::string>& m_log;
};

class Sheet : public testing::Test {
protected:
    std::vector<std::string> log;
    Page first{"Step 1 of 2", log};
    Page second{"Step 2 of 2", log};
};

using Log = std::vector<std::string>;

Page::Step press(int button)
{
    return [button](Page& page) { page.sheet().pressButton(button); };
}

} // namespace

TEST_F(Sheet, APageMayKeepTheUserAndCancelChangesNothing)
{
    PropertySheet sheet(SheetKind::Wizard, "Wizard");
    sheet.add(first);
    sheet.add(second);
    first.allow = false;
    first.shown = [&](Page& page) {
        page.sheet().pressButton(PSBTN_NEXT);
        page.sheet().pressButton(PSBTN_CANCEL);
        first.allow = true;
        page.sheet().pressButton(PSBTN_CANCEL);
    };
    EXPECT_FALSE(sheet.run(nullptr));
    EXPECT_EQ(log, (Log{"0 active", "0 next", "0 query", "0 query", "0 reset"}));
}

TEST_F(Sheet, ClosingFromOutsideCannotBeRefused)
{
    PropertySheet sheet(SheetKind::Wizard, "Wizard");
    sheet.add(first);
    first.allow = false;
    first.shown = [&](Page& page) { page.sheet().close(); };
    EXPECT_FALSE(sheet.run(nullptr));
    EXPECT_TRUE(sheet.closing());
    EXPECT_EQ(log, (Log{"0 active", "0 reset"}));
}

TEST_F(Sheet, TabsApplyAllPagesThatWereShown)
{
    PropertySheet sheet(SheetKind::Tabs, "Options");
    sheet.add(first);
    sheet.add(second);
    first.shown = press(PSBTN_OK);
    EXPECT_TRUE(sheet.run(nullptr));
    EXPECT_EQ(log, (Log{"0 active", "0 apply"}));
}

// Of an owner in the middle of the screen, at its corner, larger than the screen, and minimised; and of
// none.
TEST_F(Sheet, OpensInTheMiddleOfItsOwnerAndInsideTheScreenAsDialogsDo)
{
    RECT work{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    const auto inMiddle = [&](HWND window, const RECT& around) {
        RECT place{};
        GetWindowRect(window, &place);
        const LONG left = (around.left + around.right - (place.right - place.left)) / 2;
        const LONG top = (around.top + around.bottom - (place.bottom - place.top)) / 2;
        EXPECT_NEAR(place.left, std::clamp(left, work.left, work.right - (place.right - place.left)), 1);
        EXPECT_NEAR(place.top, std::clamp(top, work.top, work.bottom - (place.bottom - place.top)), 1);
        EXPECT_GT(place.right - place.left, 100);
    };
    const auto open = [&](HWND owner, const RECT& around) {
        SampleDialog dialog;
        dialog.script = [&](SampleDialog& running) {
            inMiddle(running.handle(), around);
            running.end(IDOK);
        };
        EXPECT_EQ(dialog.showModal(owner, sample()), IDOK);
        for (const SheetKind kind : {SheetKind::Wizard, SheetKind::Tabs}) {
            PropertySheet sheet(kind, "Sheet");
            Page page{"Page", log};
            sheet.add(page);
            page.shown = [&](Page& running) {
                inMiddle(running.sheet().handle(), around);
                running.sheet().close();
            };
            sheet.run(owner);
        }
    };
    const RECT places[] = {{300, 200, 900, 700},
                           {work.right - 90, work.bottom - 60, work.right + 200, work.bottom + 90},
                           {-50, -50, work.right + 300, work.bottom + 100}};
    for (const RECT& place : places) {
        const HWND owner = CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, place.left, place.top,
                                           place.right - place.left, place.bottom - place.top, nullptr,
                                           nullptr, nullptr, nullptr);
        open(owner, place);
        if (&place == places) {
            ShowWindow(owner, SW_HIDE);
            open(owner, work);
        }
        DestroyWindow(owner);
    }
    open(nullptr, work);
}

TEST_F(Sheet, ErrorsOfAPageAreShownAndTheSheetGoesOn)
{
    FakeBoxes boxes;
    PropertySheet sheet(SheetKind::Wizard, "Wizard");
    sheet.add(first);
    first.shown = [&](Page& page) {
        page.sheet().pressButton(PSBTN_FINISH);
        throw std::runtime_error("page failed");
    };
    EXPECT_TRUE(sheet.run(nullptr));
    EXPECT_EQ(boxes.texts, (Log{"page failed"}));
}
