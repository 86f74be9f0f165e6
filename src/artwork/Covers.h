#pragma once

#include "library/Records.h"

#include <windows.h>

#include <commctrl.h>
#include <string>
#include <vector>

namespace tessera {

class CoverListener;

// The covers as lists, trees and balloons see them: one index names an album's cover in all the
// image lists. User-interface thread only. An index is valid until control returns to the message
// loop: draw or copy at once.
class Covers {
public:
    virtual ~Covers() = default;

    // A listener takes itself off before it dies.
    virtual void addListener(CoverListener&) {}
    virtual void removeListener(CoverListener&) {}

    // The index of the album's cover. When it is not at hand yet it is asked for ahead of covers
    // that nobody looks at, and the default cover's index (or -1: draw none) stands in; the
    // listener hears when it has come. Never opens a box nor calls the host.
    virtual int imageIndex(Album& album) = 0;

    // The album's picture file; empty when there is none that may be opened.
    virtual std::string pictureFile(const Album& album) const = 0;

    virtual HIMAGELIST large() const = 0;     // the current artwork size
    virtual HIMAGELIST medium() const = 0;    // 64 x 64
    virtual HIMAGELIST smallList() const = 0; // 16 x 16; "small" is a macro of the system's
    virtual HIMAGELIST balloon() const = 0;   // null while balloons show no artwork
    virtual SIZE largeSize() const = 0;
};

// Hears of covers that have come, on the user-interface thread; several in one call.
class CoverListener {
public:
    virtual ~CoverListener() = default;
    virtual void coversArrived(const std::vector<Album*>& albums) = 0;
    // The lists were made anew: attach them again, all indices are -1.
    virtual void imageListsRebuilt() = 0;
};

} // namespace tessera
