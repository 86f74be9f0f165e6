// What hostile tags and databases can make a caption cost: shapes of 64 KB for the album's texts.

#include "Report.h"

#include "tokens/TokenParser.h"

#include <algorithm>

using namespace tessera;
using namespace tessera::bench;

namespace {

constexpr std::size_t kHostile = std::size_t{64} * 1024;

std::string repeated(std::string_view piece, std::size_t count)
{
    std::string text;
    for (; count > 0; --count)
        text += piece;
    return text;
}

// As many of front and back around the core as have 64 KB.
std::string nested(std::string_view front, std::string_view core, std::string_view back)
{
    const std::size_t depth = (kHostile - core.size()) / (front.size() + back.size());
    return repeated(front, depth) + std::string(core) + repeated(back, depth);
}

struct Attack {
    const char* what;
    std::string title;
    std::string path;
    std::string others; // artist, genre, type
};

const Attack kAttacks[] = {
    {"a token in itself", nested("<AlbumP", "<AlbumPath>", "ath>"), "", "x"},
    {"values that move on", nested("<", "", "AlbumPath>"), "AlbumPath><", "x"},
    {"values that grow", nested("<", "<AlbumPath>", ">"), "AlbumPath>><<AlbumPath", "x"},
    {"beginnings alone", repeated("<Ye<Ty<Rank<NumTracks<New", kHostile / 25), "x", "x"},
    {"ends alone", repeated("Year>", kHostile / 5), ">", "Rank>"},
    {"every token in every text", repeated("<Artist><Genre><Type><Rank><New><Year>", kHostile / 38),
     repeated("<Artist><Genre><Type>", kHostile / 21), repeated("<Type><Year>", kHostile / 12)},
    {"short values in short tokens", repeated("<New<Year>><Rank>", kHostile / 17), "<Year>", "<Rank>"},
};

double worstCaption(const TokenParser& parser, const Attack& attack)
{
    Artist artist;
    artist.displayName = attack.others;
    Album album;
    album.artist = &artist;
    album.displayTitle = attack.title;
    album.path = attack.path;
    album.genre = album.type = attack.others;
    double worst = 0;
    for (const std::string& text : {std::string("<Album>"), std::string("<Artist> - <Album>"),
                                    nested("<Album>", "", "").substr(0, 8190)}) {
        const auto caption = [&] {
            const WorkClock::time_point start = WorkClock::now();
            require(!parser.expandAlbum(text, album).empty() || attack.path.empty(), "no caption");
            parser.expandArtwork(text, album);
            return millisecondsSince(start) / 2;
        };
        worst = std::max(worst, bestOf(
                                    3, caption, [] { return 1.0; }, 1)
                                    .work);
    }
    return worst;
}

} // namespace

int main()
{
    const TokenParser parser;
    double worst = 0;
    for (const Attack& attack : kAttacks) {
        const double time = worstCaption(parser, attack);
        report({std::string("caption of hostile text: ") + attack.what, time, "ms"});
        worst = std::max(worst, time);
    }
    report({"the worst caption of 64 KB of hostile text", worst, "ms", std::nullopt, 5.0});
    return 0;
}
