#include "ui/IconSizes.h"

#include "ui/Commands.h"
#include "windowing/WheelNotches.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kLargestFixedSize = 5; // index of the size combo; behind it comes the custom size

} // namespace

Handled stepIconSize(Commands& commands, WheelNotches& notches, const Message& wheel)
{
    if ((LOWORD(wheel.wParam) & MK_CONTROL) == 0)
        return kDefault;
    const int steps = notches.add(wheel.wParam);
    const int size = commands.artwork().imageSizeIndex;
    const int next = std::clamp(size + steps, 0, kLargestFixedSize);
    if (steps != 0 && next != size && !(steps > 0 && size > kLargestFixedSize) && !commands.isBusy() &&
        !commands.coversLoading())
        commands.imageSizeChosen(next);
    return 0;
}

} // namespace tessera
