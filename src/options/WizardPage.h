#pragma once

#include "settings/Settings.h"
#include "ui/Commands.h"
#include "windowing/PropertySheet.h"

#include <span>
#include <string>

namespace tessera {

// The wizard's buttons (PSWIZB_*), computed from the page index, counting from 0.
DWORD wizardButtonsAtStart(int pageCount);
DWORD wizardButtonsAfterNext(int index, int pageCount);
DWORD wizardButtonsAfterBack(int index);

// What the pages of one wizard share.
struct WizardState {
    Commands& commands;
    DatabaseSettings settings; // a copy; the user may still cancel
    DWORD buttons = 0;
    int pageCount = 0;
};

struct WizardPageText {
    UINT dialog;         // the resource
    const char* caption; // of the wizard while the page is shown
    const char* title;   // in the band
};

// A page of the wizard, with a band on top that shows its title.
class WizardPage : public Mapped<WizardPage, PropertyPage> {
public:
    WizardPage(const WizardPageText& text, WizardState& state);

    static std::span<const MapEntry<WizardPage>> messageMap();

protected:
    DialogTemplate pattern() const override { return DialogTemplate::fromResource(m_dialog); }
    void onSetActive() override;
    bool onWizardNext() override;
    bool onWizardBack() override;
    bool onWizardFinish() override { return takeOver(); }

    // Copies the fields into the settings; false keeps the page.
    virtual bool takeOver() { return true; }

    DatabaseSettings& settings() const { return m_state.settings; }
    Commands& commands() const { return m_state.commands; }
    // Shows the message with the exclamation icon and puts the user into the field.
    void refuse(const std::string& message, UINT field) const;

private:
    void focusDefaultButton() const;
    Handled onEraseBackground(const Message& message);
    void paintBand(HDC dc, const RECT& band) const;

    UINT m_dialog;
    const char* m_title;
    WizardState& m_state;
};

} // namespace tessera
