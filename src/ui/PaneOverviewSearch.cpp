// The search box of the overview.

#include "base/Errors.h"
#include "ui/AlbumCatalogue.h"
#include "ui/Colours.h"
#include "ui/Commands.h"
#include "ui/PaneOverview.h"
#include "ui/ids.h"
#include "windowing/Drawing.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr const char* kLabel = "Search Criteria:";
constexpr int kPadding = 8;
constexpr int kVerticalPadding = 5;
constexpr int kEditPadding = 8; // in the height of the box
constexpr int kWidestBox = 320;
constexpr int kLeastBox = 60;
constexpr int kCheckMark = 22; // the square and what it keeps clear
constexpr int kLongestCriteria = 1024;

constexpr struct {
    const char* text;
    bool OverviewSettings::*setting;
} kFields[] = {{"Artist", &OverviewSettings::searchArtist},
               {"Album", &OverviewSettings::searchAlbum},
               {"Genre", &OverviewSettings::searchGenre}};

constexpr CommandKeys::Key kBoxKeys[] = {
    {'F', CommandKeys::kControl, albumCommand::kFind},
    {VK_ESCAPE, CommandKeys::kNone, albumCommand::kClearSearch},
    {'A', CommandKeys::kControl, albumCommand::kSelectCriteria},
    {VK_DOWN, CommandKeys::kNone, albumCommand::kEnterList},
    {VK_RETURN, CommandKeys::kNone, albumCommand::kEnterList},
};

} // namespace

std::span<const CommandKeys::Key> PaneOverview::searchKeys()
{
    return std::span(kBoxKeys).first(2);
}

void PaneOverview::createSearchBox()
{
    const RECT nowhere{};
    m_lblCriteria.create(handle(), controlId::kSearchLabel, nowhere, kLabel, SS_NOPREFIX | SS_CENTERIMAGE);
    if (!m_pedtCriteria.create(handle(), controlId::kCriteria, nowhere))
        assertionFailed("m_pedtCriteria->GetSafeHwnd()", "PaneOverview", __LINE__);
    m_pedtCriteria.setLimit(kLongestCriteria);
    m_keys[kSwitches].attachTo(m_pedtCriteria.handle(), kBoxKeys);
    for (std::size_t i = 0; i < kSwitches; ++i) {
        m_chkFields[i].create(handle(), controlId::kSearchArtist + static_cast<UINT>(i), nowhere,
                              kFields[i].text, BS_AUTOCHECKBOX);
        m_keys[i].attachTo(m_chkFields[i].handle(), searchKeys());
    }
    m_pedtCriteria.setText(commands().overview().searchCriteria);
    showSwitches();
}

void PaneOverview::showSwitches()
{
    for (const Control& control : {Control(m_lblCriteria), Control(m_pedtCriteria)})
        control.setFont(commands().comboFont());
    for (std::size_t i = 0; i < kSwitches; ++i) {
        m_chkFields[i].setFont(commands().comboFont());
        m_chkFields[i].useVisualStyle(!commands().usesHostColours()); // which has a text colour of its own
        m_chkFields[i].setChecked(commands().overview().*kFields[i].setting);
    }
}

int PaneOverview::searchBoxHeight() const
{
    const WindowDc dc(handle());
    const SelectScope font(dc.dc(), commands().comboFont());
    return static_cast<int>(textSize(dc.dc(), kLabel).cy) +
           scaled(kEditPadding + 2 * kVerticalPadding, dc.dc());
}

void PaneOverview::layoutSearchBox(const RECT& strip)
{
    if (strip.bottom <= strip.top)
        return;
    const WindowDc dc(handle());
    const SelectScope font(dc.dc(), commands().comboFont());
    const LONG padding = scaled(kPadding, dc.dc());
    const auto widthOf = [&](const char* text) { return textSize(dc.dc(), text).cx; };
    LONG fields = 0;
    for (const auto& field : kFields)
        fields += widthOf(field.text) + scaled(kCheckMark, dc.dc()) + padding;
    RECT place = strip;
    InflateRect(&place, -padding, -scaled(kVerticalPadding, dc.dc()));
    const LONG right = place.right;
    const auto put = [&](const Control& control, LONG width) {
        place.right = place.left + std::max<LONG>(width, 0);
        control.move(place);
        place.left = place.right + padding;
    };
    put(m_lblCriteria, widthOf(kLabel));
    put(m_pedtCriteria, std::clamp<LONG>(right - place.left - fields, scaled(kLeastBox, dc.dc()),
                                         scaled(kWidestBox, dc.dc())));
    for (std::size_t i = 0; i < kSwitches; ++i)
        put(m_chkFields[i], widthOf(kFields[i].text) + scaled(kCheckMark, dc.dc()));
}

// A box that nobody sees narrows nothing.
bool PaneOverview::searchShown() const
{
    return commands().overview().showSearch;
}

std::string PaneOverview::criteria() const
{
    return searchShown() ? m_pedtCriteria.text() : std::string();
}

void PaneOverview::applySearch(const std::string& criteria)
{
    if (!m_plvwDetails.handle())
        return;
    const OverviewSettings& settings = commands().overview();
    commands().catalogue().search(
        criteria, {settings.searchArtist, settings.searchAlbum, settings.searchGenre}, m_found);
    if (m_found != m_plvwDetails.unsorted()) {
        m_balloon.hide();
        m_plvwDetails.setAlbums(m_found);
    }
    updateOverviewStatus();
}

void PaneOverview::onCriteriaChanged(const Command&)
{
    m_searched = true;
    std::string& criteria = commands().overview().searchCriteria;
    criteria = m_pedtCriteria.text();
    if (!commands().isBusy())
        applySearch(searchShown() ? criteria : std::string());
}

void PaneOverview::onSwitch(const Command& command)
{
    const std::size_t field = command.id - controlId::kSearchArtist;
    commands().overview().*kFields[field].setting = m_chkFields[field].checked();
    if (!commands().isBusy())
        applySearch(criteria());
}

// Looking for something shows the box, too.
void PaneOverview::onFind(const Command&)
{
    if (m_summary.albums() == 0)
        return;
    if (!searchShown()) {
        commands().overview().showSearch = true;
        showControls();
        applySearch(criteria());
        InvalidateRect(handle(), nullptr, FALSE);
    }
    SetFocus(m_pedtCriteria.handle());
    m_pedtCriteria.select(0, -1);
}

void PaneOverview::onClearSearch(const Command&)
{
    if (!m_pedtCriteria.text().empty())
        m_pedtCriteria.setText("");
}

// To the first hit of a search, else to where one was. Where nothing was found the text can be mended.
void PaneOverview::onEnterList(const Command&)
{
    if (m_plvwDetails.count() == 0)
        return;
    if (m_searched || m_plvwDetails.selectedCount() == 0)
        m_plvwDetails.selectFirst();
    m_plvwDetails.makeFocusVisible();
    SetFocus(m_plvwDetails.handle());
}

void PaneOverview::onSelectCriteria(const Command&)
{
    m_pedtCriteria.select(0, -1);
}

// Label and check boxes stand on the strip.
Handled PaneOverview::onControlColour(const Message& message)
{
    const HDC dc = reinterpret_cast<HDC>(message.wParam);
    const COLORREF face = commands().frameFace();
    if (face != m_face) {
        m_brushFace.reset(CreateSolidBrush(face));
        m_face = face;
    }
    SetBkColor(dc, face);
    SetTextColor(dc, readableOn(face));
    return reinterpret_cast<LRESULT>(m_brushFace.get());
}

} // namespace tessera
