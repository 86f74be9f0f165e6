#pragma once

#include "options/WizardPage.h"

#include <cstdint>

namespace tessera {

// A signed decimal number from the leading digits; 0 without any. What does not fit becomes the
// largest or smallest number.
std::int32_t leadingNumber(const std::string& text);

// Unassigned albums and the minimum number of tracks.
class CWizardExclusions2 : public WizardPage {
public:
    explicit CWizardExclusions2(WizardState& state);

protected:
    bool onInitDialog() override;
    bool takeOver() override;
};

} // namespace tessera
