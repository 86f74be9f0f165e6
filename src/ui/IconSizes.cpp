#include "ui/IconSizes.h"

#include "ui/Commands.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr int kLargestFixedSize = 5; // index of the size combo; behind it comes the custom size

} // namespace

Handled stepIconSize(Commands& commands, const Message& wheel)
{
    if ((LOWORD(wheel.wParam) & MK_CONTROL) == 0)
        return kDefault;
    const bool larger = static_cast<short>(HIWORD(wheel.wParam)) > 0;
    const int size = commands.artwork().imageSizeIndex;
    const int next = std::clamp(size + (larger ? 1 : -1), 0, kLargestFixedSize);
    if (next != size && !(larger && size > kLargestFixedSize) && !commands.isBusy() &&
        !commands.coversLoading())
        commands.imageSizeChosen(next);
    return 0;
}

} // namespace tessera
