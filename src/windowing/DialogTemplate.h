#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <windows.h>

namespace tessera {

// Left, top, width and height in dialog units.
struct DialogRect {
    short x = 0;
    short y = 0;
    short width = 0;
    short height = 0;
};

// A dialog template built in memory (DIALOGEX, "MS Shell Dlg" 8): 275 x 175 for a wizard page.
class DialogTemplate {
public:
    static constexpr DWORD kPageStyle = WS_CHILD | WS_CAPTION | WS_DISABLED | DS_CONTROL;
    static constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER;

    DialogTemplate(const std::string& caption, short width, short height, DWORD style = kDialogStyle);
    // A copy of a dialog resource of this module; nothing can be added to it.
    static DialogTemplate fromResource(UINT resource);

    // Any class; child and visible are added to the style.
    DialogTemplate& add(const char* windowClass, const std::string& text, UINT id, DialogRect place,
                        DWORD style, DWORD extended = 0);
    DialogTemplate& label(const std::string& text, UINT id, DialogRect place, DWORD style = SS_NOPREFIX);
    DialogTemplate& edit(UINT id, DialogRect place, DWORD style = ES_AUTOHSCROLL);
    DialogTemplate& button(const std::string& text, UINT id, DialogRect place, DWORD style = BS_PUSHBUTTON);
    DialogTemplate& checkBox(const std::string& text, UINT id, DialogRect place);

    // Valid as long as the object is not changed.
    const DLGTEMPLATE* get() const;

private:
    void put16(std::uint16_t value);
    void put32(std::uint32_t value);
    void putText(const std::string& text);
    void align();
    std::vector<std::uint16_t> m_data; // 16-bit units; aligned to 4 bytes by the allocation
    std::size_t m_countAt = 0;
};

} // namespace tessera
