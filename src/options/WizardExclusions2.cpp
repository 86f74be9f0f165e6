#include "options/WizardExclusions2.h"

#include "base/Text.h"
#include "options/ids.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace tessera {

std::int32_t leadingNumber(const std::string& text)
{
    using Limits = std::numeric_limits<std::int32_t>;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

CWizardExclusions2::CWizardExclusions2(WizardState& state)
    : WizardPage({IDD_WIZARD_EXCLUSIONS2, "Step 4 of 6", "Exclusions (Part 2)"}, state)
{
}

bool CWizardExclusions2::onInitDialog()
{
    setChecked(IDC_EXCLUDE_UNASSIGNED, settings().excludeUnassigned);
    setItemText(IDC_MIN_TRACKS, format("%ld", static_cast<long>(settings().minTracksPerAlbum)));
    return true;
}

bool CWizardExclusions2::takeOver()
{
    const std::int32_t minimum = leadingNumber(itemText(IDC_MIN_TRACKS));
    if (minimum < 1) {
        setItemText(IDC_MIN_TRACKS, "1");
        refuse("The minimum number of tracks cannot be less than one!", IDC_MIN_TRACKS);
        return false;
    }
    settings().excludeUnassigned = isChecked(IDC_EXCLUDE_UNASSIGNED);
    settings().minTracksPerAlbum = minimum;
    return true;
}

} // namespace tessera
