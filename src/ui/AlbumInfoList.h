#pragma once

#include "library/Records.h"
#include "ui/PropertyList.h"

#include <span>
#include <vector>

namespace tessera {

// The properties of one album, or what several have in common and sum up to.
class AlbumInfoList final : public PropertyList {
public:
    explicit AlbumInfoList(Commands& commands) : PropertyList(commands) {}

    bool createAlbumInfo(HWND parent);
    // None before the records go. Their marks may change: refresh.
    void setAlbums(std::span<Album* const> albums);

private:
    std::optional<Rows> readAlbums() const;

    std::vector<Album*> m_albums;
};

} // namespace tessera
