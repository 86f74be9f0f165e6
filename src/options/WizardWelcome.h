#pragma once

#include "options/WizardPage.h"

namespace tessera {

class CWizardWelcome : public WizardPage {
public:
    explicit CWizardWelcome(WizardState& state);
};

} // namespace tessera
