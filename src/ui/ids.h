#pragma once

#include "ui/Pane.h"

namespace tessera {

// Children of the panes. A pane's own window carries its pane id.
namespace controlId {
inline constexpr int kViewCombo = 1;      // "Go To"
inline constexpr int kImageSizeCombo = 2; // "Icon Image Size"
inline constexpr int kMainToolbar = 3;
inline constexpr int kMainRebar = 4;
inline constexpr int kStatus = 5;      // of a pane with a status text
inline constexpr int kCaptionMenu = 7; // buttons in a pane's caption
inline constexpr int kCaptionOffer = 8;
inline constexpr int kOverviewList = 1001;
inline constexpr int kSearchLabel = 1002;
inline constexpr int kCriteria = 1003;
inline constexpr int kSearchArtist = 1004;
inline constexpr int kSearchAlbum = 1005;
inline constexpr int kSearchGenre = 1006;
inline constexpr int kSplitMain = 2002;
inline constexpr int kSplitDetails = 2003;
inline constexpr int kSplitTracks = 2004;
inline constexpr int kTreeLibrary = 2005; // the trees' identifiers
inline constexpr int kTreeNew = 2006;
inline constexpr int kTreeFavourites = 2007;
inline constexpr int kTreeCompleted = 2008;
inline constexpr int kTreeCombo = 2009;
inline constexpr int kDetailsAlbums = 2010;
inline constexpr int kAlbumInfoCombo = 2011;
inline constexpr int kAlbumInfo = 2012;
inline constexpr int kAlbumTracks = 2013;
inline constexpr int kPlayingNow = 2014;
inline constexpr int kTrackDetailsCombo = 2015;
inline constexpr int kTrackDetails = 2016;
inline constexpr int kTrackDetailsText = 2017;
inline constexpr int kTrackArtwork = 2018;
inline constexpr int kAlbumArtwork = 2019;
inline constexpr int kSeparatorFirst = 2020; // six, two beside each combo box
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
inline constexpr int kNewToday = 10000;
inline constexpr int kNewDate = 10001;
inline constexpr int kNotNew = 10002;
inline constexpr int kRankNone = 10100; // behind it the ranks 1 to 10
inline constexpr int kRankLast = 10110;
inline constexpr int kFavourite = 10200;
inline constexpr int kNoFavourite = 10201;
inline constexpr int kSortFirst = 10900; // by the first column, and so on
inline constexpr int kSortLast = 10920;
inline constexpr int kToggleFavourite = 10980;
inline constexpr int kTakeBack = 10981; // the last change of marks
inline constexpr int kTakeMarks = 10982;
inline constexpr int kDismissMarks = 10983; // the offer to take some
inline constexpr int kSelectCriteria = 10989;
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
inline constexpr int kPerson = 2;
inline constexpr int kOpen = 3;
inline constexpr int kGenre = 4;
inline constexpr int kOptions = 5;
inline constexpr int kPlay = 6;
inline constexpr int kGroup = 8; // the roots of the trees
inline constexpr int kSave = 9;
inline constexpr int kReserved = 11;
inline constexpr int kAlbumWithoutImage = 13;
inline constexpr int kPersonIncomplete = 14;
inline constexpr int kIcons = 15;
inline constexpr int kTiles = 17;
inline constexpr int kDetails = 18;
inline constexpr int kNew = 19;
inline constexpr int kFavourite = 20;
inline constexpr int kLibrary = 21;
inline constexpr int kLog = 22;
inline constexpr int kOverview = 24;
} // namespace icon

} // namespace tessera
