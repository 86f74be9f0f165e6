#pragma once

#include "options/WizardPage.h"

namespace tessera {

class CWizardCongratulations : public WizardPage {
public:
    explicit CWizardCongratulations(WizardState& state);
};

} // namespace tessera
