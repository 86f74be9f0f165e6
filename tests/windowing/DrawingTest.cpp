#include "windowing/Drawing.h"

#include "base/Text.h"

#include <gtest/gtest.h>

using namespace tessera;

namespace {

using Pixels = std::vector<std::uint32_t>;

// A white sheet with a font of the program's own.
class Sheet {
public:
    static constexpr RECT kPlace{0, 0, 120, 20};

    Sheet()
    {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, kPlace.right, -kPlace.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        m_bitmap.reset(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        m_bits = static_cast<const std::uint32_t*>(bits);
        SelectObject(m_memory.dc(), m_bitmap.get());
        SelectObject(m_memory.dc(), m_font.get());
        fillRect(dc(), kPlace, RGB(255, 255, 255));
    }
    HDC dc() const { return m_memory.dc(); }
    Pixels pixels() const
    {
        GdiFlush();
        return {m_bits, m_bits + kPlace.right * kPlace.bottom};
    }

private:
    FontHandle m_font = makeFont("Tahoma", 14);
    BitmapHandle m_bitmap;
    const std::uint32_t* m_bits = nullptr;
    MemoryDc m_memory;
};

constexpr UINT kFlags = DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;

void expectDrawnLike(std::wstring_view wide, std::string_view text)
{
    const Sheet empty;
    const Sheet expected;
    const Sheet line;
    const Sheet formatted;
    RECT area = Sheet::kPlace;
    DrawTextW(expected.dc(), wide.data(), static_cast<int>(wide.size()), &area, kFlags);
    drawLine(line.dc(), text, Sheet::kPlace, DT_LEFT);
    area = Sheet::kPlace;
    drawFormatted(formatted.dc(), text, area, kFlags);
    EXPECT_NE(expected.pixels(), empty.pixels());
    EXPECT_EQ(line.pixels(), expected.pixels());
    EXPECT_EQ(formatted.pixels(), expected.pixels());

    SIZE size{};
    GetTextExtentPoint32W(expected.dc(), wide.data(), static_cast<int>(wide.size()), &size);
    EXPECT_EQ(textSize(line.dc(), text).cx, size.cx);
    drawFormatted(formatted.dc(), text, area, kFlags | DT_CALCRECT);
    EXPECT_EQ(area.right, size.cx);
}

} // namespace

TEST(Drawing, DoubleByteTextIsDrawnAsSuch)
{
    if (GetACP() != 932)
        GTEST_SKIP() << "needs code page 932";
    expectDrawnLike(L"\u30C6\u30B9\u30C8", "\x83\x65\x83\x58\x83\x67");
    expectDrawnLike(L"A\u30BD&b", "A\x83\x5C&b");
}

TEST(Drawing, AccentedTextIsDrawnAsSuch)
{
    if (GetACP() != 1252)
        GTEST_SKIP() << "needs code page 1252";
    expectDrawnLike(L"Caf\u00E9 & M\u00FCller", "Caf\xE9 & M\xFCller");
}

TEST(Drawing, TextOfAnyLengthIsKeptWhole)
{
    for (const std::size_t length : {0U, 1U, 127U, 128U, 129U, 5000U}) {
        std::string text(length, 'i');
        if (length > 0)
            text.back() = 'W';
        const WideText wide(text);
        EXPECT_EQ(std::wstring(wide.data(), static_cast<std::size_t>(wide.size())),
                  std::wstring(text.begin(), text.end()));
        const SIZE size = textSize(Sheet().dc(), text);
        EXPECT_EQ(size.cx > 0, length > 0) << length;
    }
    const Sheet empty;
    const Sheet nothing;
    drawLine(nothing.dc(), {}, Sheet::kPlace);
    EXPECT_EQ(nothing.pixels(), empty.pixels());
}
