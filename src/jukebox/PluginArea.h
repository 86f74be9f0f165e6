#pragma once

#include "jukebox/HostObjects.h"
#include "jukebox/PluginContainer.h"
#include "jukebox/Skin.h"
#include "windowing/Control.h"
#include "windowing/Window.h"

#include <memory>
#include <string>

namespace tessera::jukebox {

// The part of the main window that belongs to the plug-in. Without one it says why.
class PluginArea : public Mapped<PluginArea> {
public:
    explicit PluginArea(const Palette& colours) : m_colours(colours) {}
    static std::span<const MapEntry<PluginArea>> messageMap();

    // Creates the plug-in that is registered and starts it. What goes wrong is shown in the area.
    void load(HostState& state);
    bool isLoaded() const { return m_container && m_container->isCreated(); }
    // What the area says instead of showing a plug-in; it is the window's text, too.
    std::string problem() const { return windowText(handle()); }
    // Stops the plug-in and lets it go. What it left behind is told on the standard error output.
    void unload();

    bool translate(MSG& message) { return m_container && m_container->translate(message); }
    void focusPlugin();
    void onKeyLeftOver(std::function<bool(const MSG&)> handler) { m_keyLeftOver = std::move(handler); }

protected:
    WindowClass windowClass() const override { return {"MJPluginArea"}; }

private:
    Handled onSize(const Message& message);
    Handled onErase(const Message& message);
    Handled onPaint(const Message& message);
    Handled onSetFocus(const Message& message);

    void showProblem(const std::string& text);
    void start(HostState& state);

    Palette m_colours;
    std::unique_ptr<PluginContainer> m_container;
    ComPtr<HostObject> m_host;
    std::string m_server; // path of the plug-in's module
    std::function<bool(const MSG&)> m_keyLeftOver;
};

} // namespace tessera::jukebox
