#pragma once

#include "support/FakeFiles.h"

#include <initializer_list>

namespace tessera::test {

// Puts a database together byte by byte, without the code that is under test.
class Ts2Bytes {
public:
    Bytes bytes;

    Ts2Bytes& word(std::int64_t value)
    {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> shift));
        return *this;
    }
    Ts2Bytes& words(std::initializer_list<std::int64_t> values)
    {
        for (const std::int64_t value : values)
            word(value);
        return *this;
    }
    Ts2Bytes& text(std::string_view text)
    {
        word(static_cast<std::int64_t>(text.size()));
        bytes.insert(bytes.end(), text.begin(), text.end());
        return *this;
    }
    Ts2Bytes& ids(std::initializer_list<std::int64_t> values)
    {
        return word(static_cast<std::int64_t>(values.size())).words(values);
    }
    Ts2Bytes& header(std::int64_t flags, std::int64_t tracks, std::int64_t albums, std::int64_t artists,
                     std::int64_t images)
    {
        return words({90125, 696969, 2, flags, tracks, albums, artists, images});
    }
};

// Where a test changes a field of the sample below.
struct SamplePlaces {
    std::size_t firstTrack = 32;
    std::size_t secondTrack = 0;
    std::size_t loneTrack = 0;
    std::size_t firstAlbum = 0;
    std::size_t secondAlbum = 0;
    std::size_t firstArtist = 0;
    std::size_t secondArtist = 0;
    std::size_t images = 0;
};

// Four tracks (one without an album), two albums, two artists, one image. The cover is the whole
// content of the file C:\m\a\folder.jpg.
inline Bytes sampleDatabase(SamplePlaces* places = nullptr, std::string_view cover = "JPEG!")
{
    Ts2Bytes file;
    SamplePlaces at;
    file.header(1, 4, 2, 2, 1);
    file.word(0).word(1).text("C:\\m\\a\\1.mp3").word(1);
    at.secondTrack = file.bytes.size();
    file.word(0).word(2).text("C:\\m\\a\\2.mp3").word(1);
    file.word(0).word(3).text("C:\\m\\b\\3.mp3").word(3);
    at.loneTrack = file.bytes.size();
    file.word(0).word(7).text("C:\\m\\c\\7.mp3").word(-1);
    at.firstAlbum = file.bytes.size();
    file.word(1 | 2 | 64).word(1).text("Tides").text("MP3").word(1).text("Rock");
    file.words({300, 128, 192, 1999, 7, 20021003}).ids({1, 2}).text("C:\\m\\a").text("C:\\m\\a\\folder.jpg");
    at.secondAlbum = file.bytes.size();
    file.word(8).word(3).text("").text("(Unassigned)").text("MP3").word(2).text("(Unassigned)");
    file.words({60, 96, 96, -1, 0, 0}).ids({3}).text("C:\\m\\b").text("");
    at.firstArtist = file.bytes.size();
    file.word(1).word(1).text("Lumen").word(1).ids({1});
    at.secondArtist = file.bytes.size();
    file.word(0).word(2).text("").text("(Unassigned)").word(0).ids({3});
    at.images = file.bytes.size();
    file.word(1).text(cover);
    if (places)
        *places = at;
    return file.bytes;
}

} // namespace tessera::test
