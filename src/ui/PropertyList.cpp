#include "ui/PropertyList.h"

#include "base/FlagScope.h"

#include <utility>

namespace tessera {

bool PropertyList::createPropertyList(HWND parent, UINT id)
{
    static constexpr Column kColumns[] = {{"Name", 110}, {"Value", 0}};
    return createList(parent, id, kColumns);
}

void PropertyList::setProperties(int rows, Source source)
{
    m_source = std::move(source);
    refresh();
    if (rows != count())
        resetRows(rows);
}

void PropertyList::refresh()
{
    ++m_generation;
    m_rows.reset();
    redrawAll();
}

void PropertyList::tick()
{
    if (isShown() && std::exchange(m_missed, false))
        redrawAll();
}

// The source may let messages through, and one of them another source in; or it throws.
void PropertyList::readRows(int, int)
{
    if (m_rows || !m_source || m_fetching)
        return;
    const Source source = m_source;
    const unsigned generation = m_generation;
    m_missed = true;
    const FlagScope fetching(m_fetching);
    std::optional<Rows> rows = source();
    if (!rows || generation != m_generation)
        return;
    m_rows = std::move(rows);
    m_missed = false;
}

std::string PropertyList::cellText(int row, int column)
{
    if (!m_rows || static_cast<std::size_t>(row) >= m_rows->size())
        return {};
    const auto& [name, value] = (*m_rows)[static_cast<std::size_t>(row)];
    return column == 0 ? name : value;
}

} // namespace tessera
