#include "ui/TrackDetailsRecord.h"

#include "base/Text.h"

namespace tessera {

const std::string& TrackDetailsRecord::text(FileText field)
{
    const auto known = m_texts.find(field);
    if (known != m_texts.end())
        return known->second;
    std::string text = m_file ? m_file->text(field) : std::string();
    return m_texts[field] = std::move(text);
}

std::string disabledMessage(const char* what)
{
    return format("***  %s disabled for performance reasons  ***\n"
                  "***  Use Options/General to re-enable support  ***",
                  what);
}

} // namespace tessera
