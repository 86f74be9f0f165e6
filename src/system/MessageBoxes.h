#pragma once

#include <string>
#include <windows.h>

namespace tessera {

inline constexpr const char* kProductName = "Tessera 2.0";

// What stands behind the boxes; tests and unattended runs put their own in its place.
class MessageBoxes {
public:
    // Answers the button, as MessageBox does.
    virtual int show(HWND owner, UINT flags, const std::string& text, const std::string& caption);
    // Ends the process at once.
    virtual void endProcess();

protected:
    ~MessageBoxes() = default; // trivial, so that the static one needs no initialiser
};

// Answers what was there before; null: the system's boxes again.
MessageBoxes* setMessageBoxes(MessageBoxes* boxes);

// The message box captioned with the product's name; answers the button pressed. It belongs to the owner,
// or to the dialog that is open over it.
int showMessage(HWND owner, UINT flags, const std::string& text);

std::string assertionText(const std::string& expression, const std::string& unit, unsigned long line);
// The assertion box: Yes ends the process, No returns.
void showAssertion(HWND owner, const std::string& expression, const std::string& unit, unsigned long line);

} // namespace tessera
