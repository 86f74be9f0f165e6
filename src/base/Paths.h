#pragma once

#include <string>
#include <string_view>

namespace tessera {

// What the system makes of a path, in the code page, whichever slashes it has.

// "\\SERVER\SHARE" in upper case of a path on a server; "" for others. Without a share it may be "\\SERVER".
std::string networkShare(std::string_view path);
// A device, which may never answer: "\\.\COM1" and all that begins so, and names such as "COM1.txt" in any
// folder.
bool isDevice(std::string_view path);
// The system takes both slashes for the same.
std::string withBackslashes(std::string_view path);

} // namespace tessera
