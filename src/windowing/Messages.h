#pragma once

#include <optional>
#include <span>
#include <windows.h>

namespace tessera {

// A window message on its way; travels as an argument, since modal loops enter handlers again.
struct Message {
    HWND window;
    UINT id;
    WPARAM wParam;
    LPARAM lParam;
};

// WM_COMMAND taken apart; the control is null for menus and accelerators.
struct Command {
    UINT id;
    UINT code;
    HWND control;
};

// The answer of a handler; none: the default processing follows.
using Handled = std::optional<LRESULT>;
inline constexpr std::nullopt_t kDefault = std::nullopt;

// The structure that a notification's header begins.
template <class Structure>
Structure& notificationAs(NMHDR& header)
{
    return reinterpret_cast<Structure&>(header);
}

struct IdRange {
    UINT first;
    UINT last;
};

inline constexpr UINT kAnyCode = 0xFFFFFFFF;

// One line of a message map; what it is for follows from the handler:
//   {WM_SIZE, &T::onSize}                          Handled onSize(const Message&)
//   {kPlay, &T::onPlay}                            void onPlay(const Command&), any code
//   {kCombo, CBN_SELCHANGE, &T::onCombo}           the same for one code
//   {IdRange{57600, 57606}, &T::onButton}          the same for several ids
//   {kList, LVN_ITEMCHANGED, &T::onItemChanged}    Handled onItemChanged(NMHDR&)
//   {IdRange{0, 0xFFFF}, TTN_GETDISPINFOA, &T::x}  the same whatever control sends it
template <class T>
struct MapEntry {
    using MessageHandler = Handled (T::*)(const Message&);
    using CommandHandler = void (T::*)(const Command&);
    using NotifyHandler = Handled (T::*)(NMHDR&);

    constexpr MapEntry(UINT message, MessageHandler handler) : ids{message, message}, onMessage(handler) {}
    constexpr MapEntry(UINT command, CommandHandler handler) : ids{command, command}, onCommand(handler) {}
    constexpr MapEntry(UINT command, UINT code_, CommandHandler handler)
        : ids{command, command}, code(code_), onCommand(handler)
    {
    }
    constexpr MapEntry(IdRange commands, CommandHandler handler) : ids(commands), onCommand(handler) {}
    constexpr MapEntry(IdRange commands, UINT code_, CommandHandler handler)
        : ids(commands), code(code_), onCommand(handler)
    {
    }
    constexpr MapEntry(UINT control, UINT code_, NotifyHandler handler)
        : ids{control, control}, code(code_), onNotify(handler)
    {
    }
    constexpr MapEntry(IdRange controls, UINT code_, NotifyHandler handler)
        : ids(controls), code(code_), onNotify(handler)
    {
    }

    bool covers(UINT id) const { return id >= ids.first && id <= ids.last; }

    IdRange ids;
    UINT code = kAnyCode;
    MessageHandler onMessage = nullptr;
    CommandHandler onCommand = nullptr;
    NotifyHandler onNotify = nullptr;
};

// What messages are sent to: a window of our own, a dialog, a page, a subclassed control.
class MessageTarget {
public:
    virtual ~MessageTarget() = default;
    virtual Handled route(const Message&) { return kDefault; }
};

// The first line of the map that covers the message and whose handler answers ends the search;
// a command handler always ends it, with 0.
template <class T>
Handled routeByMap(T& target, std::span<const MapEntry<T>> map, const Message& message)
{
    const bool isCommand = message.id == WM_COMMAND;
    const Command command{LOWORD(message.wParam), HIWORD(message.wParam),
                          reinterpret_cast<HWND>(message.lParam)};
    NMHDR* const header = message.id == WM_NOTIFY ? reinterpret_cast<NMHDR*>(message.lParam) : nullptr;
    for (const MapEntry<T>& entry : map) {
        if (entry.onMessage && entry.covers(message.id)) {
            if (const Handled handled = (target.*entry.onMessage)(message)) {
                return handled;
            }
        } else if (isCommand && entry.onCommand && entry.covers(command.id) &&
                   (entry.code == kAnyCode || entry.code == command.code)) {
            (target.*entry.onCommand)(command);
            return 0;
        } else if (header && entry.onNotify && entry.covers(static_cast<UINT>(header->idFrom)) &&
                   entry.code == header->code) {
            if (const Handled handled = (target.*entry.onNotify)(*header)) {
                return handled;
            }
        }
    }
    return kDefault;
}

// A Base (Window, Dialog, PropertyPage, Subclass) whose messages go by T's map, then by Base's:
//   class PaneMain : public Mapped<PaneMain> {
//   public:
//       static std::span<const MapEntry<PaneMain>> messageMap();
template <class T, class Base = class Window>
class Mapped : public Base {
public:
    using Base::Base;
    Handled route(const Message& message) override
    {
        if (const Handled handled = routeByMap<T>(static_cast<T&>(*this), T::messageMap(), message)) {
            return handled;
        }
        return Base::route(message);
    }
};

// Routes inside the border: what the user started (commands, keys, buttons, most notifications,
// messages of our own) reports its errors in a box owned by the message's window; what runs by
// itself (timer, painting, sizes, focus, display information) stays silent.
Handled routeGuarded(MessageTarget& target, const Message& message) noexcept;

} // namespace tessera
