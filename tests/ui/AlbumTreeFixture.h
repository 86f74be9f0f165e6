#pragma once

#include "AlbumFixture.h"
#include "base/Errors.h"
#include "base/Text.h"
#include "ui/AlbumTrees.h"
#include "ui/ids.h"
#include "windowing/Window.h"

#include <gtest/gtest.h>

#include <memory>

namespace tessera {

inline constexpr std::size_t kLibrary = 0;
inline constexpr std::size_t kNew = 1;
inline constexpr std::size_t kFavourites = 2;
inline constexpr std::size_t kCompleted = 3;

class Lines : public Log {
public:
    void startTimer() override {}
    void indent() override {}
    void outdent() override {}
    void line(const std::string& text) override { lines.push_back(text); }
    void progress(std::uint32_t, std::uint32_t) override {}

    std::vector<std::string> lines;
};

// Stands for the pane: hands the trees what they notify, and counts what they leave.
class TreeParent : public Mapped<TreeParent> {
public:
    static std::span<const MapEntry<TreeParent>> messageMap()
    {
        static constexpr MapEntry<TreeParent> kMap[] = {{WM_NOTIFY, &TreeParent::onNotify}};
        return kMap;
    }
    AlbumTrees* trees = nullptr;
    int selectionChanges = 0;

private:
    Handled onNotify(const Message& message)
    {
        auto& header = *reinterpret_cast<NMHDR*>(message.lParam);
        if (const Handled handled = trees ? trees->answer(header) : kDefault)
            return handled;
        selectionChanges += header.code == TVN_SELCHANGEDA || header.code == TVN_SELCHANGEDW ? 1 : 0;
        return kDefault;
    }
};

// Counts what is put into a tree, without asking the tree; and what of it is put behind a node or to the
// last place, which some systems look for among all siblings.
class InsertionCounter final : public Subclass {
public:
    Handled route(const Message& message) override
    {
        if (message.id == TVM_INSERTITEMA) {
            ++count;
            searched += reinterpret_cast<const TVINSERTSTRUCTA*>(message.lParam)->hInsertAfter != TVI_FIRST;
        }
        return kDefault;
    }
    int count = 0;
    int searched = 0;
};

class AlbumTreeTest : public testing::Test {
protected:
    AlbumTreeTest()
    {
        m_before = setAssertionHandler([](const char* expression, const char* unit, unsigned long) {
            ADD_FAILURE() << unit << ": " << expression;
        });
        m_parent.create(m_frame, 2000, {0, 0, 400, 600});
        m_parent.trees = m_trees.get();
        EXPECT_TRUE(m_trees->create(m_parent.handle()));
        m_trees->move({0, 0, 300, 500});
    }
    ~AlbumTreeTest() override
    {
        m_parent.destroy();
        DestroyWindow(m_frame);
        setAssertionHandler(m_before);
    }

    Album& album(const char* title, Artist& artist, const char* genre = "Rock", std::int32_t rank = 0)
    {
        Album& made = addAlbum(m_commands.records, title, artist);
        made.genre = genre;
        made.rank = rank;
        return made;
    }
    Artist& artist(const char* name) { return addArtist(m_commands.records, name); }
    // Three albums of A, two of B, all Rock and unranked: eight groups.
    void makeFiveAlbums()
    {
        Artist& a = artist("A");
        Artist& b = artist("B");
        for (const char* const title : {"a1", "a2", "a3"})
            album(title, a);
        for (const char* const title : {"b1", "b2"})
            album(title, b);
    }
    void mark(Album& album, AlbumFlag flag) { album.set(flag, true); }
    void rebuild(TreeRebuild kind = TreeRebuild::Full)
    {
        m_commands.library(); // fills the catalogue
        m_trees->rebuild(kind, m_log);
    }

    const TreeView& view(std::size_t tree = kLibrary) const { return m_trees->tree(tree).view(); }
    HTREEITEM root(Grouping grouping, std::size_t tree = kLibrary) const
    {
        return m_trees->tree(tree).root(grouping);
    }
    // The node that the texts lead to from a root.
    HTREEITEM find(HTREEITEM from, const std::vector<std::string>& texts, std::size_t tree = kLibrary) const
    {
        HTREEITEM item = from;
        for (const std::string& text : texts) {
            item = view(tree).child(item);
            while (item && view(tree).text(item) != text)
                item = view(tree).next(item);
        }
        return item;
    }
    // As the control tells it.
    Handled tellOpening(HTREEITEM item, std::size_t tree = kLibrary, UINT code = TVN_ITEMEXPANDINGA)
    {
        NMTREEVIEWA opening{};
        opening.hdr = {view(tree).handle(), static_cast<UINT_PTR>(m_trees->tree(tree).id()), code};
        opening.action = TVE_EXPAND;
        opening.itemNew.hItem = item;
        return m_trees->answer(opening.hdr);
    }
    void press(WPARAM key) const { view().send(WM_KEYDOWN, key); }
    // "Text/parameter/icon" of everything below a node, two blanks for each level; "*" for an album.
    std::string outline(HTREEITEM parent, std::size_t tree = kLibrary, int depth = 0) const
    {
        std::string lines;
        for (HTREEITEM item = view(tree).child(parent); item; item = view(tree).next(item)) {
            lines += std::string(static_cast<std::size_t>(depth) * 2, ' ') + describe(item, tree) + "\n" +
                     outline(item, tree, depth + 1);
        }
        return lines;
    }
    std::string describe(HTREEITEM item, std::size_t tree = kLibrary) const
    {
        TVITEMA info{};
        info.mask = TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        info.hItem = item;
        view(tree).send(TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&info));
        EXPECT_EQ(info.iImage, info.iSelectedImage);
        const bool leaf = m_trees->tree(tree).isLeaf(item);
        return view(tree).text(item) + "/" + (leaf ? "*" : std::to_string(info.lParam)) + "/" +
               std::to_string(info.iImage);
    }
    std::vector<std::string> titles(HTREEITEM item, std::size_t tree = kLibrary)
    {
        AlbumPlaces places;
        m_trees->tree(tree).albumsOf(item, m_commands.catalogue(), places);
        std::vector<std::string> texts;
        for (const std::uint32_t place : places)
            texts.push_back(m_commands.catalogue().album(place).displayTitle);
        return texts;
    }

    FakeCommands m_commands;
    HWND m_frame = makeParentWindow(400, 600);
    TreeParent m_parent;
    std::unique_ptr<AlbumTrees> m_trees = std::make_unique<AlbumTrees>(m_commands);
    Lines m_log;
    AssertionHandler m_before = nullptr;
};

using Texts = std::vector<std::string>;

} // namespace tessera
