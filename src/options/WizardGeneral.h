#pragma once

#include "options/WizardPage.h"

namespace tessera {

// The database file and the host search.
class CWizardGeneral : public Mapped<CWizardGeneral, WizardPage> {
public:
    explicit CWizardGeneral(WizardState& state);

    static std::span<const MapEntry<CWizardGeneral>> messageMap();

protected:
    bool onInitDialog() override;
    bool takeOver() override;

private:
    void onBrowse(const Command& command);
};

} // namespace tessera
