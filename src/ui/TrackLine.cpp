#include "ui/TrackLine.h"

#include "base/Durations.h"
#include "base/Text.h"

#include <algorithm>

namespace tessera {

std::string orUnassigned(const std::string& text)
{
    return text.empty() ? "(Unassigned)" : text;
}

std::string trackText(std::int32_t number, const std::string& name)
{
    return format("Track %ld: %s", static_cast<long>(number), orUnassigned(name).c_str());
}

std::string trackText(std::int32_t number, const std::string& name, const std::string& artist)
{
    return format("Track %ld: %s / %s", static_cast<long>(number), orUnassigned(name).c_str(),
                  orUnassigned(artist).c_str());
}

std::string durationText(HostFile& file)
{
    std::string text = file.text(FileText::DurationText);
    if (!text.empty())
        return text;
    const std::int32_t seconds = file.number(FileNumber::Duration);
    return formatDuration(static_cast<std::uint32_t>(std::max(seconds, 0)), DurationStyle::Clock);
}

TrackLine readTrackLine(HostFile& file, const std::optional<std::string>& albumArtist)
{
    const std::int32_t number = file.number(FileNumber::Track);
    const std::string name = file.text(FileText::Name);
    const std::string artist = file.text(FileText::Artist);
    const bool known = albumArtist && equalNoCase(artist, *albumArtist);
    return {known ? trackText(number, name) : trackText(number, name, artist), durationText(file)};
}

} // namespace tessera
