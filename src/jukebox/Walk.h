#pragma once

#include "jukebox/ActivityLog.h"
#include "jukebox/MessageWatch.h"
#include "jukebox/Options.h"
#include "jukebox/Report.h"

#include <functional>
#include <windows.h>

namespace tessera::jukebox {

// Goes through the plug-in's main job as a user would, from a thread of its own: only by messages
// to windows. Prints a line per step and leaves log and pictures in a folder.
class Walk {
public:
    // The player's main window must exist already and its thread handle messages.
    Walk(HWND mainWindow, const Options& options, Report& report, const MessageWatch& messages);

    // Answers the exit code: 0 when the database was created and loaded, or opened. The main window
    // is still open then.
    int run();

private:
    // Throws StepFailed with the reason when the condition does not hold in time.
    void waitFor(const std::function<bool()>& condition, unsigned milliseconds, const std::string& reason);

    void findPlugin();
    bool findPanes();
    void failIfPluginIsMissing() const;
    void waitUntilIdle();
    void createDatabase();
    void openDatabase();
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
    ActivityLog m_log{nullptr};
    std::size_t m_firstLine = 0; // of the job that was started
    unsigned m_jobStart = 0;
    unsigned m_lastChange = 0; // when the log changed last
    unsigned m_messagesBefore = 0;
    std::string m_lastSeen;
};

} // namespace tessera::jukebox
