#include "windowing/ToolBar.h"

#include <vector>

namespace tessera {

bool ToolBar::create(HWND parent, UINT id, std::span<const ToolBarButton> buttons, HIMAGELIST images,
                     DWORD style)
{
    if (!createControl(TOOLBARCLASSNAMEA, parent, id, {}, style)) {
        return false;
    }
    std::vector<TBBUTTON> records;
    for (const ToolBarButton& button : buttons) {
        TBBUTTON record{};
        record.iBitmap = button.id == 0 ? 0 : button.image;
        record.idCommand = static_cast<int>(button.id);
        record.fsState = button.state;
        record.fsStyle = button.id == 0 ? static_cast<BYTE>(BTNS_SEP) : button.style;
        records.push_back(record);
    }
    send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    send(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
    return send(TB_ADDBUTTONSA, records.size(), reinterpret_cast<LPARAM>(records.data())) != 0;
}

RECT ToolBar::buttonRect(UINT button) const
{
    RECT rect{};
    send(TB_GETRECT, button, reinterpret_cast<LPARAM>(&rect));
    return rect;
}

SIZE ToolBar::size() const
{
    SIZE size{};
    send(TB_GETMAXSIZE, 0, reinterpret_cast<LPARAM>(&size));
    return size;
}

bool ReBar::create(HWND parent, UINT id, const RECT& place, DWORD style)
{
    return createControl(REBARCLASSNAMEA, parent, id, place, style | WS_CLIPCHILDREN | WS_CLIPSIBLINGS);
}

bool ReBar::addBand(const ReBarBand& band) const
{
    REBARBANDINFOA record{};
    record.cbSize = REBARBANDINFOA_V3_SIZE;
    record.fMask = RBBIM_STYLE | RBBIM_CHILD | RBBIM_CHILDSIZE | RBBIM_SIZE;
    record.fStyle = band.style;
    record.hwndChild = band.child;
    record.cxMinChild = static_cast<UINT>(band.minimumWidth);
    record.cyMinChild = static_cast<UINT>(band.height);
    record.cx = static_cast<UINT>(band.width);
    if (!band.title.empty()) {
        record.fMask |= RBBIM_TEXT;
        record.lpText = const_cast<char*>(band.title.c_str());
    }
    return send(RB_INSERTBANDA, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&record)) != 0;
}

} // namespace tessera
