#include "options/WizardExclusions1.h"

#include "options/ids.h"
#include "windowing/FileDialogs.h"

namespace tessera {

CWizardExclusions1::CWizardExclusions1(WizardState& state)
    : Mapped(WizardPageText{IDD_WIZARD_EXCLUSIONS1, "Step 3 of 6", "Exclusions (Part 1)"}, state)
{
}

std::span<const MapEntry<CWizardExclusions1>> CWizardExclusions1::messageMap()
{
    static constexpr MapEntry<CWizardExclusions1> map[] = {
        {IDC_EXCLUSIONS_BROWSE, BN_CLICKED, &CWizardExclusions1::onBrowse},
    };
    return map;
}

bool CWizardExclusions1::onInitDialog()
{
    setItemText(IDC_EXCLUDED_TYPES, settings().excludedTypes);
    setItemText(IDC_EXCLUSIONS_FILE, settings().exclusionList);
    return true;
}

void CWizardExclusions1::onBrowse(const Command&)
{
    FileDialogOptions options;
    options.title = "Enter the name of the file containing the exclusions list";
    options.filter = "Text Files (*.txt)|*.txt|All Files (*.*)|*.*||";
    options.initialName = itemText(IDC_EXCLUSIONS_FILE);
    options.flags = kOpenFlags;
    if (const std::optional<std::string> path = openFile(sheet().handle(), options)) {
        setItemText(IDC_EXCLUSIONS_FILE, *path);
    }
}

bool CWizardExclusions1::takeOver()
{
    settings().excludedTypes = itemText(IDC_EXCLUDED_TYPES);
    settings().exclusionList = itemText(IDC_EXCLUSIONS_FILE);
    return true;
}

} // namespace tessera
