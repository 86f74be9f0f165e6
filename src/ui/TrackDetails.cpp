#include "ui/TrackDetails.h"

#include "artwork/Covers.h"
#include "base/Text.h"
#include "ui/Commands.h"
#include "ui/HostReading.h"
#include "ui/TrackLine.h"
#include "ui/ids.h"

#include <algorithm>
#include <iterator>

namespace tessera {

namespace {

constexpr int kPictureIcon = 1;

// In the order of the combo box.
constexpr struct {
    const char* text;
    DetailsChoice choice;
    int image;
} kChoices[] = {{"Album Image", DetailsChoice::AlbumImage, kPictureIcon},
                {"Track Image", DetailsChoice::TrackImage, kPictureIcon},
                {"Comments", DetailsChoice::Comments, icon::kLog},
                {"Lyrics", DetailsChoice::Lyrics, icon::kLog},
                {"Notes", DetailsChoice::Notes, icon::kLog},
                {"Custom 1", DetailsChoice::Custom1, icon::kLog},
                {"Custom 2", DetailsChoice::Custom2, icon::kLog},
                {"Custom 3", DetailsChoice::Custom3, icon::kLog},
                {"Details", DetailsChoice::Details, icon::kDetails}};
constexpr int kChoiceCount = static_cast<int>(std::size(kChoices));

std::string number(long value)
{
    return format("%ld", value);
}

template <FileText field>
std::string fieldText(TrackDetailsRecord& record)
{
    return record.text(field);
}

// A row holds one line.
std::string comments(TrackDetailsRecord& record)
{
    std::string text = record.text(FileText::Comment);
    std::ranges::replace_if(
        text, [](char c) { return c == '\r' || c == '\n' || c == '\t'; }, ' ');
    return text;
}

// Numbers below 1 say that there is none.
template <FileNumber field>
std::string fieldNumber(TrackDetailsRecord& record)
{
    const long value = record.file() ? record.file()->number(field) : 0;
    return value > 0 ? number(value) : "";
}

std::string bitrate(TrackDetailsRecord& record)
{
    const std::string text = fieldNumber<FileNumber::Bitrate>(record);
    return text.empty() ? text : text + " kbps";
}

std::string playCount(TrackDetailsRecord& record)
{
    return record.file() ? number(record.file()->number(FileNumber::PlayCount)) : "";
}

std::string duration(TrackDetailsRecord& record)
{
    return record.file() ? durationText(*record.file()) : "";
}

std::string fileName(TrackDetailsRecord& record)
{
    return record.fileName().empty() ? record.text(FileText::Filename) : record.fileName();
}

constexpr struct {
    const char* name;
    std::string (*value)(TrackDetailsRecord&);
} kFields[] = {{"Name", fieldText<FileText::Name>},
               {"Artist", fieldText<FileText::Artist>},
               {"Album", fieldText<FileText::Album>},
               {"Track Number", fieldNumber<FileNumber::Track>},
               {"Genre", fieldText<FileText::Genre>},
               {"Year", fieldNumber<FileNumber::Year>},
               {"Duration", duration},
               {"Type", fieldText<FileText::Type>},
               {"Bitrate", bitrate},
               {"File Size", fieldText<FileText::FileSize>},
               {"File Date", fieldText<FileText::FileDate>},
               {"Rating", fieldNumber<FileNumber::Rating>},
               {"Play Count", playCount},
               {"Last Played", fieldText<FileText::LastPlayed>},
               {"Comments", comments},
               {"Custom 1", fieldText<FileText::Custom1>},
               {"Custom 2", fieldText<FileText::Custom2>},
               {"Custom 3", fieldText<FileText::Custom3>},
               {"File Name", fileName}};

// What the host refuses is left out.
std::string fieldOrNothing(std::string (*value)(TrackDetailsRecord&), TrackDetailsRecord& record)
{
    try {
        return orUnassigned(value(record));
    } catch (const HostError&) {
        return orUnassigned("");
    }
}

// None: the choice is no text.
std::optional<FileText> textField(DetailsChoice choice)
{
    switch (choice) {
    case DetailsChoice::Comments:
        return FileText::Comment;
    case DetailsChoice::Lyrics:
        return FileText::Lyrics;
    case DetailsChoice::Notes:
        return FileText::Notes;
    case DetailsChoice::Custom1:
        return FileText::Custom1;
    case DetailsChoice::Custom2:
        return FileText::Custom2;
    case DetailsChoice::Custom3:
        return FileText::Custom3;
    default:
        return std::nullopt;
    }
}

// The first that is a picture: the album's file, the bytes of the database, the picture inside its
// first track.
std::optional<Picture> readAlbumPicture(const CoverSource& source)
{
    std::optional<Picture> picture = readCoverFile(source.path);
    if (!picture && !source.encoded.empty())
        picture = decodePicture(source.encoded);
    if (!picture && source.embedded)
        picture = readCover({{}, source.embedded, {}});
    return picture;
}

CoverSource albumPictureSource(const Album& album, const Covers& covers)
{
    const bool embedded = album.has(kAlbumInternalImage) && !album.tracks.empty();
    return {album.m_hGlobalThumbnail, embedded ? album.tracks.begin()->second->m_pMJFile : nullptr,
            covers.pictureFile(album)};
}

// A picture that the host names stays; one that it takes out of the track is temporary.
std::optional<Picture> readTrackPicture(const HostFilePtr& file)
{
    std::string path;
    try {
        path = file->image(ImageKind::ImageFile);
    } catch (const HostError&) {
        path.clear();
    }
    std::optional<Picture> picture = readCoverFile(path);
    return picture ? std::move(picture) : readCover({{}, file, path});
}

} // namespace

TrackDetails::TrackDetails(Commands& commands)
    : m_commands(commands),
      m_plvwTrackDetails(commands),
      m_precTrackDetails(commands),
      m_ppicTrackDetailsArtwork(commands),
      m_ppicTrackDetailsAlbumArtwork(commands)
{
}

TrackDetails::~TrackDetails() = default;

bool TrackDetails::createCombo(HWND parent)
{
    if (!m_pcboTrackDetails.create(parent, controlId::kTrackDetailsCombo, {0, 0, 0, 0}))
        return false;
    m_pcboTrackDetails.show(false);
    m_pcboTrackDetails.setFont(m_commands.comboFont());
    m_pcboTrackDetails.setImageList(m_commands.smallIcons());
    for (const auto& choice : kChoices)
        m_pcboTrackDetails.add(choice.text, choice.image, static_cast<LPARAM>(choice.choice));
    return true;
}

bool TrackDetails::createTrackDetails(HWND parent, const char* unit)
{
    const struct {
        bool created;
        const char* expression;
    } controls[] = {
        {createCombo(parent), "m_pcboTrackDetails"},
        {m_plvwTrackDetails.createPropertyList(parent, controlId::kTrackDetails), "m_plvwTrackDetails"},
        {m_precTrackDetails.createBox(parent, controlId::kTrackDetailsText), "m_precTrackDetails"},
        {m_ppicTrackDetailsArtwork.createBox(parent, controlId::kTrackArtwork), "m_ppicTrackDetailsArtwork"},
        {m_ppicTrackDetailsAlbumArtwork.createBox(parent, controlId::kAlbumArtwork),
         "m_ppicTrackDetailsAlbumArtwork"}};
    bool all = true;
    for (const auto& control : controls) {
        all = all && control.created;
        if (!control.created)
            assertionFailed(control.expression, unit, __LINE__);
    }
    selectEntry(m_commands.albumDetails().trackDetailsCombo);
    return all;
}

void TrackDetails::setTrack(const Track* track, const Album* album)
{
    setAlbum(album);
    if (track && track == m_track)
        return;
    m_track = track;
    setRecord(track ? std::make_shared<TrackDetailsRecord>(track->m_pMJFile, track->fileName) : nullptr);
}

void TrackDetails::setFile(HostFilePtr file, const Album* album)
{
    setAlbum(album);
    m_track = nullptr;
    setRecord(file ? std::make_shared<TrackDetailsRecord>(std::move(file), std::string()) : nullptr);
}

void TrackDetails::setAlbum(const Album* album)
{
    if (album && album == m_album)
        return;
    m_album = album;
    if (!album) {
        m_ppicTrackDetailsAlbumArtwork.setSource({});
        return;
    }
    m_ppicTrackDetailsAlbumArtwork.setSource([this](std::optional<Picture>& picture) {
        const CoverSource source = m_album && !m_commands.isBusy()
                                       ? albumPictureSource(*m_album, m_commands.covers())
                                       : CoverSource();
        if (source.embedded && !m_commands.mayCallHost())
            return false;
        picture = readAlbumPicture(source);
        return true;
    });
}

void TrackDetails::setRecord(std::shared_ptr<TrackDetailsRecord> record)
{
    m_record = std::move(record);
    if (!m_record) {
        m_ppicTrackDetailsArtwork.setSource({});
        m_plvwTrackDetails.clear();
        fillText();
        return;
    }
    m_ppicTrackDetailsArtwork.setSource([this, file = m_record->file()](std::optional<Picture>& picture) {
        if (file && !m_commands.mayCallHost())
            return false;
        if (file)
            picture = readTrackPicture(file);
        return true;
    });
    m_plvwTrackDetails.setProperties(static_cast<int>(std::size(kFields)),
                                     [this] { return readProperties(); });
    fillText();
}

std::optional<PropertyList::Rows> TrackDetails::readProperties() const
{
    const std::shared_ptr<TrackDetailsRecord> record = m_record;
    PropertyList::Rows rows;
    const bool asked = record && readFromHost(m_commands, [&](Host&) {
                           for (const auto& field : kFields)
                               rows.emplace_back(field.name, fieldOrNothing(field.value, *record));
                       });
    return asked ? std::optional(std::move(rows)) : std::nullopt;
}

// None while the host may not be called.
std::optional<std::string> TrackDetails::readText() const
{
    const std::shared_ptr<TrackDetailsRecord> record = m_record;
    const std::optional<FileText> field = textField(choice());
    if (!record || !field)
        return "";
    const bool optional = *field == FileText::Notes || *field == FileText::Lyrics;
    if (optional && m_commands.general().disableNotes)
        return disabledMessage(*field == FileText::Notes ? "Notes" : "Lyrics");
    std::string text;
    const bool asked = readFromHost(m_commands, [&](Host&) { text = record->text(*field); });
    return asked ? std::optional(std::move(text)) : std::nullopt;
}

// A call of the host may have let another track in.
void TrackDetails::fillText()
{
    if (!m_visible || !textField(choice()))
        return;
    const std::shared_ptr<TrackDetailsRecord> record = m_record;
    m_missed = true;
    const std::optional<std::string> text = readText();
    if (record != m_record)
        return;
    m_missed = !text;
    m_precTrackDetails.setText(text.value_or(""));
}

DetailsChoice TrackDetails::choice() const
{
    return kChoices[m_entry].choice;
}

void TrackDetails::selectEntry(int entry)
{
    m_entry = entry >= 0 && entry < kChoiceCount ? entry : 0;
    m_pcboTrackDetails.select(m_entry);
    fillText();
    showControls();
}

void TrackDetails::choiceMade()
{
    selectEntry(m_pcboTrackDetails.selection());
    m_commands.albumDetails().trackDetailsCombo = m_entry;
}

HWND TrackDetails::shownControl() const
{
    switch (choice()) {
    case DetailsChoice::AlbumImage:
        return m_ppicTrackDetailsAlbumArtwork.handle();
    case DetailsChoice::TrackImage:
        return m_ppicTrackDetailsArtwork.handle();
    case DetailsChoice::Details:
        return m_plvwTrackDetails.view().handle();
    default:
        return m_precTrackDetails.box().handle();
    }
}

void TrackDetails::showControls()
{
    const HWND shown = m_visible ? shownControl() : nullptr;
    for (const HWND control : {m_ppicTrackDetailsAlbumArtwork.handle(), m_ppicTrackDetailsArtwork.handle(),
                               m_plvwTrackDetails.view().handle(), m_precTrackDetails.box().handle()}) {
        ShowWindow(control, control == shown ? SW_SHOWNA : SW_HIDE);
    }
}

void TrackDetails::show(bool visible)
{
    m_visible = visible;
    m_pcboTrackDetails.show(visible);
    fillText();
    showControls();
}

void TrackDetails::move(const RECT& area)
{
    m_plvwTrackDetails.move(area);
    m_precTrackDetails.move(area);
    m_ppicTrackDetailsArtwork.move(area);
    m_ppicTrackDetailsAlbumArtwork.move(area);
}

void TrackDetails::settingsChanged()
{
    m_pcboTrackDetails.setFont(m_commands.comboFont());
    m_plvwTrackDetails.settingsChanged();
    m_precTrackDetails.settingsChanged();
    m_ppicTrackDetailsArtwork.settingsChanged();
    m_ppicTrackDetailsAlbumArtwork.settingsChanged();
    fillText();
}

void TrackDetails::tick()
{
    m_plvwTrackDetails.tick();
    m_ppicTrackDetailsArtwork.tick();
    m_ppicTrackDetailsAlbumArtwork.tick();
    if (m_missed && m_commands.mayCallHost())
        fillText();
}

} // namespace tessera
