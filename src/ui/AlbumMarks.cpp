#include "ui/AlbumMarks.h"

#include "base/Text.h"
#include "ui/ids.h"

namespace tessera {

namespace {

constexpr std::size_t kMostChanges = 50;

} // namespace

Marks markedBy(UINT command, Marks marks, std::int32_t date)
{
    switch (command) {
    case albumCommand::kNewToday:
    case albumCommand::kNewDate:
        marks.isNew = true;
        marks.newDate = date;
        break;
    case albumCommand::kNotNew:
        marks.isNew = false;
        break;
    case albumCommand::kFavourite:
    case albumCommand::kNoFavourite:
        marks.favourite = command == albumCommand::kFavourite;
        break;
    default:
        marks.rank = static_cast<std::int32_t>(command) - albumCommand::kRankNone;
        break;
    }
    return marks;
}

bool movesAlbums(UINT command)
{
    return command < albumCommand::kRankNone || command > albumCommand::kRankLast;
}

std::string markName(UINT command)
{
    switch (command) {
    case albumCommand::kNewToday:
    case albumCommand::kNewDate:
        return "New";
    case albumCommand::kNotNew:
        return "Not new";
    case albumCommand::kFavourite:
        return "Favourite";
    case albumCommand::kNoFavourite:
        return "No favourite";
    case albumCommand::kRankNone:
        return "No rank";
    default:
        return format("Rank %ld", static_cast<long>(command) - albumCommand::kRankNone);
    }
}

std::int32_t today()
{
    SYSTEMTIME now{};
    GetSystemTime(&now);
    return now.wYear * 10000 + now.wMonth * 100 + now.wDay;
}

void MarkHistory::remember(std::span<Album* const> albums, std::string name, bool movesAlbums)
{
    if (m_changes.size() == kMostChanges)
        m_changes.erase(m_changes.begin());
    Change change{{}, std::move(name), movesAlbums};
    change.before.reserve(albums.size());
    for (const Album* const album : albums)
        change.before.emplace_back(album->id, marksOf(*album));
    m_changes.push_back(std::move(change));
}

std::optional<MarkHistory::Change> MarkHistory::takeLast()
{
    if (m_changes.empty())
        return std::nullopt;
    Change last = std::move(m_changes.back());
    m_changes.pop_back();
    return last;
}

std::string describeChange(const MarkHistory::Change& change)
{
    const auto albums = static_cast<long>(change.before.size());
    return format("%s, %ld album%s", change.name.c_str(), albums, albums == 1 ? "" : "s");
}

} // namespace tessera
