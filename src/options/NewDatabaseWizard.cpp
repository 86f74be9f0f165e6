#include "options/NewDatabaseWizard.h"

#include "options/WizardPropertySheet.h"

namespace tessera {

namespace {

// Lets others see the wizard as long as it lives.
class Shown {
public:
    Shown(CWizardPropertySheet** place, CWizardPropertySheet* wizard) : m_place(place)
    {
        if (m_place) {
            *m_place = wizard;
        }
    }
    ~Shown()
    {
        if (m_place) {
            *m_place = nullptr;
        }
    }
    Shown(const Shown&) = delete;
    Shown& operator=(const Shown&) = delete;

private:
    CWizardPropertySheet** m_place;
};

} // namespace

bool runNewDatabaseWizard(HWND owner, Commands& commands, DatabaseSettings& edited,
                          CWizardPropertySheet** running)
{
    CWizardPropertySheet wizard(commands, edited);
    const Shown shown(running, &wizard);
    if (!wizard.run(owner)) {
        return false;
    }
    edited = wizard.settings();
    return true;
}

} // namespace tessera
