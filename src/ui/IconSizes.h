#pragma once

#include "windowing/Messages.h"

namespace tessera {

class Commands;
class WheelNotches;

// The wheel with the Ctrl key down: for each notch the next icon size of the main pane's combo box.
Handled stepIconSize(Commands& commands, WheelNotches& notches, const Message& wheel);

} // namespace tessera
