#include "shell/UserPrompt.h"

#include "system/MessageBoxes.h"

namespace tessera {

namespace {

UINT iconOf(Severity severity)
{
    switch (severity) {
    case Severity::Stop:
        return MB_ICONSTOP;
    case Severity::Exclamation:
        return MB_ICONEXCLAMATION;
    case Severity::Information:
        return MB_ICONINFORMATION;
    }
    return 0;
}

} // namespace

void UserPrompt::message(Severity severity, const std::string& text)
{
    onUiThread(
        [owner = m_owner, flags = MB_OK | iconOf(severity), text] { showMessage(owner, flags, text); });
}

void UserPrompt::assertion(const std::string& expression, const std::string& unit, unsigned long line)
{
    onUiThread([=, owner = m_owner] { showAssertion(owner, expression, unit, line); });
}

void UserPrompt::onUiThread(UiQueue::Task task)
{
    if (GetCurrentThreadId() == m_uiThread) {
        task();
    } else {
        m_queue.ask(std::move(task));
    }
}

} // namespace tessera
