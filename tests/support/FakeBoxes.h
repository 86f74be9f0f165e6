#pragma once

#include "system/MessageBoxes.h"

#include <string>
#include <vector>

namespace tessera {

// Keeps what the boxes were asked to show, and answers instead of a user.
class FakeBoxes : public MessageBoxes {
public:
    explicit FakeBoxes(int answer = IDOK) : m_before(setMessageBoxes(this)), m_answer(answer) {}
    ~FakeBoxes() { setMessageBoxes(m_before); }
    FakeBoxes(const FakeBoxes&) = delete;
    FakeBoxes& operator=(const FakeBoxes&) = delete;

    int show(HWND, UINT flags, const std::string& text, const std::string& caption) override
    {
        texts.push_back(text);
        lastFlags = flags;
        lastCaption = caption;
        return m_answer;
    }
    void endProcess() override { ++ends; }

    std::vector<std::string> texts;
    UINT lastFlags = 0;
    std::string lastCaption;
    int ends = 0;

private:
    MessageBoxes* m_before;
    int m_answer;
};

} // namespace tessera
