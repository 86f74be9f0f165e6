#include "windowing/DialogTemplate.h"

#include "base/Text.h"

namespace tessera {

DialogTemplate::DialogTemplate(const std::string& caption, short width, short height, DWORD style)
{
    put16(1); // version and signature of the extended form
    put16(0xFFFF);
    put32(0); // help
    put32(0); // extended style
    put32(style | DS_SHELLFONT);
    m_countAt = m_data.size();
    put16(0);
    put16(0); // place
    put16(0);
    put16(static_cast<std::uint16_t>(width));
    put16(static_cast<std::uint16_t>(height));
    put16(0); // menu
    put16(0); // class
    putText(caption);
    put16(8); // points
    put16(FW_NORMAL);
    put16(DEFAULT_CHARSET << 8);
    putText("MS Shell Dlg");
}

DialogTemplate& DialogTemplate::add(const char* windowClass, const std::string& text, UINT id,
                                    DialogRect place, DWORD style, DWORD extended)
{
    align();
    put32(0); // help
    put32(extended);
    put32(style | WS_CHILD | WS_VISIBLE);
    for (const short number : {place.x, place.y, place.width, place.height}) {
        put16(static_cast<std::uint16_t>(number));
    }
    put32(id);
    putText(windowClass);
    putText(text);
    put16(0); // creation data
    ++m_data[m_countAt];
    return *this;
}

DialogTemplate& DialogTemplate::label(const std::string& text, UINT id, DialogRect place, DWORD style)
{
    return add("STATIC", text, id, place, style);
}

DialogTemplate& DialogTemplate::edit(UINT id, DialogRect place, DWORD style)
{
    return add("EDIT", "", id, place, style | WS_TABSTOP, WS_EX_CLIENTEDGE);
}

DialogTemplate& DialogTemplate::button(const std::string& text, UINT id, DialogRect place, DWORD style)
{
    return add("BUTTON", text, id, place, style | WS_TABSTOP);
}

DialogTemplate& DialogTemplate::checkBox(const std::string& text, UINT id, DialogRect place)
{
    return button(text, id, place, BS_AUTOCHECKBOX);
}

const DLGTEMPLATE* DialogTemplate::get() const
{
    return reinterpret_cast<const DLGTEMPLATE*>(m_data.data());
}

void DialogTemplate::put16(std::uint16_t value)
{
    m_data.push_back(value);
}

void DialogTemplate::put32(std::uint32_t value)
{
    put16(static_cast<std::uint16_t>(value));
    put16(static_cast<std::uint16_t>(value >> 16));
}

void DialogTemplate::putText(const std::string& text)
{
    const std::u16string wide = toWide(text);
    m_data.insert(m_data.end(), wide.begin(), wide.end());
    put16(0);
}

void DialogTemplate::align()
{
    if (m_data.size() % 2 != 0) {
        put16(0);
    }
}

} // namespace tessera
