#include "library/Marks.h"

namespace tessera {

Marks marksOf(const Album& album)
{
    return {album.rank, album.newDate, album.has(kAlbumNew), album.has(kAlbumFavourite)};
}

void setMarks(Album& album, const Marks& marks)
{
    album.rank = marks.rank;
    album.newDate = marks.newDate;
    album.set(kAlbumNew, marks.isNew);
    album.set(kAlbumFavourite, marks.favourite);
    album.columnTextsValid = false;
}

} // namespace tessera
