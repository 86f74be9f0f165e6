#include "system/MessageBoxes.h"

#include "base/Text.h"
#include "system/Module.h"

#include <utility>

namespace tessera {
namespace {

class SystemBoxes final : public MessageBoxes {};
constinit SystemBoxes g_systemBoxes;
MessageBoxes* g_boxes = &g_systemBoxes;

// While a dialog keeps the owner's window disabled, the box is the dialog's: else it could be used with the
// box open.
HWND boxOwner(HWND owner)
{
    const HWND root = GetAncestor(owner, GA_ROOT);
    if (!root || IsWindowEnabled(root)) {
        return owner;
    }
    const HWND popup = GetLastActivePopup(root);
    const bool usable = GetWindowThreadProcessId(popup, nullptr) == GetCurrentThreadId() &&
                        IsWindowVisible(popup) && IsWindowEnabled(popup);
    return usable ? popup : owner;
}

} // namespace

int MessageBoxes::show(HWND owner, UINT flags, const std::string& text, const std::string& caption)
{
    return MessageBoxA(owner, text.c_str(), caption.c_str(), flags);
}

void MessageBoxes::endProcess()
{
    TerminateProcess(GetCurrentProcess(), 3);
}

MessageBoxes* setMessageBoxes(MessageBoxes* boxes)
{
    return std::exchange(g_boxes, boxes ? boxes : &g_systemBoxes);
}

int showMessage(HWND owner, UINT flags, const std::string& text)
{
    return g_boxes->show(boxOwner(owner), flags, text, kProductName);
}

std::string assertionText(const std::string& expression, const std::string& unit, unsigned long line)
{
    return format("Assertion Failed!\n\n\n%s\n\n\nProgram: %s\nFile: %s\nLine: %lu\n\n\n"
                  "Press YES to abort the application or NO to continue",
                  expression.c_str(), programPath().c_str(), unit.c_str(), line);
}

void showAssertion(HWND owner, const std::string& expression, const std::string& unit, unsigned long line)
{
    if (showMessage(owner, MB_YESNO | MB_ICONSTOP, assertionText(expression, unit, line)) == IDYES) {
        g_boxes->endProcess();
    }
}

} // namespace tessera
