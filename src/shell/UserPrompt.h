#pragma once

#include "ports/Prompt.h"
#include "shell/UiQueue.h"

namespace tessera {

// Shows boxes on the user-interface thread, whoever asks.
class UserPrompt final : public Prompt {
public:
    UserPrompt(UiQueue& queue, HWND owner) : m_queue(queue), m_owner(owner), m_uiThread(GetCurrentThreadId())
    {
    }

    void message(Severity severity, const std::string& text) override;
    void assertion(const std::string& expression, const std::string& unit, unsigned long line) override;

private:
    void onUiThread(UiQueue::Task task);

    UiQueue& m_queue;
    HWND m_owner;
    DWORD m_uiThread;
};

} // namespace tessera
