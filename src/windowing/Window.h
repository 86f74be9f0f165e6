#pragma once

#include "system/ActivationContext.h"
#include "windowing/Messages.h"

#include <string>

namespace tessera {

// How the system knows a kind of window; the name is a literal.
struct WindowClass {
    const char* name = "TesseraWindow";
    UINT style = CS_DBLCLKS;
    HBRUSH background = nullptr; // null: WM_ERASEBKGND is the window's own business
    LPCSTR cursor = IDC_ARROW;
    HICON icon = nullptr;
};

struct WindowStyle {
    DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    DWORD extended = 0;
};

// A window of our own. The HWND is destroyed with the object; when somebody else destroys it (its
// parent, say) the object has no handle any more. Creation messages reach the map already. A
// class that wants to see WM_DESTROY whatever happens calls `destroy` in its own destructor: later
// its map is not asked any more.
class Window : public MessageTarget {
public:
    Window() = default;
    ~Window() override;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // For child windows `id` is the control id; it must be 0 for others. False when the system
    // refused or WM_CREATE answered -1.
    bool create(HWND parent, UINT id, const RECT& place, WindowStyle style = {},
                const std::string& title = "");
    void destroy();

    HWND handle() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }
    RECT clientRect() const;

protected:
    virtual WindowClass windowClass() const { return {}; }
    LRESULT defaultProcessing(const Message& message);
    // The HWND is gone and the object knows nothing of it any more; may delete the object.
    virtual void afterDestroy() {}

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    HWND m_handle = nullptr;
    const char* m_className = nullptr;
    ActivationContext m_context; // what was active at creation is active in every message
};

// Listens to a window of somebody else's making (a standard control) for as long as both live.
// Several may sit on one window; the last one attached is asked first.
class Subclass : public MessageTarget {
public:
    Subclass() = default;
    ~Subclass() override { detach(); }
    Subclass(const Subclass&) = delete;
    Subclass& operator=(const Subclass&) = delete;

    bool attach(HWND window);
    void detach();
    HWND handle() const { return m_handle; }

protected:
    LRESULT defaultProcessing(const Message& message);

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR object) noexcept;
    HWND m_handle = nullptr;
};

// The same for a standard control of our own, on the user-interface thread; several may sit on one, below
// any Subclass. Some systems ask another process about a Subclass at each message, which takes longer
// than most messages do.
class DirectSubclass : public MessageTarget {
public:
    DirectSubclass() = default;
    ~DirectSubclass() override { detach(); }
    DirectSubclass(const DirectSubclass&) = delete;
    DirectSubclass& operator=(const DirectSubclass&) = delete;

    bool attach(HWND window);
    void detach();
    HWND handle() const { return m_handle; }

private:
    struct Chain;
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

    HWND m_handle = nullptr;
    DirectSubclass* m_below = nullptr; // hears of a message after this one
};

} // namespace tessera
