#pragma once

#include "windowing/Messages.h"

namespace tessera {

class Commands;

// The wheel with the Ctrl key down: the next icon size of the main pane's combo box.
Handled stepIconSize(Commands& commands, const Message& wheel);

} // namespace tessera
