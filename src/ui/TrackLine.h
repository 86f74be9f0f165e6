#pragma once

#include "ports/Host.h"

#include <optional>
#include <string>

namespace tessera {

// What the lists of tracks show of one.
struct TrackLine {
    std::string text;
    std::string duration;
    bool operator==(const TrackLine&) const = default;
};

// An empty text, as it is shown.
std::string orUnassigned(const std::string& text);
// "Track 3: NAME"
std::string trackText(std::int32_t number, const std::string& name);
// "Track 3: NAME / ARTIST"
std::string trackText(std::int32_t number, const std::string& name, const std::string& artist);
// As the host writes it, else from its seconds. Throws HostError.
std::string durationText(HostFile& file);
// Without the artist when it is the one named. Throws HostError.
TrackLine readTrackLine(HostFile& file, const std::optional<std::string>& albumArtist);

} // namespace tessera
