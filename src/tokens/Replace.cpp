#include "tokens/Replace.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tessera {

namespace {

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isToken(std::string_view text, std::string_view token)
{
    return std::ranges::equal(text, token, [](char a, char b) { return lower(a) == lower(b); });
}

// Text on its way through a replacement: what is searched already, and the pieces still to come.
class Passage {
public:
    explicit Passage(std::string_view text) : m_coming{text} { m_done.reserve(text.size()); }

    // Moves on behind the next ">", which is no trail byte in any code page; false at the end.
    bool toNextEnd()
    {
        while (!m_coming.empty()) {
            std::string_view& piece = m_coming.back();
            const std::size_t end = piece.find('>');
            const bool found = end != std::string_view::npos;
            m_done += piece.substr(0, found ? end + 1 : end);
            piece.remove_prefix(found ? end + 1 : piece.size());
            if (piece.empty())
                m_coming.pop_back();
            if (found)
                return true;
        }
        return false;
    }
    bool endsWith(std::string_view token) const
    {
        return m_done.size() >= m_closed + token.size() &&
               isToken(std::string_view(m_done).substr(m_done.size() - token.size()), token);
    }
    void removeLast(std::size_t length) { m_done.resize(m_done.size() - length); }
    // Nothing before its end matches from now on.
    void putClosed(std::string_view value)
    {
        m_done += value;
        m_closed = m_done.size();
    }
    void searchNext(std::string_view value)
    {
        if (!value.empty())
            m_coming.push_back(value);
    }
    std::string whole() &&
    {
        for (; !m_coming.empty(); m_coming.pop_back())
            m_done += m_coming.back();
        return std::move(m_done);
    }

private:
    std::string m_done;
    std::size_t m_closed = 0;
    std::vector<std::string_view> m_coming; // the next piece last
};

} // namespace

bool containsToken(std::string_view text, std::string_view token)
{
    // "<" is no trail byte in any code page, so a match can only begin at a character.
    for (std::size_t i = text.find('<'); i != std::string_view::npos; i = text.find('<', i + 1)) {
        if (isToken(text.substr(i, token.size()), token))
            return true;
    }
    return false;
}

// What is in front of a replaced token held none, so the next to be complete is the first one in the
// text: searching from the beginning would find the same.
void replaceToken(std::string_view token, std::string_view value, std::string& text, std::size_t& room)
{
    const bool holdsItself = containsToken(value, token);
    Passage passage(text);
    while (passage.toNextEnd()) {
        if (!passage.endsWith(token))
            continue;
        if (value.size() > room)
            break;
        room -= value.size();
        passage.removeLast(token.size());
        if (holdsItself)
            passage.putClosed(value);
        else
            passage.searchNext(value);
    }
    text = std::move(passage).whole();
}

} // namespace tessera
