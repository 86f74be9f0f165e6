#include "jukebox/PluginArea.h"

#include "jukebox/PluginEntry.h"
#include "system/Border.h"
#include "windowing/Drawing.h"

#include <array>
#include <cstdio>

namespace tessera::jukebox {

namespace {

constexpr const char* kNoPlugin = "No plug-in is registered with this player.\n\n"
                                  "To register Tessera 2.0, run\n\n"
                                  "    regsvr32 tessera2.dll\n\n"
                                  "and start the player again.";

} // namespace

std::span<const MapEntry<PluginArea>> PluginArea::messageMap()
{
    static constexpr std::array kMap = {
        MapEntry<PluginArea>{WM_SIZE, &PluginArea::onSize},
        MapEntry<PluginArea>{WM_ERASEBKGND, &PluginArea::onErase},
        MapEntry<PluginArea>{WM_PAINT, &PluginArea::onPaint},
        MapEntry<PluginArea>{WM_SETFOCUS, &PluginArea::onSetFocus},
    };
    return kMap;
}

void PluginArea::load(HostState& state)
{
    try {
        start(state);
    } catch (...) {
        showProblem("The plug-in could not be started.\n\n" + caughtMessage());
        if (m_container) {
            m_container->close();
        }
    }
}

void PluginArea::start(HostState& state)
{
    const std::optional<PluginEntry> plugin = findPlugin();
    if (!plugin) {
        return showProblem(kNoPlugin);
    }
    m_server = plugin->server;
    m_container = std::make_unique<PluginContainer>(SiteWindows{handle(), GetAncestor(handle(), GA_ROOT)});
    m_container->onKeyLeftOver(m_keyLeftOver);
    m_container->create(plugin->classId);
    m_host = makeObject<HostObject>(state);
    m_container->callInit(m_host.get());
}

void PluginArea::showProblem(const std::string& text)
{
    SetWindowTextA(handle(), text.c_str());
    InvalidateRect(handle(), nullptr, TRUE);
}

void PluginArea::unload()
{
    if (!isLoaded()) {
        return;
    }
    try {
        m_container->callTerminate();
    } catch (...) {
        std::fprintf(stderr, "The plug-in failed to stop: %s\n", caughtMessage().c_str());
    }
    const ULONG left = m_container->close();
    m_host.reset();
    m_container.reset();
    if (left != 0) {
        std::fprintf(stderr, "The plug-in left %lu references to its site behind.\n", left);
    }
    if (isStillLoaded(m_server)) {
        std::fprintf(stderr, "The plug-in's module is still loaded after its last object went.\n");
    }
}

void PluginArea::focusPlugin()
{
    if (isLoaded()) {
        m_container->focus();
    }
}

Handled PluginArea::onSize(const Message&)
{
    if (m_container) {
        m_container->resize();
    }
    return kDefault;
}

Handled PluginArea::onErase(const Message& message)
{
    fillRect(reinterpret_cast<HDC>(message.wParam), clientRect(), m_colours.face);
    return 1;
}

Handled PluginArea::onPaint(const Message& message)
{
    const PaintScope paint(message.window);
    const DcScope state(paint.dc());
    SelectObject(paint.dc(), defaultFont());
    SetBkMode(paint.dc(), TRANSPARENT);
    SetTextColor(paint.dc(), m_colours.faceText);
    RECT place = clientRect();
    InflateRect(&place, -scaled(24, message.window), -scaled(24, message.window));
    drawFormatted(paint.dc(), problem(), place, DT_LEFT | DT_WORDBREAK | DT_NOPREFIX);
    return 0;
}

Handled PluginArea::onSetFocus(const Message&)
{
    focusPlugin();
    return kDefault;
}

} // namespace tessera::jukebox
