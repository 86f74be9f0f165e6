#pragma once

#include "ports/Host.h"

#include <map>
#include <string>

namespace tessera {

// What the host says about the track in the details area. A text is fetched when it is first asked
// for, and never again.
class TrackDetailsRecord {
public:
    // The file may be null: the host does not know the track.
    TrackDetailsRecord(HostFilePtr file, std::string fileName)
        : m_file(std::move(file)), m_fileName(std::move(fileName))
    {
    }

    // Throws HostError.
    const std::string& text(FileText field);
    const HostFilePtr& file() const { return m_file; }
    const std::string& fileName() const { return m_fileName; }

private:
    HostFilePtr m_file;
    std::string m_fileName;
    std::map<FileText, std::string> m_texts;
};

// What stands in for notes and lyrics while they are switched off; `what` is "Notes" or "Lyrics".
std::string disabledMessage(const char* what);

} // namespace tessera
