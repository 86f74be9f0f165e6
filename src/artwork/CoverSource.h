#pragma once

#include "artwork/CoverPlaces.h"
#include "artwork/Decoder.h"
#include "library/Records.h"

#include <optional>
#include <string>
#include <vector>

namespace tessera {

// Where an album's cover comes from, copied out of the record: encoded bytes, else the picture
// inside the track of a host file, else a file of that path.
struct CoverSource {
    std::vector<std::uint8_t> encoded;
    HostFilePtr embedded;
    std::string path;

    bool empty() const { return encoded.empty() && !embedded && path.empty(); }
};

// Whether there is anything to load.
bool hasPicture(const Album& album, bool thumbnails);
// The album's picture file; empty for one that may not be opened, too.
std::string coverFile(const Album& album, const CoverPlaces& places);
// Empty when the album has no picture. With thumbnails in the database no file is opened.
CoverSource coverSource(const Album& album, bool thumbnails, const CoverPlaces& places);

// None for whatever is no picture, and for one above 40 megapixels or 64 MB. The temporary file
// that the host makes of an embedded picture is gone afterwards. Throws nothing but std::bad_alloc.
std::optional<Picture> readCover(const CoverSource& source);
std::optional<Picture> readCoverFile(const std::string& path);

} // namespace tessera
