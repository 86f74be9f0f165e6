#pragma once

#include "windowing/Window.h"

#include <span>
#include <string>

namespace tessera {

class TokenParser;

// An edit control that holds a template: a right click inserts a token, and a companion control
// always shows what the text gives for the sample album. User-interface thread only.
class MyEdit : public Mapped<MyEdit, Subclass> {
public:
    enum class Kind {
        AlbumLabel = 0,    // the companion is a label
        AlbumListItem = 1, // the companion is a list view, its item shows the preview
        Track = 2,         // the companion is a label
    };

    explicit MyEdit(const TokenParser& tokens) : m_tokens(tokens) {}

    // Takes over an edit control; edit and companion have the same parent or the companion outlives it.
    void subclass(HWND edit, Kind kind, HWND companion, int item = 0);
    // What the companion shows.
    std::string preview() const;
    void refresh() const;

    static std::span<const MapEntry<MyEdit>> messageMap();

protected:
    // Shows the menu of the kind; "" when nothing was chosen.
    virtual std::string chooseToken(POINT screen);

private:
    class Parent : public Subclass {
    public:
        explicit Parent(MyEdit& edit) : m_edit(edit) {}
        Handled route(const Message& message) override;

    private:
        MyEdit& m_edit;
    };

    Handled onContextMenu(const Message& message);
    Handled onSetText(const Message& message);
    int characterAt(POINT screen) const;
    int caretCharacter() const;
    POINT caretPoint() const;
    void insertToken(const std::string& token, int character);

    const TokenParser& m_tokens;
    Parent m_parent{*this};
    Kind m_kind = Kind::AlbumLabel;
    HWND m_hCompanion = nullptr;
    int m_nItem = 0;
};

} // namespace tessera
