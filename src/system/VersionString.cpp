#include "base/Text.h"
#include "system/Module.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>

namespace tessera {

namespace {

// A block of a version resource: its size, that of its value, a kind, and a name that ends in zero; then
// the value and the blocks inside, each on a boundary of four bytes.
struct VersionBlock {
    std::u16string_view name;
    std::u16string_view text; // a value of bytes has no meaning here
    std::span<const WORD> inside;
    std::size_t words = 0; // to the next one
};

std::size_t even(std::size_t words)
{
    return words + words % 2;
}

std::optional<VersionBlock> readVersionBlock(std::span<const WORD> words)
{
    constexpr std::size_t kHeader = 3;
    if (words.size() < kHeader)
        return std::nullopt;
    const std::span<const WORD> block = words.first(std::min<std::size_t>(words.size(), (words[0] + 1) / 2));
    const bool isText = words[2] == 1;
    const auto end = std::find(block.begin() + std::min(block.size(), kHeader), block.end(), WORD{0});
    const auto length = static_cast<std::size_t>(end - block.begin());
    if (block.size() <= kHeader || end == block.end())
        return std::nullopt;
    const auto letters = [&](std::size_t from, std::size_t count) {
        return std::u16string_view(reinterpret_cast<const char16_t*>(block.data()) + from, count);
    };
    const std::size_t value = std::min(block.size(), even(length + 1));
    const std::size_t size =
        std::min<std::size_t>(block.size() - value, isText ? words[1] : (words[1] + 1) / 2);
    VersionBlock read{letters(kHeader, length - kHeader), letters(value, isText ? size : 0),
                      block.subspan(std::min(block.size(), even(value + size))), even(block.size())};
    read.text = read.text.substr(0, read.text.find(u'\0'));
    return read;
}

std::optional<VersionBlock> findVersionBlock(std::span<const WORD> words, std::u16string_view name)
{
    while (const auto block = readVersionBlock(words)) {
        if (block->name == name)
            return block;
        words = words.subspan(std::min(words.size(), block->words));
    }
    return std::nullopt;
}

std::span<const WORD> versionResource()
{
    const HMODULE module = moduleInstance();
    const HRSRC place = FindResourceA(module, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(16)); // a version's kind
    const HGLOBAL loaded = place ? LoadResource(module, place) : nullptr;
    const void* const bytes = loaded ? LockResource(loaded) : nullptr;
    if (!bytes)
        return {};
    return {static_cast<const WORD*>(bytes), SizeofResource(module, place) / sizeof(WORD)};
}

} // namespace

std::string versionString(std::string_view name)
{
    std::optional<VersionBlock> block = readVersionBlock(versionResource());
    const std::u16string wanted(name.begin(), name.end());
    for (const std::u16string_view level : {std::u16string_view(u"StringFileInfo"),
                                            std::u16string_view(u"040904b0"), std::u16string_view(wanted)}) {
        if (block)
            block = findVersionBlock(block->inside, level);
    }
    return block ? toCodePage(block->text) : std::string();
}

} // namespace tessera
