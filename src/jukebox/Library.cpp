#include "jukebox/Library.h"

#include "jukebox/WideText.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <span>
#include <utility>

namespace tessera::jukebox {

namespace {

constexpr std::array kSearched = {Column::Artist, Column::Album, Column::Name, Column::Genre,
                                  Column::Filename};

std::optional<std::int32_t> parseNumber(std::string_view text)
{
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

bool containsAll(std::wstring_view text, const std::vector<std::wstring>& foldedWords)
{
    for (const std::wstring& word : foldedWords) {
        if (text.find(word) == std::wstring_view::npos) {
            return false;
        }
    }
    return true;
}

} // namespace

std::wstring Library::text(TrackIndex track, Column column) const
{
    return fromUtf8(value(track, column)).value_or(std::wstring());
}

std::int32_t Library::number(TrackIndex track, Column column) const
{
    return parseNumber(value(track, column)).value_or(0);
}

std::optional<TrackIndex> Library::find(std::wstring_view fileName) const
{
    const auto found = m_byName.find(folded(fileName));
    if (found == m_byName.end()) {
        return std::nullopt;
    }
    return found->second;
}

std::wstring Library::searchText(TrackIndex track) const
{
    // A line break between the values: no word of the criteria contains one.
    std::string joined;
    for (const Column column : kSearched) {
        joined += value(track, column);
        joined += '\n';
    }
    return folded(fromUtf8(joined).value_or(std::wstring()));
}

std::vector<TrackIndex> Library::search(std::wstring_view criteria) const
{
    const std::vector<std::wstring> wanted = words(folded(criteria));
    std::vector<TrackIndex> found;
    for (TrackIndex track = 0; track < size(); ++track) {
        if (wanted.empty() || containsAll(searchText(track), wanted)) {
            found.push_back(track);
        }
    }
    return found;
}

std::size_t Library::albumCount() const
{
    std::set<std::pair<std::string_view, std::string_view>> albums;
    for (TrackIndex track = 0; track < size(); ++track) {
        const std::string_view file = value(track, Column::Filename);
        albums.emplace(file.substr(0, file.rfind('\\') + 1), value(track, Column::Album));
    }
    return albums.size();
}

std::string Library::addTrack(const Values& values)
{
    const std::string_view fileName = values[static_cast<std::size_t>(Column::Filename)];
    if (fileName.empty()) {
        return "the file name is missing";
    }
    const auto index = static_cast<TrackIndex>(m_tracks.size());
    if (!m_byName.try_emplace(folded(*fromUtf8(fileName)), index).second) {
        return "the file '" + std::string(fileName) + "' is listed already";
    }
    m_tracks.push_back(values);
    return {};
}

// Reads the text of a library file line by line; escapes are undone in place.
class LibraryParser {
public:
    LibraryParser(std::string text, std::vector<std::string>& complaints) : m_complaints(complaints)
    {
        m_library.m_text = std::make_unique<std::string>(std::move(text));
        m_rest = std::span<char>(*m_library.m_text);
    }

    std::optional<Library> run()
    {
        skipByteOrderMark();
        if (!readHeader(nextLine())) {
            return std::nullopt;
        }
        while (!m_rest.empty()) {
            if (const std::span<char> line = nextLine(); !line.empty()) {
                readTrack(line);
            }
        }
        return std::move(m_library);
    }

private:
    struct ColumnName {
        std::string_view name;
        bool isNumber;
    };
    static constexpr std::array<ColumnName, kColumnCount> kColumns = {{
        {"Filename", false},     {"Artist", false},     {"Album", false},     {"Name", false},
        {"Duration", true},      {"Genre", false},      {"Year", true},       {"Bitrate", true},
        {"Track", true},         {"Type", false},       {"Comment", false},   {"Lyrics", false},
        {"Notes", false},        {"Custom1", false},    {"Custom2", false},   {"Custom3", false},
        {"PlayCount", true},     {"Rating", true},      {"FileSize", false},  {"FileDate", false},
        {"DurationText", false}, {"LastPlayed", false}, {"ImageFile", false}, {"EmbeddedImage", false},
    }};

    void skipByteOrderMark()
    {
        if (std::string_view(m_rest.data(), m_rest.size()).starts_with("\xEF\xBB\xBF")) {
            m_rest = m_rest.subspan(3);
        }
    }

    std::span<char> nextLine()
    {
        ++m_lineNumber;
        const std::string_view rest(m_rest.data(), m_rest.size());
        const std::size_t length = std::min(rest.find('\n'), rest.size());
        std::span<char> line = m_rest.first(length);
        m_rest = m_rest.subspan(std::min(length + 1, rest.size()));
        if (!line.empty() && line.back() == '\r') {
            line = line.first(line.size() - 1);
        }
        return line;
    }

    static std::span<char> nextField(std::span<char>& line)
    {
        const std::string_view text(line.data(), line.size());
        const std::size_t length = std::min(text.find('\t'), text.size());
        const std::span<char> field = line.first(length);
        line = line.subspan(std::min(length + 1, text.size()));
        return field;
    }

    bool readHeader(std::span<char> line)
    {
        while (!line.empty()) {
            const std::span<char> field = nextField(line);
            if (!addColumn({field.data(), field.size()})) {
                return false;
            }
        }
        if (isKnown(Column::Filename)) {
            return true;
        }
        complain("the header has no column 'Filename'");
        return false;
    }

    bool addColumn(std::string_view name)
    {
        const auto known = std::find_if(kColumns.begin(), kColumns.end(),
                                        [&](const ColumnName& column) { return column.name == name; });
        if (known == kColumns.end()) {
            m_order.push_back(std::nullopt); // a column of somebody else's
            return true;
        }
        const auto column = static_cast<Column>(known - kColumns.begin());
        if (isKnown(column)) {
            complain("the header names the column '" + std::string(name) + "' twice");
            return false;
        }
        m_order.push_back(column);
        return true;
    }

    bool isKnown(Column column) const
    {
        return std::find(m_order.begin(), m_order.end(), column) != m_order.end();
    }

    void readTrack(std::span<char> line)
    {
        if (!isUtf8({line.data(), line.size()})) {
            return complain("the text is not UTF-8");
        }
        Library::Values values;
        std::string wrong = readValues(line, values);
        if (wrong.empty()) {
            wrong = m_library.addTrack(values);
        }
        if (!wrong.empty()) {
            complain(wrong);
        }
    }

    std::string readValues(std::span<char> line, Library::Values& values)
    {
        for (std::size_t position = 0; !line.empty(); ++position) {
            if (position == m_order.size()) {
                return "more values than the header has columns";
            }
            const std::optional<std::string_view> value = unescape(nextField(line));
            if (!value) {
                return "a backslash without t, n, r or \\ behind it";
            }
            if (const std::optional<Column> column = m_order[position]) {
                if (isNotANumber(*column, *value)) {
                    return std::string(nameOf(*column)) + " is not a number: '" + std::string(*value) + "'";
                }
                values[static_cast<std::size_t>(*column)] = *value;
            }
        }
        return {};
    }

    static std::string_view nameOf(Column column) { return kColumns[static_cast<std::size_t>(column)].name; }

    static bool isNotANumber(Column column, std::string_view value)
    {
        return kColumns[static_cast<std::size_t>(column)].isNumber && !value.empty() && !parseNumber(value);
    }

    static char escaped(char letter)
    {
        switch (letter) {
        case 't':
            return '\t';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case '\\':
            return '\\';
        default:
            return '\0';
        }
    }

    static std::optional<std::string_view> unescape(std::span<char> field)
    {
        std::size_t written = 0;
        for (std::size_t read = 0; read < field.size(); ++read) {
            char letter = field[read];
            if (letter == '\\') {
                letter = ++read < field.size() ? escaped(field[read]) : '\0';
                if (letter == '\0') {
                    return std::nullopt;
                }
            }
            field[written++] = letter;
        }
        return std::string_view(field.data(), written);
    }

    void complain(const std::string& sentence)
    {
        m_complaints.push_back("line " + std::to_string(m_lineNumber) + ": " + sentence);
    }

    Library m_library;
    std::vector<std::string>& m_complaints;
    std::span<char> m_rest;
    std::vector<std::optional<Column>> m_order;
    std::size_t m_lineNumber = 0;
};

std::optional<Library> Library::parse(std::string text, std::vector<std::string>& complaints)
{
    return LibraryParser(std::move(text), complaints).run();
}

} // namespace tessera::jukebox
