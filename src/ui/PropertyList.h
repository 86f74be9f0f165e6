#pragma once

#include "ui/DetailsList.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessera {

// A list with the columns "Name" and "Value", one row a property.
class PropertyList : public DetailsList {
public:
    using Rows = std::vector<std::pair<std::string, std::string>>;
    // None: cannot be had now, ask again.
    using Source = std::function<std::optional<Rows>()>;

    explicit PropertyList(Commands& commands) : DetailsList(commands) {}
    bool createPropertyList(HWND parent, UINT id);

    // The source is asked once, when the list is painted, and answers so many rows. It holds what it
    // reads from until there is another.
    void setProperties(int rows, Source source);
    void clear() { setProperties(0, {}); }
    // The values may be others now.
    void refresh();
    // From time to time while the list is visible: what could not be had is asked for again.
    void tick();

private:
    void readRows(int first, int last) override;
    std::string cellText(int row, int column) override;

    Source m_source;
    std::optional<Rows> m_rows;
    bool m_fetching = false;
    bool m_missed = false;
    unsigned m_generation = 0; // of the source
};

} // namespace tessera
