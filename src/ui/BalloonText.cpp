#include "ui/BalloonText.h"

#include "base/Errors.h"
#include "base/Text.h"
#include "tokens/TokenParser.h"

#include <optional>

namespace tessera {

namespace {

struct TrackLine {
    std::int32_t number = 0;
    std::string text;
};

// None when the host does not tell.
std::optional<TrackLine> readLine(const Track& track, std::string_view tokens, const TokenParser& parser)
{
    try {
        if (!track.m_pMJFile)
            throw HostError(kErrorPointer);
        return TrackLine{track.m_pMJFile->number(FileNumber::Track), parser.expandTrack(tokens, track, 0)};
    } catch (const HostError&) {
        return std::nullopt;
    }
}

bool startsDisc(std::int32_t number, std::int32_t before)
{
    return number != 0 && number < before;
}

} // namespace

std::string balloonBody(const std::vector<Track*>& tracks, std::string_view trackTokens,
                        const TokenParser& parser, int maximumLines)
{
    std::string body;
    std::int32_t before = 0;
    std::size_t used = 0;
    std::size_t done = 0;
    const auto room = static_cast<std::size_t>(maximumLines > 1 ? maximumLines : 1);
    for (; done < tracks.size(); ++done) {
        const std::size_t more = tracks.size() - done > 1 ? 1 : 0; // the line that may have to follow
        if (used + 1 + more > room)
            break;
        const auto line = readLine(*tracks[done], trackTokens, parser);
        if (!line)
            break;
        std::string text = startsDisc(line->number, before) ? "\n" : "";
        text.append(line->text).append("\n");
        const std::size_t lines = textLines(text).size();
        if (used + lines + more > room)
            break;
        body += text;
        used += lines;
        before = line->number;
    }
    if (done > 0 && done < tracks.size())
        body += format("... and %u more\n", static_cast<unsigned>(tracks.size() - done));
    return body;
}

std::vector<std::string> textLines(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos)
            break;
        text.remove_prefix(end + (text.substr(end, 2) == "\r\n" ? 2 : 1));
    }
    return lines;
}

} // namespace tessera
