#include "options/WizardCongratulations.h"

#include "options/ids.h"

namespace tessera {

CWizardCongratulations::CWizardCongratulations(WizardState& state)
    : WizardPage({IDD_WIZARD_CONGRATULATIONS, "Step 6 of 6", "Congratulations!"}, state)
{
}

} // namespace tessera
