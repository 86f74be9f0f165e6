#pragma once

#include "RunningPlugin.h"
#include "support/TemporaryFolder.h"

#include "base/Files.h"
#include "ui/ids.h"
#include "windowing/Control.h"
#include "windowing/ListView.h"
#include "windowing/TreeView.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <map>

namespace tessera {

// Where the albums' marks stand in a database, found by walking through its records.
class MarkPlaces {
public:
    using Bytes = std::vector<std::uint8_t>;
    struct Place {
        std::size_t flags;
        std::size_t rank; // the new date is behind it
    };

    explicit MarkPlaces(const Bytes& bytes) : m_bytes(bytes)
    {
        const std::uint32_t tracks = word(16);
        const std::uint32_t albums = word(20);
        m_at = 32;
        for (std::uint32_t i = 0; i < tracks; ++i) {
            m_at += 8;
            text();
            m_at += 4;
        }
        for (std::uint32_t i = 0; i < albums; ++i)
            album();
    }
    const Place& operator[](const std::string& title) const { return m_places.at(title); }
    std::size_t size() const { return m_places.size(); }

private:
    std::uint32_t word(std::size_t at) const
    {
        std::uint32_t value = 0;
        std::memcpy(&value, &m_bytes.at(at), sizeof value);
        return value;
    }
    std::string text()
    {
        const std::uint32_t length = word(m_at);
        const auto* const first = reinterpret_cast<const char*>(&m_bytes.at(m_at)) + 4;
        m_at += 4 + length;
        return {first, length};
    }
    void album()
    {
        const std::size_t flags = m_at;
        m_at += 8;
        const std::string title = text();
        if ((word(flags) & 1) == 0)
            text(); // the title that is shown
        text();     // type
        m_at += 4;  // artist
        text();     // genre
        m_at += 4 * 4;
        m_places[title] = {flags, m_at};
        m_at += 8;
        m_at += 4 + 4 * word(m_at); // tracks
        text();                     // path
        text();                     // thumbnail
    }

    const Bytes& m_bytes;
    std::size_t m_at = 0;
    std::map<std::string, Place> m_places;
};

// The database is of six albums, "Album 1" to "Album 6", by three artists.
// The plug-in starts with it, the details pane in front.
class MarksTest : public testing::Test {
protected:
    using Bytes = MarkPlaces::Bytes;
    using Texts = std::vector<std::string>;

    MarksTest() : folder("shell-marks"), path(folder.file("music.ts2"))
    {
        forgetSettings();
        general.lastPane = paneId::kAlbumDetails;
        store(general);
        database.lastUsed = path;
        database.loadLastAtStartup = false;
        store(database);
        RunningPlugin builder;
        builder.start();
        EXPECT_TRUE(builder.create());
        builder.stop();
        model = file();
        database.loadLastAtStartup = true;
        store(database);
    }
    ~MarksTest() override { SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL); }

    void start(std::shared_ptr<HostScript> script = smallLibrary())
    {
        plugin = std::make_unique<RunningPlugin>(std::move(script));
        plugin->start();
        ASSERT_TRUE(plugin->waitForJob());
        ASSERT_EQ(plugin->shownPane(), paneId::kAlbumDetails);
        settle();
    }
    void settle() const { plugin->container.pumpFor(0); }

    Bytes file() const { return systemFiles().readAll(path).value_or(Bytes()); }
    bool putFile(const Bytes& bytes) const { return systemFiles().create(path)->write(bytes); }
    void setReadOnly(bool on) const
    {
        ASSERT_TRUE(SetFileAttributesA(path.c_str(), on ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL));
    }
    HWND pane() const { return plugin->pane(paneId::kAlbumDetails); }
    TreeView tree(int id = controlId::kTreeLibrary) const { return TreeView(GetDlgItem(pane(), id)); }
    ListView list() const { return ListView(GetDlgItem(pane(), controlId::kDetailsAlbums)); }
    void command(int id) const
    {
        SendMessageA(pane(), WM_COMMAND, static_cast<WPARAM>(id), 0);
        settle();
    }
    // The artists' root: all albums.
    void chooseAll() const
    {
        tree().select(nullptr);
        tree().select(tree().root());
        settle();
    }
    void chooseRows(const Texts& titles) const
    {
        chooseAll();
        for (int row = 0; row < list().count(); ++row) {
            if (std::ranges::count(titles, list().text(row, 0)) > 0)
                list().select(row);
        }
        settle();
    }
    std::string cell(const std::string& title, int column) const
    {
        for (int row = 0; row < list().count(); ++row) {
            if (list().text(row, 0) == title)
                return list().text(row, column);
        }
        return "no album";
    }
    std::string status() const { return windowText(GetDlgItem(pane(), controlId::kStatus)); }
    // Of the first level below a tree's artists, the number of albums below it.
    static int leaves(const TreeView& tree)
    {
        int count = 0;
        for (HTREEITEM artist = tree.child(tree.root()); artist; artist = tree.next(artist)) {
            for (HTREEITEM album = tree.child(artist); album; album = tree.next(album))
                ++count;
        }
        return count;
    }

    // What the file is to hold.
    void putWord(std::size_t at, std::uint32_t value) { std::memcpy(&model.at(at), &value, sizeof value); }
    void putFlag(const std::string& title, std::uint32_t flag, bool on)
    {
        std::uint8_t& flags = model.at(MarkPlaces(model)[title].flags);
        flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag);
    }
    void putRank(const std::string& title, int rank)
    {
        putWord(MarkPlaces(model)[title].rank, static_cast<std::uint32_t>(rank));
    }
    void putDate(const std::string& title, std::int32_t date)
    {
        putWord(MarkPlaces(model)[title].rank + 4, static_cast<std::uint32_t>(date));
    }

    std::string couldNotOpen() const { return "Could not open the database '" + path + "'!"; }

    TemporaryFolder folder;
    std::string path;
    GeneralSettings general;
    DatabaseSettings database;
    Bytes model;
    std::unique_ptr<RunningPlugin> plugin;
};

} // namespace tessera
