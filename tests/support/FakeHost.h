#pragma once

#include "base/Errors.h"
#include "base/Text.h"
#include "ports/Host.h"

#include <functional>
#include <map>
#include <vector>

namespace tessera::test {

// What the host's library says about one file.
struct HostTrack {
    std::u16string fileName;
    std::u16string artist;
    std::u16string album;
    std::int32_t number = 0;
    std::u16string type = u"MP3";
    std::u16string genre;
    std::int32_t year = 0;
    std::int32_t bitrate = 128;
    std::int32_t duration = 60;
    std::string imageFile; // answers to the image query
    std::string embeddedImage;
    std::map<FileText, std::u16string> more; // the other texts
    std::int32_t playCount = 0;
    std::int32_t rating = 0;
};

// A host whose library is a list in memory, and its playlist one of places in it. Any call, also of the
// objects it hands out, can be made to fail or, where it answers an object, to answer null.
class FakeHost : public Host {
public:
    std::vector<HostTrack> tracks;
    std::vector<std::string> searches;
    std::vector<std::string> imageQueries; // "1 NAME" and "2 NAME"
    std::vector<std::string> lookups;
    int calls = 0;
    int failingCall = 0; // from 1; 0: none
    int nullCall = 0;
    int propertyReads = 0;
    std::map<FileText, int> textReads;
    bool refusing = false; // every call fails
    bool hasPlaylist = false;
    std::vector<std::size_t> entries; // of the playlist
    std::int32_t position = -1;
    int entryReads = 0;
    int playbackState = 0;
    std::vector<std::string> orders;  // "clear", "add NAME", "position N", "start", "playNow"
    std::function<void()> insideCall; // as the host's own message loop may do anything

    // Every call comes by here; false: answer null.
    bool enter()
    {
        ++calls;
        if (calls == failingCall || refusing)
            throw HostError(kErrorPointer);
        if (insideCall)
            insideCall();
        return calls != nullCall;
    }

    std::unique_ptr<HostPlayback> playback() override
    {
        if (!hasPlaylist || !enter())
            return nullptr;
        return std::make_unique<Playback>(*this);
    }
    std::unique_ptr<HostPlaylist> playlist() override
    {
        if (!hasPlaylist || !enter())
            return nullptr;
        return std::make_unique<Playlist>(*this);
    }
    std::unique_ptr<HostFiles> search(const std::string& criteria) override
    {
        searches.push_back(criteria);
        if (!enter())
            return nullptr;
        return std::make_unique<Files>(*this);
    }
    HostFilePtr file(const std::string& fileName) override
    {
        lookups.push_back(fileName);
        if (!enter())
            return nullptr;
        for (std::size_t i = 0; i < tracks.size(); ++i) {
            if (toCodePage(tracks[i].fileName) == fileName)
                return std::make_shared<File>(*this, i);
        }
        return nullptr;
    }
    void drawSkin(std::int32_t) override {}
    std::int32_t skin(std::int32_t, std::int32_t) override { return 0; }
    std::int32_t colour(std::string_view, std::string_view) override { return -1; }

private:
    class File : public HostFile {
    public:
        File(FakeHost& host, std::size_t index) : m_host(host), m_index(index) {}
        std::string text(FileText field) override { return toCodePage(wideText(field)); }
        std::u16string wideText(FileText field) override
        {
            const HostTrack& track = read();
            ++m_host.textReads[field];
            switch (field) {
            case FileText::Filename:
                return track.fileName;
            case FileText::Artist:
                return track.artist;
            case FileText::Album:
                return track.album;
            case FileText::Genre:
                return track.genre;
            case FileText::Type:
                return track.type;
            default: {
                const auto text = track.more.find(field);
                return text == track.more.end() ? std::u16string() : text->second;
            }
            }
        }
        std::int32_t number(FileNumber field) override
        {
            const HostTrack& track = read();
            switch (field) {
            case FileNumber::Duration:
                return track.duration;
            case FileNumber::Year:
                return track.year;
            case FileNumber::Bitrate:
                return track.bitrate;
            case FileNumber::Track:
                return track.number;
            case FileNumber::PlayCount:
                return track.playCount;
            default:
                return track.rating;
            }
        }
        std::string image(ImageKind kind) override
        {
            m_host.enter();
            const HostTrack& track = m_host.tracks[m_index];
            std::string query = kind == ImageKind::ImageFile ? "1 " : "2 ";
            query.append(toCodePage(track.fileName));
            m_host.imageQueries.push_back(std::move(query));
            return kind == ImageKind::ImageFile ? track.imageFile : track.embeddedImage;
        }

    private:
        const HostTrack& read()
        {
            m_host.enter();
            ++m_host.propertyReads;
            return m_host.tracks[m_index];
        }
        FakeHost& m_host;
        std::size_t m_index;
    };

    class Files : public HostFiles {
    public:
        explicit Files(FakeHost& host) : m_host(host) {}
        std::int32_t count() override
        {
            m_host.enter();
            return static_cast<std::int32_t>(m_host.tracks.size());
        }
        HostFilePtr file(std::int32_t index) override
        {
            if (!m_host.enter())
                return nullptr;
            return std::make_shared<File>(m_host, static_cast<std::size_t>(index));
        }

    private:
        FakeHost& m_host;
    };

    class Playlist : public HostPlaylist {
    public:
        explicit Playlist(FakeHost& host) : m_host(host) {}
        std::int32_t position() override
        {
            m_host.enter();
            return m_host.position;
        }
        void setPosition(std::int32_t index) override
        {
            order("position " + std::to_string(index));
            m_host.position = index;
        }
        std::int32_t count() override
        {
            m_host.enter();
            return static_cast<std::int32_t>(m_host.entries.size());
        }
        HostFilePtr file(std::int32_t index) override
        {
            ++m_host.entryReads;
            const auto place = static_cast<std::size_t>(index);
            if (!m_host.enter() || place >= m_host.entries.size())
                return nullptr;
            return std::make_shared<File>(m_host, m_host.entries[place]);
        }
        void clear() override
        {
            order("clear");
            m_host.entries.clear();
        }
        bool add(const std::string& fileName, std::int32_t) override
        {
            order("add " + fileName);
            for (std::size_t i = 0; i < m_host.tracks.size(); ++i) {
                if (toCodePage(m_host.tracks[i].fileName) == fileName)
                    m_host.entries.push_back(i);
            }
            return true;
        }

    private:
        void order(const std::string& text)
        {
            m_host.enter();
            m_host.orders.push_back(text);
        }
        FakeHost& m_host;
    };

    class Playback : public HostPlayback {
    public:
        explicit Playback(FakeHost& host) : m_host(host) {}
        std::int32_t state() override
        {
            m_host.enter();
            return m_host.playbackState;
        }
        void playNow() override { order("playNow"); }
        void start() override { order("start"); }

    private:
        void order(const char* text)
        {
            m_host.enter();
            m_host.orders.emplace_back(text);
            m_host.playbackState = 1;
        }
        FakeHost& m_host;
    };
};

} // namespace tessera::test
