#pragma once

#include "ui/Pane.h"

namespace tessera {

// Children of the panes. A pane's own window carries its pane id.
namespace controlId {
inline constexpr int kViewCombo = 1;      // "Go To"
inline constexpr int kImageSizeCombo = 2; // "Icon Image Size"
inline constexpr int kMainToolbar = 3;
inline constexpr int kMainRebar = 4;
inline constexpr int kOverviewList = 1001;
inline constexpr int kSearchLabel = 1002;
inline constexpr int kCriteria = 1003;
inline constexpr int kSearchArtist = 1004;
inline constexpr int kSearchAlbum = 1005;
inline constexpr int kSearchGenre = 1006;
inline constexpr int kLogList = 3001;
} // namespace controlId

// Commands of the main toolbar.
namespace commandId {
inline constexpr int kReserved = 6; // a place kept free on the toolbar, never enabled
inline constexpr int kNewDatabase = 57600;
inline constexpr int kOpenDatabase = 57601;
inline constexpr int kViewIcons = 57602;
inline constexpr int kExportList = 57603;
inline constexpr int kViewTiles = 57604;
inline constexpr int kViewDetails = 57605;
inline constexpr int kOptions = 57606;
inline constexpr int kAbout = 57664;
} // namespace commandId

// Commands of album lists: their menus and keys.
namespace albumCommand {
inline constexpr int kSortFirst = 10900; // by the first column, and so on
inline constexpr int kSortLast = 10920;
inline constexpr int kFind = 10990; // to the search box
inline constexpr int kClearSearch = 10991;
inline constexpr int kEnterList = 10992; // from the search box
inline constexpr int kGoToDirectory = 10996;
inline constexpr int kAppend = 10997;
inline constexpr int kPlay = 10998;
} // namespace albumCommand

namespace resourceId {
inline constexpr int kSmallIcons = 110;  // bitmap: 25 icons of 16 by 16 in one row
inline constexpr int kListButtons = 111; // bitmap: new, delete, move up, move down on the colour 0xC0C0C0
} // namespace resourceId

// Places in the small icons.
namespace icon {
inline constexpr int kAlbum = 0;
inline constexpr int kAbout = 1;
inline constexpr int kOpen = 3;
inline constexpr int kOptions = 5;
inline constexpr int kSave = 9;
inline constexpr int kReserved = 11;
inline constexpr int kIcons = 15;
inline constexpr int kTiles = 17;
inline constexpr int kDetails = 18;
inline constexpr int kNew = 19;
inline constexpr int kLog = 22;
inline constexpr int kOverview = 24;
} // namespace icon

} // namespace tessera
