#pragma once

#include <string>

namespace tessera::bench {

// Writes a square JPEG with detail everywhere, as a photograph has it. Needs COM.
void writeJpeg(const std::string& path, unsigned side);

} // namespace tessera::bench
