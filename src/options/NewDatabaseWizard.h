#pragma once

#include "settings/Settings.h"

#include <windows.h>

namespace tessera {

class Commands;
class CWizardPropertySheet;

// Runs the new-database wizard over the owner, the host's top-level window. True when the user
// pressed "Finish"; then seven values of the settings are new, else none. While the wizard is open
// `running` points to it, so that it can be cancelled from outside.
bool runNewDatabaseWizard(HWND owner, Commands& commands, DatabaseSettings& edited,
                          CWizardPropertySheet** running = nullptr);

} // namespace tessera
