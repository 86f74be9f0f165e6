#pragma once

#include "FakeCommands.h"
#include "windowing/Drawing.h"

#include <functional>

namespace tessera {

// Covers of one colour each; the album's id chooses.
class ColouredCovers {
public:
    explicit ColouredCovers(FakeCovers& covers) : m_covers(covers)
    {
        const SIZE sizes[] = {covers.size, {64, 64}, {16, 16}};
        for (std::size_t i = 0; i < std::size(sizes); ++i)
            covers.lists[i] = makeList(sizes[i]);
    }
    ~ColouredCovers()
    {
        for (HIMAGELIST& list : m_covers.lists)
            ImageList_Destroy(std::exchange(list, nullptr));
    }
    ColouredCovers(const ColouredCovers&) = delete;
    ColouredCovers& operator=(const ColouredCovers&) = delete;

    static constexpr COLORREF kColour = RGB(200, 40, 90);

private:
    static HIMAGELIST makeList(SIZE size)
    {
        const HIMAGELIST list = ImageList_Create(size.cx, size.cy, ILC_COLOR32 | ILC_MASK, 1, 1);
        const WindowDc screen;
        const BitmapHandle bitmap(CreateCompatibleBitmap(screen.dc(), size.cx, size.cy));
        {
            const MemoryDc memory(screen.dc());
            const SelectScope selected(memory.dc(), bitmap.get());
            fillRect(memory.dc(), {0, 0, size.cx, size.cy}, kColour);
        }
        ImageList_Add(list, bitmap.get(), nullptr);
        return list;
    }
    FakeCovers& m_covers;
};

inline Artist& addArtist(Library& library, const char* name)
{
    const auto id = static_cast<std::int32_t>(library.artists.size()) + 1;
    auto artist = std::make_unique<Artist>();
    artist->id = id;
    artist->displayName = name;
    return *(library.artists[id] = std::move(artist));
}

inline Album& addAlbum(Library& library, const char* title, Artist& artist, int year = 0)
{
    const auto id = static_cast<std::int32_t>(library.albums.size()) + 1;
    auto album = std::make_unique<Album>();
    album->id = id;
    album->displayTitle = title;
    album->artist = &artist;
    album->year = year;
    album->type = "MP3";
    album->path = std::string("C:\\Music\\") + title;
    return *(library.albums[id] = std::move(album));
}

} // namespace tessera
