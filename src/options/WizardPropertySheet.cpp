#include "options/WizardPropertySheet.h"

namespace tessera {

namespace {

// Boxes and dialogs that stand over the window, and those over them.
BOOL CALLBACK closeOwned(HWND window, LPARAM owner) noexcept
{
    for (HWND above = GetWindow(window, GW_OWNER); above; above = GetWindow(above, GW_OWNER)) {
        if (above == reinterpret_cast<HWND>(owner) && IsWindowVisible(window)) {
            PostMessageA(window, WM_CLOSE, 0, 0);
            break;
        }
    }
    return TRUE;
}

} // namespace

CWizardPropertySheet::CWizardPropertySheet(Commands& commands, const DatabaseSettings& settings)
    : PropertySheet(SheetKind::Wizard, "New Database Wizard"), m_state{commands, settings}
{
    const std::initializer_list<PropertyPage*> pages = {&m_welcome,     &m_general, &m_exclusions1,
                                                        &m_exclusions2, &m_artwork, &m_congratulations};
    for (PropertyPage* const page : pages) {
        add(*page);
    }
    m_state.pageCount = pageCount();
    m_state.buttons = wizardButtonsAtStart(pageCount());
}

void CWizardPropertySheet::cancel()
{
    if (handle()) {
        EnumThreadWindows(GetCurrentThreadId(), &closeOwned, reinterpret_cast<LPARAM>(handle()));
        close();
    }
}

} // namespace tessera
