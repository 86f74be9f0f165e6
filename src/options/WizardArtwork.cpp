#include "options/WizardArtwork.h"

#include "base/Text.h"
#include "options/ids.h"
#include "tokens/TokenParser.h"
#include "windowing/CarriedPointer.h"
#include "windowing/FileDialogs.h"

#include <vector>

namespace tessera {

CWizardArtwork::CWizardArtwork(WizardState& state)
    : Mapped(WizardPageText{IDD_WIZARD_ARTWORK, "Step 5 of 6", "Artwork Directories"}, state)
{
}

std::span<const MapEntry<CWizardArtwork>> CWizardArtwork::messageMap()
{
    static constexpr MapEntry<CWizardArtwork> map[] = {
        {IDC_DIRECTORIES, LBN_SELCHANGE, &CWizardArtwork::onSelection},
    };
    return map;
}

Handled CWizardArtwork::route(const Message& message)
{
    if (message.id == browseMessage()) {
        onBrowse();
        return 0;
    }
    if (message.id == endEditMessage()) {
        if (CarriedPointer::isKnown(message.lParam)) {
            showSample(reinterpret_cast<const char*>(message.lParam));
        }
        return 0;
    }
    return Mapped::route(message);
}

bool CWizardArtwork::onInitDialog()
{
    m_lstDirectories.subclass(item(IDC_DIRECTORIES));
    m_header.subclass(item(IDC_DIRECTORIES_HEADER));
    m_lstDirectories.setRows(split(settings().artworkDirectories, "\t"));
    m_lstDirectories.selectRow(0);
    showSample(m_lstDirectories.rowText(0));
    return true;
}

void CWizardArtwork::onSelection(const Command&)
{
    showSample(m_lstDirectories.rowText(m_lstDirectories.currentRow()));
}

void CWizardArtwork::showSample(const std::string& pattern) const
{
    const TokenParser& tokens = commands().tokens();
    setItemText(IDC_SAMPLE, "Sample: " + tokens.expandArtwork(pattern, tokens.sampleAlbum()));
}

void CWizardArtwork::onBrowse()
{
    const std::string row = m_lstDirectories.rowText(m_lstDirectories.editedRow());
    if (const std::optional<std::string> folder =
            browseFolder(sheet().handle(), row, "\nPlease Select Folder:")) {
        m_lstDirectories.setEditText(*folder);
    }
}

bool CWizardArtwork::onWizardBack()
{
    m_lstDirectories.acceptEdit();
    return WizardPage::onWizardBack();
}

bool CWizardArtwork::takeOver()
{
    m_lstDirectories.acceptEdit();
    std::vector<std::string> patterns = m_lstDirectories.rows();
    std::erase_if(patterns, [](const std::string& pattern) { return pattern.empty(); });
    settings().artworkDirectories = join(patterns, "\t");
    return true;
}

} // namespace tessera
