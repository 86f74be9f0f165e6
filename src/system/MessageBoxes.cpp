#include "system/MessageBoxes.h"

#include "base/Text.h"
#include "system/Module.h"

#include <utility>

namespace tessera {
namespace {

class SystemBoxes final : public MessageBoxes {};
constinit SystemBoxes g_systemBoxes;
MessageBoxes* g_boxes = &g_systemBoxes;

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
    return g_boxes->show(owner, flags, text, kProductName);
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
