#pragma once

#include "options/WizardArtwork.h"
#include "options/WizardCongratulations.h"
#include "options/WizardExclusions1.h"
#include "options/WizardExclusions2.h"
#include "options/WizardGeneral.h"
#include "options/WizardWelcome.h"

namespace tessera {

// The new-database wizard with its six pages. It edits a copy of the settings.
class CWizardPropertySheet : public PropertySheet {
public:
    CWizardPropertySheet(Commands& commands, const DatabaseSettings& settings);

    // What the user has entered so far.
    const DatabaseSettings& settings() const { return m_state.settings; }
    // Cancels the wizard from outside, whatever box or dialog is open over it.
    void cancel();

private:
    WizardState m_state;
    CWizardWelcome m_welcome{m_state};
    CWizardGeneral m_general{m_state};
    CWizardExclusions1 m_exclusions1{m_state};
    CWizardExclusions2 m_exclusions2{m_state};
    CWizardArtwork m_artwork{m_state};
    CWizardCongratulations m_congratulations{m_state};
};

} // namespace tessera
