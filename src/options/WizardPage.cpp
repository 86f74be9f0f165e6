#include "options/WizardPage.h"

#include "windowing/Drawing.h"

namespace tessera {

namespace {

// Dialog units.
constexpr int kBandHeight = 24;
constexpr int kTitleInset = 7;

// The sheet's own buttons.
constexpr int kNextButton = 0x3024;
constexpr int kFinishButton = 0x3025;

bool hasFields(HWND page)
{
    for (HWND child = GetWindow(page, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (GetWindowLongA(child, GWL_STYLE) & WS_TABSTOP) {
            return true;
        }
    }
    return false;
}

} // namespace

DWORD wizardButtonsAtStart(int pageCount)
{
    return pageCount < 2 ? PSWIZB_FINISH : PSWIZB_NEXT;
}

DWORD wizardButtonsAfterNext(int index, int pageCount)
{
    return PSWIZB_BACK | (index < pageCount - 2 ? PSWIZB_NEXT : PSWIZB_FINISH);
}

DWORD wizardButtonsAfterBack(int index)
{
    return index < 2 ? PSWIZB_NEXT : PSWIZB_BACK | PSWIZB_NEXT;
}

WizardPage::WizardPage(const WizardPageText& text, WizardState& state)
    : Mapped(text.caption), m_dialog(text.dialog), m_title(text.title), m_state(state)
{
}

std::span<const MapEntry<WizardPage>> WizardPage::messageMap()
{
    static constexpr MapEntry<WizardPage> map[] = {
        {WM_ERASEBKGND, &WizardPage::onEraseBackground},
    };
    return map;
}

void WizardPage::onSetActive()
{
    sheet().setWizardButtons(m_state.buttons);
    if (!hasFields(handle())) {
        focusDefaultButton();
    }
}

// The button that was pressed may be hidden or disabled now, and keys would go nowhere. Posted,
// since the buttons are not set yet.
void WizardPage::focusDefaultButton() const
{
    const HWND sheetWindow = sheet().handle();
    const int button = m_state.buttons & PSWIZB_FINISH ? kFinishButton : kNextButton;
    PostMessageA(sheetWindow, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(sheetWindow, button)), TRUE);
}

bool WizardPage::onWizardNext()
{
    if (!takeOver()) {
        return false;
    }
    m_state.buttons = wizardButtonsAfterNext(index(), m_state.pageCount);
    return true;
}

bool WizardPage::onWizardBack()
{
    m_state.buttons = wizardButtonsAfterBack(index());
    return true;
}

void WizardPage::refuse(const std::string& message, UINT field) const
{
    commands().showMessage(MB_OK | MB_ICONEXCLAMATION, message);
    SetFocus(item(field));
    SendMessageA(item(field), EM_SETSEL, 0, -1);
}

Handled WizardPage::onEraseBackground(const Message& message)
{
    const auto dc = reinterpret_cast<HDC>(message.wParam);
    RECT page{};
    GetClientRect(handle(), &page);
    fillRect(dc, page, GetSysColor(COLOR_BTNFACE));
    RECT units{0, 0, 0, kBandHeight};
    MapDialogRect(handle(), &units);
    paintBand(dc, {0, 0, page.right, units.bottom});
    return TRUE;
}

void WizardPage::paintBand(HDC dc, const RECT& band) const
{
    const DcScope state(dc);
    fillRect(dc, band, GetSysColor(COLOR_WINDOW));
    const RECT line{band.left, band.bottom, band.right, band.bottom + 1};
    fillRect(dc, line, GetSysColor(COLOR_BTNSHADOW));

    RECT title{kTitleInset, 0, 0, 0};
    MapDialogRect(handle(), &title);
    SelectObject(dc, commands().wizardCaptionFont());
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkMode(dc, TRANSPARENT);
    drawLine(dc, m_title, {title.left, band.top, band.right, band.bottom});
}

} // namespace tessera
