#include "jukebox/Screen.h"
#include "jukebox/TrackFile.h"
#include "jukebox/Walk.h"
#include "jukebox/WideText.h"

#include <algorithm>
#include <array>
#include <functional>

// The part of the walk that marks albums in a copy of the database, and the one that finds the marks
// again at the next start.
namespace tessera::jukebox {

namespace {

constexpr int kOverviewPane = 1000;
constexpr int kPaneIndex = 0; // of the overview in the "Go To" box
constexpr int kAlbums = 2010;
constexpr UINT kNewToday = 10000;
constexpr UINT kRankNone = 10100; // behind it the ranks 1 to 10
constexpr UINT kFavourite = 10200;
constexpr unsigned kMarkMs = 20 * 1000;
constexpr unsigned kLastDatabaseMs = 570 * 1000;

// What albums from all over the list are given.
struct Plan {
    int rank; // 0: none
    bool favourite;
    bool isNew;
};
constexpr Plan kPlans[] = {{10, true, false}, {7, false, false}, {3, false, true},  {0, true, true},
                           {5, true, false},  {8, false, true},  {1, false, false}, {9, true, true}};
constexpr int kPlanned = static_cast<int>(std::size(kPlans));

// As many rows as there are plans, or all.
std::vector<int> rowsToMark(int count)
{
    const int marked = std::clamp(count, 0, kPlanned);
    std::vector<int> rows;
    rows.reserve(kPlanned);
    for (int i = 0; i < marked; ++i) {
        rows.push_back(i * count / marked);
    }
    return rows;
}

std::vector<int> rowsWith(const std::vector<int>& rows, bool Plan::*mark)
{
    std::vector<int> chosen;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (kPlans[i].*mark) {
            chosen.push_back(rows[i]);
        }
    }
    return chosen;
}

std::string named(const MarkedAlbum& album)
{
    return "'" + album.title + "' by '" + album.artist + "'";
}

std::size_t bytesChanged(const std::string& before, const std::string& after)
{
    std::size_t changed = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        changed += before[i] != after[i] ? 1 : 0;
    }
    return changed;
}

} // namespace

void Walk::markAlbums()
{
    const std::string original = toUtf8(m_database);
    openCopyForMarks();
    const std::optional<std::string> before = readWholeFile(m_database);
    selectRoot(showTree(0));
    const std::vector<int> rows = rowsToMark(rowCount(inDetailsPane(kAlbums)));
    const std::vector<MarkedAlbum> unmarked = albumsAt(rows);
    rankAlbums(rows);
    markTogether(rowsWith(rows, &Plan::favourite), kFavourite, &MarkedAlbum::favourite);
    markTogether(rowsWith(rows, &Plan::isNew), kNewToday, &MarkedAlbum::isNew);
    const MarksFile marks{original, albumsAt(rows)};
    checkWritten(before.value_or(""), !std::equal(unmarked.begin(), unmarked.end(), marks.albums.begin(),
                                                  std::mem_fn(&MarkedAlbum::hasSameMarks)));
    if (!writeWholeFile(*m_options.walk + L"\\marks.tsv", textOfMarks(marks))) {
        throw StepFailed{"marks.tsv could not be written"};
    }
    takeTreePictures();
    selectPane(kPaneIndex, kOverviewPane);
}

// The database itself stays as it was made or found.
void Walk::openCopyForMarks()
{
    const std::wstring copy = *m_options.walk + L"\\marked.ts2";
    step("Copying the database to " + toUtf8(copy) + " for marks");
    if (!CopyFileW(m_database.c_str(), copy.c_str(), FALSE) ||
        !SetFileAttributesW(copy.c_str(), FILE_ATTRIBUTE_NORMAL)) {
        throw StepFailed{"the database could not be copied"};
    }
    waitUntilIdle();
    openDatabase(copy);
    watchJob();
}

// The columns are found by their titles.
MarkedAlbum Walk::albumAt(int row)
{
    const HWND list = inDetailsPane(kAlbums);
    if (m_albumColumns.empty()) {
        m_albumColumns = columnTitles(list);
    }
    const auto text = [&](const char* title) {
        const auto column = std::find(m_albumColumns.begin(), m_albumColumns.end(), title);
        const auto cell = column == m_albumColumns.end()
                              ? std::nullopt
                              : cellOf(list, row, static_cast<int>(column - m_albumColumns.begin()));
        if (!cell) {
            throw StepFailed{std::string("the album list has no column '") + title + "' to read"};
        }
        return toUtf8(fromCodePage(*cell));
    };
    return {row, text("Album"), text("Artist"), text("Path"), text("Rank"), text("Favourite"), text("New")};
}

std::vector<MarkedAlbum> Walk::albumsAt(const std::vector<int>& rows)
{
    std::vector<MarkedAlbum> albums;
    std::transform(rows.begin(), rows.end(), std::back_inserter(albums),
                   [this](int row) { return albumAt(row); });
    return albums;
}

void Walk::rankAlbums(const std::vector<int>& rows)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int rank = kPlans[i].rank;
        if (rank == 0) {
            continue;
        }
        step("Ranking an album");
        selectRows(inDetailsPane(kAlbums), std::array{rows[i]});
        commandToDetails(kRankNone + static_cast<UINT>(rank));
        waitFor([&] { return albumAt(rows[i]).rank == std::to_string(rank); }, kMarkMs,
                "the list does not show rank " + std::to_string(rank));
        const MarkedAlbum album = albumAt(rows[i]);
        m_report.step("Ranked " + named(album) + ": " + album.rank);
    }
}

// Several albums by one command.
void Walk::markTogether(const std::vector<int>& rows, UINT command, std::string MarkedAlbum::*mark)
{
    if (rows.empty()) {
        return;
    }
    const bool asNew = mark == &MarkedAlbum::isNew;
    step("Marking " + std::to_string(rows.size()) + " albums as " + (asNew ? "new" : "favourites"));
    selectRows(inDetailsPane(kAlbums), rows);
    commandToDetails(command);
    for (const int row : rows) {
        waitFor([&] { return !(albumAt(row).*mark).empty(); }, kMarkMs, "the list does not show the mark");
        const MarkedAlbum album = albumAt(row);
        m_report.step("Marked " + named(album) + (asNew ? " as new: " + album.isNew : " as favourite"));
    }
}

void Walk::checkWritten(const std::string& before, bool marksDiffer) const
{
    const std::string after = readWholeFile(m_database).value_or("");
    if (before.empty() || before.size() != after.size()) {
        throw StepFailed{"the database was not written in place"};
    }
    const std::size_t changed = bytesChanged(before, after);
    if (marksDiffer && changed == 0) {
        throw StepFailed{"the marks are not in the file"};
    }
    if (!marksDiffer) {
        m_report.step("There is no album to mark that has not all the marks already");
    }
    m_report.step("Written in place: " + std::to_string(changed) + " of the " + std::to_string(after.size()) +
                  " bytes of " + toUtf8(m_database) + " changed");
}

void Walk::readMarksBack()
{
    const std::optional<MarksFile> marks = parseMarks(readWholeFile(m_options.checkMarks).value_or(""));
    if (!marks) {
        throw StepFailed{"what was marked cannot be read from " + toUtf8(m_options.checkMarks)};
    }
    findPlugin();
    waitForLastDatabase();
    selectRoot(showTree(0));
    compareMarks(*marks);
    takeTrackDetailsPictures();
    takePlayingNowPicture();
    selectPane(kPaneIndex, kOverviewPane);
}

// The plug-in opens it by itself, unless its settings say otherwise: then we were told what to open.
void Walk::waitForLastDatabase()
{
    step("Waiting for the last database");
    if (!m_options.open.empty()) {
        waitUntilIdle();
        if (jobState(m_log.lines()) == JobState::None) {
            m_report.step("The plug-in opens no database by itself");
            openDatabase(m_options.open);
            return watchJob();
        }
        m_firstLine = 0; // what it has done already counts
    }
    m_jobStart = m_lastChange = m_report.elapsedMs();
    waitFor([this] { return isJobDone(); }, kLastDatabaseMs, "the plug-in did not open its last database");
    m_report.step("The plug-in has opened its last database by itself");
}

void Walk::compareMarks(const MarksFile& marks)
{
    step("Reading the marks back");
    std::size_t different = 0;
    for (const MarkedAlbum& written : marks.albums) {
        const MarkedAlbum read = findAgain(written);
        const bool same = read.hasSameMarks(written);
        different += same ? 0 : 1;
        m_report.step("Read back " + named(read) + ": " + marksText(read) +
                      (same ? "" : " - but written was: " + marksText(written)));
    }
    if (different > 0) {
        throw StepFailed{std::to_string(different) + " albums have other marks than were written"};
    }
    m_report.step("All " + std::to_string(marks.albums.size()) + " albums have the marks that were written");
}

// Where it stood, or elsewhere when the list is sorted otherwise now.
MarkedAlbum Walk::findAgain(const MarkedAlbum& album)
{
    const int count = rowCount(inDetailsPane(kAlbums));
    if (album.row < count) {
        if (MarkedAlbum there = albumAt(album.row); there.isSameAlbum(album)) {
            return there;
        }
    }
    for (int row = 0; row < count; ++row) {
        if (MarkedAlbum there = albumAt(row); there.isSameAlbum(album)) {
            return there;
        }
    }
    throw StepFailed{"the list does not show " + named(album)};
}

} // namespace tessera::jukebox
