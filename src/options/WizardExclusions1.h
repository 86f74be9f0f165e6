#pragma once

#include "options/WizardPage.h"

namespace tessera {

// Excluded types and the exclusions file.
class CWizardExclusions1 : public Mapped<CWizardExclusions1, WizardPage> {
public:
    explicit CWizardExclusions1(WizardState& state);

    static std::span<const MapEntry<CWizardExclusions1>> messageMap();

protected:
    bool onInitDialog() override;
    bool takeOver() override;

private:
    void onBrowse(const Command& command);
};

} // namespace tessera
