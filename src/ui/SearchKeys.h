#pragma once

#include "windowing/Window.h"

namespace tessera {

// Keys of the controls that belong to a search: each becomes a command to their parent.
class SearchKeys final : public Mapped<SearchKeys, Subclass> {
public:
    static std::span<const MapEntry<SearchKeys>> messageMap();

    // The box itself also leaves to the list by Down and Enter.
    bool attachTo(HWND control, bool isBox);

private:
    Handled onKeyDown(const Message& message);
    Handled onCharacter(const Message& message);

    bool m_isBox = false;
};

} // namespace tessera
