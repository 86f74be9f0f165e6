#pragma once

#include "jukebox/ActivityLog.h"
#include "jukebox/MarkedAlbums.h"
#include "jukebox/MessageWatch.h"
#include "jukebox/Options.h"
#include "jukebox/Report.h"

#include <functional>
#include <windows.h>

#include <commctrl.h>

namespace tessera::jukebox {

// Why the step that is going on cannot go on.
struct StepFailed {
    std::string reason;
};

// Goes through the plug-in's main job as a user would, from a thread of its own: only by messages
// to windows. Prints a line per step and leaves log and pictures in a folder.
class Walk {
public:
    // The player's main window must exist already and its thread handle messages.
    Walk(HWND mainWindow, const Options& options, Report& report, const MessageWatch& messages);

    // Answers the exit code: 0 when the database was created and loaded, or opened, and albums were
    // marked in a copy of it; or when an earlier walk's marks were read back. The main window is still
    // open then.
    int run();

private:
    void tryOut();
    void readMarksBack();
    // Throws StepFailed with the reason when the condition does not hold in time.
    void waitFor(const std::function<bool()>& condition, unsigned milliseconds, const std::string& reason);

    void findPlugin();
    bool findPanes();
    void failIfPluginIsMissing() const;
    void waitUntilIdle();
    void createDatabase();
    void openDatabase(const std::wstring& path);
    void nextPage(HWND wizard, int page);
    void enterDatabase(HWND wizard);
    void watchJob();
    bool isJobDone();
    void noteLogChange();
    void failIfStalled();
    bool saveLog() const;
    void writeLog();
    void takePictures();
    void takeOverviewPictures();
    void takeDetailsPictures();
    void takeTreePictures();
    void takeTrackDetailsPictures();
    void takePlayingNowPicture();
    HWND inDetailsPane(int id) const;
    int chosenInDetails(int comboId) const;
    HWND showTree(int tree);
    void selectRoot(HWND tree);
    void selectArtist(HWND tree, std::size_t fewestAlbums);
    void selectNode(HWND tree, HTREEITEM node);
    void selectAlbum(int row);
    void commandToDetails(UINT command);
    void markAlbums();
    void openCopyForMarks();
    void rankAlbums(const std::vector<int>& rows);
    void markTogether(const std::vector<int>& rows, UINT command, std::string MarkedAlbum::*mark);
    MarkedAlbum albumAt(int row) const;
    std::vector<MarkedAlbum> albumsAt(const std::vector<int>& rows) const;
    MarkedAlbum findAgain(const MarkedAlbum& album) const;
    void checkWritten(const std::string& before, bool marksDiffer) const;
    void waitForLastDatabase();
    void compareMarks(const MarksFile& marks);
    void showView(UINT command);
    void waitForCovers();
    void searchForArtist(HWND list, HWND criteria);
    void restOnAlbum(HWND list);
    void takeNamedPicture(const std::wstring& name);
    void selectPane(int index, int paneId);
    bool takePicture(const std::wstring& name);
    void step(const std::string& text);
    void tellFailure(const std::string& reason);
    std::string lastLogLines() const;

    HWND m_mainWindow;
    const Options& m_options;
    Report& m_report;
    const MessageWatch& m_messages;
    std::string m_step;
    HWND m_control = nullptr; // parent of the panes
    HWND m_mainPane = nullptr;
    std::wstring m_database; // that the walk is about
    ActivityLog m_log{nullptr};
    std::size_t m_firstLine = 0; // of the job that was started
    unsigned m_jobStart = 0;
    unsigned m_lastChange = 0; // when the log changed last
    unsigned m_messagesBefore = 0;
    std::string m_lastSeen;
};

} // namespace tessera::jukebox
