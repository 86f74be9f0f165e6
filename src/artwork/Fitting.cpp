#include "artwork/Fitting.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace tessera {
namespace {

constexpr std::uint32_t kWhole = 256; // one source pixel in the units of a span

// The source pixels under one target pixel, along one axis: `first` counts with the weight `head`,
// the next `full` ones wholly, one more with `tail` (none when that is 0).
struct Span {
    std::int32_t first = 0;
    std::int32_t full = 0;
    std::uint32_t head = 0;
    std::uint32_t tail = 0;

    std::uint32_t total() const { return head + static_cast<std::uint32_t>(full) * kWhole + tail; }
};

Span averaged(std::int64_t begin, std::int64_t end)
{
    Span span;
    span.first = static_cast<std::int32_t>(begin / kWhole);
    const std::int64_t firstEnd = (std::int64_t{span.first} + 1) * kWhole;
    if (end <= firstEnd) {
        span.head = static_cast<std::uint32_t>(end - begin);
        return span;
    }
    span.head = static_cast<std::uint32_t>(firstEnd - begin);
    span.full = static_cast<std::int32_t>((end - firstEnd) / kWhole);
    span.tail = static_cast<std::uint32_t>((end - firstEnd) % kWhole);
    return span;
}

Span interpolated(std::int64_t centre, std::int32_t source)
{
    const std::int64_t last = (std::int64_t{source} - 1) * kWhole;
    const std::int64_t place = std::clamp<std::int64_t>(centre, 0, last);
    Span span;
    span.first = static_cast<std::int32_t>(place / kWhole);
    span.tail = static_cast<std::uint32_t>(place % kWhole);
    span.head = kWhole - span.tail;
    return span;
}

std::vector<Span> spansOf(std::int32_t source, std::int32_t target)
{
    std::vector<Span> spans(static_cast<std::size_t>(target));
    for (std::int64_t i = 0; i < target; ++i) {
        Span& span = spans[static_cast<std::size_t>(i)];
        if (source >= target) {
            span = averaged(i * source * kWhole / target, (i + 1) * source * kWhole / target);
        } else {
            span =
                interpolated((2 * i + 1) * source * kWhole / (2 * std::int64_t{target}) - kWhole / 2, source);
        }
    }
    return spans;
}

std::uint32_t pixelAt(const std::uint8_t* row, std::int32_t x)
{
    std::uint32_t pixel;
    std::memcpy(&pixel, row + std::size_t{4} * static_cast<std::size_t>(x), sizeof pixel);
    return pixel;
}

// Sums of the channels blue, green and red.
using Sums = std::array<std::uint32_t, 3>;

void addWeighted(Sums& sums, std::uint32_t pixel, std::uint32_t weight)
{
    sums[0] += (pixel & 0xFF) * weight;
    sums[1] += (pixel >> 8 & 0xFF) * weight;
    sums[2] += (pixel >> 16 & 0xFF) * weight;
}

// Blue and red are added in one go, as many pixels at a time as leave their halves apart.
void addFull(Sums& sums, const std::uint8_t* row, std::int32_t first, std::int32_t count)
{
    constexpr std::int32_t kApart = 256;
    const std::int32_t end = first + count;
    for (std::int32_t x = first; x < end;) {
        std::uint32_t blueRed = 0;
        std::uint32_t green = 0;
        for (const std::int32_t stop = std::min(end, x + kApart); x < stop; ++x) {
            const std::uint32_t pixel = pixelAt(row, x);
            blueRed += pixel & 0x00FF00FF;
            green += pixel >> 8 & 0xFF;
        }
        sums[0] += (blueRed & 0xFFFF) * kWhole;
        sums[1] += green * kWhole;
        sums[2] += (blueRed >> 16) * kWhole;
    }
}

// One source row, squeezed or stretched to the target's width; values are 256 times a channel's.
class WideRows {
public:
    WideRows(const Picture& picture, std::int32_t width)
        : m_picture(picture), m_spans(spansOf(picture.width, width))
    {
        for (const Span& span : m_spans) {
            m_reciprocals.push_back(
                static_cast<std::uint32_t>(((std::uint64_t{1} << 32) + span.total() - 1) / span.total()));
        }
        for (Kept& kept : m_kept) {
            kept.values.resize(m_spans.size() * 3);
        }
    }

    // Neighbouring target rows share a source row: the last two stay.
    const std::vector<std::uint32_t>& row(std::int32_t y)
    {
        Kept& kept = m_kept[static_cast<std::size_t>(y) % m_kept.size()];
        if (kept.y != y) {
            compute(y, kept.values);
            kept.y = y;
        }
        return kept.values;
    }

private:
    struct Kept {
        std::int32_t y = -1;
        std::vector<std::uint32_t> values;
    };

    void compute(std::int32_t y, std::vector<std::uint32_t>& values) const
    {
        const std::uint8_t* const row =
            m_picture.pixels.data() +
            std::size_t{4} * static_cast<std::size_t>(m_picture.width) * static_cast<std::size_t>(y);
        std::uint32_t* value = values.data();
        for (std::size_t x = 0; x < m_spans.size(); ++x) {
            const Span& span = m_spans[x];
            Sums sums{};
            addWeighted(sums, pixelAt(row, span.first), span.head);
            addFull(sums, row, span.first + 1, span.full);
            if (span.tail != 0) {
                addWeighted(sums, pixelAt(row, span.first + 1 + span.full), span.tail);
            }
            for (const std::uint32_t sum : sums) {
                const auto average = static_cast<std::uint32_t>(std::uint64_t{sum} * m_reciprocals[x] >> 24);
                *value++ = std::min(average, 255 * kWhole);
            }
        }
    }

    const Picture& m_picture;
    std::vector<Span> m_spans;
    std::vector<std::uint32_t> m_reciprocals;
    std::array<Kept, 2> m_kept;
};

// The weights of a span's source rows, in 65536th parts that add up exactly.
class RowWeights {
public:
    explicit RowWeights(std::uint32_t total) : m_total(total) {}
    std::uint32_t next(std::uint32_t part)
    {
        m_passed += part;
        const auto reached = static_cast<std::uint32_t>((std::uint64_t{m_passed} << 16) / m_total);
        return reached - std::exchange(m_reached, reached);
    }

private:
    std::uint32_t m_total;
    std::uint32_t m_passed = 0;
    std::uint32_t m_reached = 0;
};

void addRow(std::vector<std::uint32_t>& sums, const std::vector<std::uint32_t>& row, std::uint32_t weight)
{
    for (std::size_t i = 0; i < sums.size(); ++i) {
        sums[i] += row[i] * weight;
    }
}

void sumRows(WideRows& rows, const Span& span, std::vector<std::uint32_t>& sums)
{
    std::fill(sums.begin(), sums.end(), std::uint32_t{1} << 23); // rounds
    RowWeights weights(span.total());
    std::int32_t y = span.first;
    addRow(sums, rows.row(y++), weights.next(span.head));
    for (std::int32_t i = 0; i < span.full; ++i) {
        addRow(sums, rows.row(y++), weights.next(kWhole));
    }
    if (span.tail != 0) {
        addRow(sums, rows.row(y), weights.next(span.tail));
    }
}

void drawScaled(const Picture& picture, Picture& target, const PixelRect& place)
{
    WideRows rows(picture, place.width);
    const std::vector<Span> spans = spansOf(picture.height, place.height);
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(place.width) * 3);
    for (std::int32_t y = 0; y < place.height; ++y) {
        sumRows(rows, spans[static_cast<std::size_t>(y)], sums);
        std::uint8_t* out = target.pixels.data() + (static_cast<std::size_t>(place.top + y) *
                                                        static_cast<std::size_t>(target.width) +
                                                    static_cast<std::size_t>(place.left)) *
                                                       4;
        for (std::size_t i = 0; i < sums.size(); i += 3, out += 4) {
            out[0] = static_cast<std::uint8_t>(sums[i] >> 24);
            out[1] = static_cast<std::uint8_t>(sums[i + 1] >> 24);
            out[2] = static_cast<std::uint8_t>(sums[i + 2] >> 24);
            out[3] = 255;
        }
    }
}

// Rounded to a double first, so that every processor cuts off the same.
std::int32_t truncated(double value)
{
    const volatile double rounded = value;
    return static_cast<std::int32_t>(rounded);
}

} // namespace

PixelRect fitInto(PictureSize picture, const PixelRect& area)
{
    const volatile double ratio = static_cast<double>(picture.height) / picture.width;
    std::int32_t width = truncated(std::min(area.height / ratio, 1e9));
    std::int32_t height = area.height;
    if (width > area.width) {
        width = area.width;
        height = truncated(area.width * ratio);
    }
    width = std::max(width, 1);
    height = std::max(height, 1);
    return {area.left + (area.width - width) / 2, area.top + (area.height - height) / 2, width, height};
}

bool isOpaque(const Picture& picture)
{
    for (std::size_t i = 3; i < picture.pixels.size(); i += 4) {
        if (picture.pixels[i] != 255) {
            return false;
        }
    }
    return true;
}

void flatten(Picture& picture, PixelColour ground)
{
    const std::array<int, 3> behind{ground.blue, ground.green, ground.red};
    for (std::size_t i = 0; i < picture.pixels.size(); i += 4) {
        std::uint8_t* const pixel = &picture.pixels[i];
        const int alpha = pixel[3];
        for (std::size_t c = 0; c < behind.size(); ++c) {
            pixel[c] = static_cast<std::uint8_t>((pixel[c] * alpha + behind[c] * (255 - alpha) + 127) / 255);
        }
        pixel[3] = 255;
    }
}

std::vector<std::uint8_t> drawCover(const Picture& picture, const CoverGround& ground)
{
    Picture target = ground.image;
    if (ground.inside.width > 0 && ground.inside.height > 0) {
        drawScaled(picture, target, fitInto({picture.width, picture.height}, ground.inside));
    }
    return std::move(target.pixels);
}

} // namespace tessera
