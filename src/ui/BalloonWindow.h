#pragma once

#include "system/Handle.h"
#include "ui/BalloonPlacement.h"
#include "windowing/Window.h"

#include <string>
#include <vector>

namespace tessera {

enum BalloonOption : unsigned {
    kBalloonShadow = 1,
    kBalloonAnimated = 2,
    kBalloonClosesOnClick = 4,
    kBalloonClosesOnDeactivation = 8,
};

// A tip in the shape of a balloon that points at an item. Never takes the focus.
class BalloonWindow final : public Mapped<BalloonWindow> {
public:
    static std::span<const MapEntry<BalloonWindow>> messageMap();

    BalloonWindow() = default;
    ~BalloonWindow() override { destroy(); }

    // Shows title and body (lines end with LF or CR LF) beside the item, pointing at the anchor, on
    // the anchor's monitor. A copy is taken of the icon; null: none. Closes itself after the time-out
    // in milliseconds; 0: never. False when there is nothing to show or no window.
    bool createBalloon(HWND owner, const std::string& title, const std::string& body, const RECT& item,
                       POINT anchor, unsigned options, HICON icon, unsigned timeOut);
    // A picture that came late; takes a copy. Ignored unless it is of the size of the one before.
    void setIcon(HICON icon);

    const std::vector<std::string>& title() const { return m_title; }
    const std::vector<std::string>& body() const { return m_body; }
    unsigned timeOut() const { return m_timeOut; }
    SIZE iconSize() const { return m_iconSize; }

    // Lines that a balloon there can show below a title of so many lines.
    static int bodyLinesFor(HWND owner, const RECT& item, POINT anchor, int titleLines);

private:
    WindowClass windowClass() const override;
    bool createShaped(HWND owner, const BalloonPlace& place, const std::string& text);
    void showAnimated();
    Handled onPaint(const Message& message);
    Handled onErase(const Message&) { return 1; }
    Handled onPrintClient(const Message& message);
    Handled onTimer(const Message& message);
    Handled onMouseActivate(const Message&) { return MA_NOACTIVATE; }
    Handled onClick(const Message& message);
    Handled onActivateApp(const Message& message);
    void draw(HDC dc) const;

    std::vector<std::string> m_title;
    std::vector<std::string> m_body;
    IconHandle m_icon;
    SIZE m_iconSize{};
    unsigned m_options = 0;
    unsigned m_timeOut = 0;
    bool m_hasShadow = false;
    BalloonPlace m_place;
};

} // namespace tessera
