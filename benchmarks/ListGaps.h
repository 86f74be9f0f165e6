#pragma once

namespace tessera::bench {

// How long the overview keeps its thread from answering while covers load.
void gapRows();

} // namespace tessera::bench
