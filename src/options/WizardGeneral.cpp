#include "options/WizardGeneral.h"

#include "options/ids.h"
#include "windowing/FileDialogs.h"

namespace tessera {

CWizardGeneral::CWizardGeneral(WizardState& state)
    : Mapped(WizardPageText{IDD_WIZARD_GENERAL, "Step 2 of 6", "General Information"}, state)
{
}

std::span<const MapEntry<CWizardGeneral>> CWizardGeneral::messageMap()
{
    static constexpr MapEntry<CWizardGeneral> map[] = {
        {IDC_DATABASE_BROWSE, BN_CLICKED, &CWizardGeneral::onBrowse},
    };
    return map;
}

// The question whether to preserve album settings is the page's alone: nothing reads its answer.
bool CWizardGeneral::onInitDialog()
{
    setItemText(IDC_DATABASE_FILE, settings().lastUsed);
    setItemText(IDC_SEARCH_CRITERIA, settings().lastSearchCriteria);
    return true;
}

void CWizardGeneral::onBrowse(const Command&)
{
    FileDialogOptions options;
    options.title = "Enter the name of the database to create";
    options.filter = "Database Files (*.ts2)|*.ts2|All Files (*.*)|*.*||";
    options.initialName = itemText(IDC_DATABASE_FILE);
    options.defaultExtension = ".ts2";
    options.flags = kSaveFlags;
    if (const std::optional<std::string> path = saveFile(sheet().handle(), options)) {
        setItemText(IDC_DATABASE_FILE, *path);
    }
}

bool CWizardGeneral::takeOver()
{
    const std::string name = itemText(IDC_DATABASE_FILE);
    if (name.empty()) {
        refuse("The database name cannot be blank!", IDC_DATABASE_FILE);
        return false;
    }
    settings().lastUsed = name;
    settings().lastSearchCriteria = itemText(IDC_SEARCH_CRITERIA);
    return true;
}

} // namespace tessera
