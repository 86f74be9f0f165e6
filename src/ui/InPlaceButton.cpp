#include "ui/InPlaceButton.h"

#include "windowing/Control.h"

namespace tessera {

void CInPlaceButton::create(HWND list)
{
    InPlaceControl::create(list, "BUTTON", "...", BS_PUSHBUTTON);
    SendMessageA(handle(), WM_SETFONT, reinterpret_cast<WPARAM>(defaultFont()), FALSE);
}

} // namespace tessera
