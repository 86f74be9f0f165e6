#pragma once

#include "system/Handle.h"
#include "windowing/Control.h"
#include "windowing/Window.h"

#include <string>

namespace tessera {

class Commands;

// A text to read: a rich edit control, or an ordinary one where the system has none. The text is
// plain text, whatever it looks like.
class RichTextBox final : public Mapped<RichTextBox, Subclass> {
public:
    static std::span<const MapEntry<RichTextBox>> messageMap();

    explicit RichTextBox(Commands& commands) : m_commands(commands) {}
    ~RichTextBox() override;

    // Hidden. False when there is no window.
    bool createBox(HWND parent, UINT id);
    // Scrolled to its begin. "\n", "\r" and "\r\n" all end a line.
    void setText(const std::string& text);
    void settingsChanged();
    // A strip of the place stays free at the left and on top; its parent paints it.
    void move(const RECT& place) const;
    void show(bool visible) const { m_box.show(visible); }
    const Control& box() const { return m_box; }

private:
    Handled onDialogCode(const Message& message);
    bool createRich(HWND parent, UINT id);

    Commands& m_commands;
    ModuleHandle m_library; // unloaded after the window is gone
    Control m_box;
    std::string m_text;
    bool m_rich = false;
};

} // namespace tessera
