#pragma once

#include "artwork/CoverSource.h"
#include "ui/PictureBox.h"
#include "ui/PropertyList.h"
#include "ui/RichTextBox.h"
#include "ui/TrackDetailsRecord.h"
#include "windowing/ComboBoxEx.h"

#include <memory>

namespace tessera {

class Commands;

// The values of the choices.
enum class DetailsChoice {
    AlbumImage = 0,
    TrackImage = 1,
    Comments = 2,
    Notes = 3,
    Lyrics = 4,
    Custom1 = 5,
    Custom2 = 6,
    Custom3 = 7,
    Details = 8,
};

// One track: a combo box chooses what an area shows of it. All controls are children of the pane,
// hidden at first.
class TrackDetails {
public:
    explicit TrackDetails(Commands& commands);
    ~TrackDetails();
    TrackDetails(const TrackDetails&) = delete;
    TrackDetails& operator=(const TrackDetails&) = delete;

    // The choice is the one of the settings. A control that cannot be had raises the assertion of the
    // pane's unit.
    bool createTrackDetails(HWND parent, const char* unit);
    // Either may be null; both before the records go. Pictures and properties are read when they are
    // painted.
    void setTrack(const Track* track, const Album* album);
    // An entry of the playlist, which need not be in the library.
    void setFile(HostFilePtr file, const Album* album = nullptr);

    // The selected entry of the combo box, counted from 0; another one that is none is the first.
    int selectedEntry() const { return m_entry; }
    void selectEntry(int entry);
    DetailsChoice choice() const;
    // The parent's CBN_SELCHANGE of the combo box; the choice goes into the settings.
    void choiceMade();

    void settingsChanged();
    void show(bool visible);
    // The area of the text, the list or the picture; the combo box is moved by the pane.
    void move(const RECT& area);
    // First for notifications of the list.
    Handled answer(NMHDR& header) { return m_plvwTrackDetails.answer(header); }
    // From time to time while it is visible: what the host could not be asked for is asked for again.
    void tick();

    const ComboBoxEx& combo() const { return m_pcboTrackDetails; }
    // The control that the choice shows.
    HWND shownControl() const;

private:
    bool createCombo(HWND parent);
    void setAlbum(const Album* album);
    void setRecord(std::shared_ptr<TrackDetailsRecord> record);
    std::optional<PropertyList::Rows> readProperties() const;
    std::optional<std::string> readText() const;
    void fillText();
    void showControls();

    Commands& m_commands;
    ComboBoxEx m_pcboTrackDetails;
    PropertyList m_plvwTrackDetails;
    RichTextBox m_precTrackDetails;
    PictureBox m_ppicTrackDetailsArtwork;
    PictureBox m_ppicTrackDetailsAlbumArtwork;
    int m_entry = 0;
    bool m_visible = false;
    bool m_missed = false; // the text could not be read yet
    const Track* m_track = nullptr;
    const Album* m_album = nullptr;
    std::shared_ptr<TrackDetailsRecord> m_record; // null: no track
};

} // namespace tessera
