#include "options/WizardWelcome.h"

#include "options/ids.h"

namespace tessera {

CWizardWelcome::CWizardWelcome(WizardState& state)
    : WizardPage({IDD_WIZARD_WELCOME, "Step 1 of 6", "Welcome to the New Database Wizard"}, state)
{
}

} // namespace tessera
