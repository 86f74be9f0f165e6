#pragma once

#include "options/WizardPage.h"
#include "ui/ListBoxEx.h"
#include "ui/ListBoxExBuddy.h"

namespace tessera {

// The patterns of the places where artwork is looked for.
class CWizardArtwork : public Mapped<CWizardArtwork, WizardPage> {
public:
    explicit CWizardArtwork(WizardState& state);

    static std::span<const MapEntry<CWizardArtwork>> messageMap();
    Handled route(const Message& message) override;

protected:
    bool onInitDialog() override;
    bool onWizardBack() override;
    bool takeOver() override;

private:
    void onSelection(const Command& command);
    void onBrowse();
    void showSample(const std::string& pattern) const;

    CListBoxEx m_lstDirectories;
    CListBoxExBuddy m_header{m_lstDirectories};
};

} // namespace tessera
