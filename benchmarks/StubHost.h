#pragma once

#include "GeneratedLibrary.h"

#include "system/ComPtr.h"

#include <cstdint>
#include <memory>
#include <oaidl.h>
#include <string>
#include <vector>

namespace tessera::bench {

// What the stub host says about its tracks, in the order of its list.
struct StubTracks {
    struct Texts {
        std::u16string fileName, artist, album, genre;
    };
    std::vector<Texts> texts;
    std::vector<std::int32_t> numbers; // on their album

    // In an order that has nothing to do with that of the albums.
    void fill(const GeneratedLibrary& library);
};

// The automation object of a host that knows every file and hands out one file object for all of
// them. Whoever walks the list reads a property once a track, in the order of the list: the object
// answers the n-th read of a property for the n-th track.
ComPtr<IDispatch> makeStubHost(std::shared_ptr<const StubTracks> tracks);

} // namespace tessera::bench
