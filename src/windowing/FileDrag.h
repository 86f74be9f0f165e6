#pragma once

#include <string>
#include <vector>
#include <windows.h>

namespace tessera {

// Runs a drag of files until the button is let go; the left button is down already. Full path
// names. They can be copied, not moved. Answers the effect at the target; DROPEFFECT_NONE: none.
DWORD dragFiles(const std::vector<std::string>& paths);
// Cancels the drag that this thread is in, if any; `dragFiles` returns when the stack unwinds to it.
void endDrag();

// The CF_HDROP block of the files: a DROPFILES structure and the names, each with its terminator,
// and one more. The caller owns it; null without memory.
HGLOBAL makeFileList(const std::vector<std::string>& paths);

} // namespace tessera
