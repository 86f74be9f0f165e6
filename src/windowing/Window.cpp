#include "windowing/Window.h"

#include "system/Border.h"
#include "system/Module.h"
#include "windowing/CarriedPointer.h"

#include <commctrl.h>
#include <map>
#include <memory>
#include <utility>

namespace tessera {
namespace {

constexpr int kObject = 0; // its place in a window's own bytes; user data is for whoever skins it

// The class is there while a window of it is; a module that leaves takes its classes along. One
// that an earlier copy of the module left at the same address is replaced.
bool registerClass(const WindowClass& kind, WNDPROC procedure)
{
    WNDCLASSEXA known{};
    known.cbSize = sizeof known;
    if (GetClassInfoExA(moduleInstance(), kind.name, &known) && known.lpfnWndProc == procedure) {
        return true;
    }
    UnregisterClassA(kind.name, moduleInstance());
    WNDCLASSEXA wanted{};
    wanted.cbSize = sizeof wanted;
    wanted.style = kind.style;
    wanted.lpfnWndProc = procedure;
    wanted.cbWndExtra = sizeof(LONG_PTR);
    wanted.hInstance = moduleInstance();
    wanted.hIcon = kind.icon;
    wanted.hCursor = LoadCursorA(nullptr, kind.cursor);
    wanted.hbrBackground = kind.background;
    wanted.lpszClassName = kind.name;
    return RegisterClassExA(&wanted) != 0;
}

} // namespace

Window::~Window()
{
    destroy();
    if (m_className) {
        UnregisterClassA(m_className, moduleInstance()); // refused as long as others need it
    }
}

bool Window::create(HWND parent, UINT id, const RECT& place, WindowStyle style, const std::string& title)
{
    destroy();
    const WindowClass kind = windowClass();
    if (!registerClass(kind, &Window::procedure)) {
        return false;
    }
    m_className = kind.name;
    m_context = ActivationContext::current();
    const CarriedPointer carried(this);
    CreateWindowExA(style.extended, kind.name, title.c_str(), style.style, place.left, place.top,
                    place.right - place.left, place.bottom - place.top, parent,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), moduleInstance(), this);
    return m_handle != nullptr;
}

void Window::destroy()
{
    if (m_handle) {
        DestroyWindow(m_handle);
    }
}

RECT Window::clientRect() const
{
    RECT rect{};
    GetClientRect(m_handle, &rect);
    return rect;
}

LRESULT Window::defaultProcessing(const Message& message)
{
    return DefWindowProcA(message.window, message.id, message.wParam, message.lParam);
}

LRESULT CALLBACK Window::procedure(HWND handle, UINT id, WPARAM wParam, LPARAM lParam) noexcept
{
    if (id == WM_NCCREATE && !GetWindowLongPtrA(handle, kObject)) {
        auto* const created = static_cast<Window*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
        if (CarriedPointer::isKnown(created)) {
            created->m_handle = handle;
            SetWindowLongPtrA(handle, kObject, reinterpret_cast<LONG_PTR>(created));
        }
    }
    auto* const window = reinterpret_cast<Window*>(GetWindowLongPtrA(handle, kObject));
    if (!window) {
        return DefWindowProcA(handle, id, wParam, lParam);
    }
    const ActivationScope activation(window->m_context);
    const Handled handled = routeGuarded(*window, {handle, id, wParam, lParam});
    if (id == WM_NCDESTROY) {
        SetWindowLongPtrA(handle, kObject, 0);
        window->m_handle = nullptr;
        quietBorder(0, [window] { return window->afterDestroy(), 0; }); // may delete the object
    }
    return handled ? *handled : DefWindowProcA(handle, id, wParam, lParam);
}

bool Subclass::attach(HWND window)
{
    detach();
    if (!SetWindowSubclass(window, &Subclass::procedure, reinterpret_cast<UINT_PTR>(this),
                           reinterpret_cast<DWORD_PTR>(this))) {
        return false;
    }
    m_handle = window;
    return true;
}

void Subclass::detach()
{
    if (m_handle) {
        RemoveWindowSubclass(m_handle, &Subclass::procedure, reinterpret_cast<UINT_PTR>(this));
        m_handle = nullptr;
    }
}

LRESULT Subclass::defaultProcessing(const Message& message)
{
    return DefSubclassProc(message.window, message.id, message.wParam, message.lParam);
}

LRESULT CALLBACK Subclass::procedure(HWND handle, UINT id, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                     DWORD_PTR object) noexcept
{
    auto* const subclass = reinterpret_cast<Subclass*>(object);
    const Handled handled = routeGuarded(*subclass, {handle, id, wParam, lParam});
    if (id == WM_NCDESTROY) {
        subclass->detach();
    }
    return handled ? *handled : DefSubclassProc(handle, id, wParam, lParam);
}

namespace {

WNDPROC exchangeProcedure(HWND window, WNDPROC procedure)
{
    const auto next = reinterpret_cast<LONG_PTR>(procedure);
    return reinterpret_cast<WNDPROC>(IsWindowUnicode(window) ? SetWindowLongPtrW(window, GWLP_WNDPROC, next)
                                                             : SetWindowLongPtrA(window, GWLP_WNDPROC, next));
}

WNDPROC currentProcedure(HWND window)
{
    return reinterpret_cast<WNDPROC>(IsWindowUnicode(window) ? GetWindowLongPtrW(window, GWLP_WNDPROC)
                                                             : GetWindowLongPtrA(window, GWLP_WNDPROC));
}

} // namespace

// Of a control; goes with it. Kept beside the control: its user data is anybody's who is given the
// control to skin.
struct DirectSubclass::Chain {
    WNDPROC original = nullptr;
    bool unicode = false;
    DirectSubclass* top = nullptr;
    unsigned changes = 0;

    using Chains = std::map<HWND, std::unique_ptr<Chain>>;
    static Chains& all()
    {
        static Chains chains;
        return chains;
    }
    static Chain* of(HWND window)
    {
        const auto found = all().find(window);
        return found == all().end() ? nullptr : found->second.get();
    }
    LRESULT pass(const Message& message) const
    {
        const auto call = unicode ? &CallWindowProcW : &CallWindowProcA;
        return call(original, message.window, message.id, message.wParam, message.lParam);
    }
};

bool DirectSubclass::attach(HWND window)
{
    detach();
    if (!IsWindow(window))
        return false;
    Chain* chain = Chain::of(window);
    if (!chain) {
        auto made = std::make_unique<Chain>();
        made->original = currentProcedure(window);
        made->unicode = IsWindowUnicode(window) != FALSE;
        chain = Chain::all().insert_or_assign(window, std::move(made)).first->second.get();
        exchangeProcedure(window, &DirectSubclass::procedure);
    }
    m_handle = window;
    m_below = std::exchange(chain->top, this);
    ++chain->changes;
    return true;
}

void DirectSubclass::detach()
{
    if (!m_handle)
        return;
    Chain& chain = *Chain::of(m_handle);
    DirectSubclass** link = &chain.top;
    while (*link != this)
        link = &(*link)->m_below;
    *link = m_below;
    ++chain.changes;
    m_handle = nullptr;
    m_below = nullptr;
}

// Whoever handles a message may take others off, and end the control. A control without a chain is past
// its last message, which somebody who sits above told it twice.
LRESULT CALLBACK DirectSubclass::procedure(HWND window, UINT id, WPARAM wParam, LPARAM lParam) noexcept
{
    Chain* const chain = Chain::of(window);
    if (!chain)
        return DefWindowProcA(window, id, wParam, lParam);
    const Message message{window, id, wParam, lParam};
    Handled handled = kDefault;
    const unsigned before = chain->changes;
    for (DirectSubclass* each = chain->top; each && !handled;) {
        DirectSubclass* const below = each->m_below;
        handled = routeGuarded(*each, message);
        if (!handled && (!IsWindow(window) || chain->changes != before))
            break;
        each = below;
    }
    if (id == WM_NCDESTROY) {
        while (chain->top)
            chain->top->detach();
        const auto last = Chain::all().extract(window);
        if (currentProcedure(window) == &DirectSubclass::procedure)
            exchangeProcedure(window, chain->original);
        return handled ? *handled : chain->pass(message);
    }
    if (handled)
        return *handled;
    return Chain::of(window) ? chain->pass(message) : 0;
}

} // namespace tessera
