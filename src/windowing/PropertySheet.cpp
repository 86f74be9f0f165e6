#include "windowing/PropertySheet.h"

#include "system/Module.h"
#include "windowing/CarriedPointer.h"
#include "windowing/Placement.h"

#include <deque>
#include <utility>

namespace tessera {

namespace {

// A sheet gets its size after its first page, from the largest of them.
class Placing final : public Subclass {
public:
    Handled route(const Message& message) override
    {
        if (message.id == WM_SHOWWINDOW && message.wParam != FALSE && !std::exchange(m_placed, true))
            centreOverOwner(message.window);
        return kDefault;
    }

private:
    bool m_placed = false;
};

} // namespace

Handled PropertyPage::route(const Message& message)
{
    if (message.id == WM_INITDIALOG) {
        m_sheet->pageCreated(message.window);
        return onInitDialog();
    }
    if (message.id != WM_NOTIFY) {
        return kDefault;
    }
    return onSheetNotification(*reinterpret_cast<const NMHDR*>(message.lParam));
}

Handled PropertyPage::onSheetNotification(const NMHDR& header)
{
    constexpr LRESULT kGo = 0;
    constexpr LRESULT kStay = -1;
    const auto answer = [](bool go) { return go ? kGo : kStay; };
    switch (header.code) {
    case PSN_SETACTIVE:
        onSetActive();
        return kGo;
    case PSN_KILLACTIVE:
        return onKillActive() ? FALSE : TRUE;
    case PSN_WIZNEXT:
        return answer(onWizardNext());
    case PSN_WIZBACK:
        return answer(onWizardBack());
    case PSN_WIZFINISH:
        return onWizardFinish() ? FALSE : TRUE;
    case PSN_APPLY:
        return onApply() ? PSNRET_NOERROR : PSNRET_INVALID_NOCHANGEPAGE;
    case PSN_QUERYCANCEL:
        return m_sheet->closing() || onQueryCancel() ? FALSE : TRUE;
    case PSN_RESET:
        onReset();
        return kGo;
    default:
        return kDefault;
    }
}

INT_PTR CALLBACK PropertyPage::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    PropertyPage* created = nullptr;
    if (message == WM_INITDIALOG && !objectOf(window)) {
        const LPARAM page = reinterpret_cast<PROPSHEETPAGEA*>(lParam)->lParam;
        created = CarriedPointer::isKnown(page) ? reinterpret_cast<PropertyPage*>(page) : nullptr;
    }
    return dialogMessage({window, message, wParam, lParam}, created);
}

PROPSHEETPAGEA PropertySheet::pageRecord(PropertyPage& page, const DialogTemplate& pattern) const
{
    PROPSHEETPAGEA record{};
    record.dwSize = sizeof record;
    record.dwFlags = PSP_DLGINDIRECT | PSP_USETITLE;
    record.hInstance = moduleInstance();
    record.pResource = pattern.get();
    record.pszTitle = page.caption().c_str();
    record.pfnDlgProc = &PropertyPage::procedure;
    record.lParam = reinterpret_cast<LPARAM>(&page);
    return record;
}

bool PropertySheet::run(HWND owner, int firstPage)
{
    std::vector<DialogTemplate> patterns; // must outlive the sheet
    patterns.reserve(m_pages.size());
    std::vector<PROPSHEETPAGEA> records;
    std::deque<CarriedPointer> carried;
    for (int index = 0; index < pageCount(); ++index) {
        PropertyPage& page = *m_pages[static_cast<std::size_t>(index)];
        page.m_sheet = this;
        page.m_index = index;
        page.captureContext();
        carried.emplace_back(&page);
        records.push_back(pageRecord(page, patterns.emplace_back(page.pattern())));
    }
    PROPSHEETHEADERA header{};
    header.dwSize = sizeof header;
    header.dwFlags = PSH_PROPSHEETPAGE | (m_kind == SheetKind::Wizard ? PSH_WIZARD : PSH_NOAPPLYNOW);
    header.hwndParent = owner;
    header.hInstance = moduleInstance();
    header.pszCaption = m_caption.c_str();
    header.nPages = static_cast<UINT>(records.size());
    header.nStartPage = static_cast<UINT>(firstPage);
    header.ppsp = records.data();
    const INT_PTR answer = ::PropertySheetA(&header);
    m_placing.reset();
    m_handle = nullptr;
    return answer > 0 && !m_closing;
}

void PropertySheet::pageCreated(HWND page)
{
    if (m_handle) {
        return;
    }
    m_handle = GetParent(page);
    m_placing = std::make_unique<Placing>();
    m_placing->attach(m_handle);
    onInitialised();
    if (m_closing) {
        close();
    }
}

void PropertySheet::close()
{
    m_closing = true;
    if (m_handle) {
        PostMessageA(m_handle, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
    }
}

void PropertySheet::setWizardButtons(DWORD buttons) const
{
    // Posted, as the system itself does: inside PSN_SETACTIVE a sent one would be undone.
    PostMessageA(m_handle, PSM_SETWIZBUTTONS, 0, static_cast<LPARAM>(buttons));
}

void PropertySheet::pressButton(int button) const
{
    SendMessageA(m_handle, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0);
}

void PropertySheet::setTitle(const std::string& title) const
{
    SendMessageA(m_handle, PSM_SETTITLEA, 0, reinterpret_cast<LPARAM>(title.c_str()));
}

} // namespace tessera
