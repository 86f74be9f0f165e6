#include "library/KeptDatabases.h"

#include "base/Paths.h"
#include "base/Text.h"
#include "library/Format.h"
#include "library/MarksTransfer.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <random>
#include <utility>

namespace tessera {

namespace {

constexpr int kFirstNumber = 2;
constexpr int kLastNumber = 99;

std::string numberedName(const std::string& fileName, int number)
{
    return format("%s.%d.bak", fileName.c_str(), number);
}

// A database as far as a replacement looks at it.
struct Content {
    std::optional<std::vector<std::uint8_t>> bytes; // none: there is none, or it cannot be read just now
    std::optional<std::size_t> marked;              // albums; none: not known
    bool keeps = false;                             // worth keeping

    bool mayHoldMarks() const { return keeps && marked != 0U; }
};

Content look(const std::string& fileName, FileSystem& files, const std::atomic<bool>& terminating)
{
    Content content;
    content.bytes = files.readAll(fileName);
    content.keeps = files.exists(fileName);
    try {
        if (content.bytes) {
            content.marked = markedAlbums(*content.bytes, terminating);
            content.keeps = content.marked.has_value();
        }
    } catch (const std::bad_alloc&) {
        content.bytes.reset(); // as if it could not be read just now
    }
    return content;
}

// True when the earlier one may go: the later one has all its marked albums, and all but a few of their
// marks, as when somebody changed these by hand.
bool supersedes(const Content& later, const Content& earlier, const std::atomic<bool>& terminating)
try {
    if (!later.marked || !earlier.marked)
        return false;
    const LivingMarks marks = livingMarks(*later.bytes, *earlier.bytes, terminating);
    return marks.absent == 0 && marks.living * 10 >= *earlier.marked * 9;
} catch (const std::bad_alloc&) {
    return false;
}

// Names behind those that are taken, the nearest first, then those between; none when all are taken.
std::vector<std::string> freeNames(const std::string& fileName, FileSystem& files)
{
    std::vector<std::string> behind;
    std::vector<std::string> between;
    for (int number = kFirstNumber; number <= kLastNumber; ++number) {
        std::string name = numberedName(fileName, number);
        if (files.exists(name))
            std::ranges::move(std::exchange(behind, {}), std::back_inserter(between));
        else
            behind.push_back(std::move(name));
    }
    std::ranges::move(between, std::back_inserter(behind));
    return behind;
}

std::vector<std::string> keptNames(const std::string& fileName, FileSystem& files)
{
    std::vector<std::string> names;
    for (int number = kFirstNumber; number <= kLastNumber; ++number) {
        std::string name = numberedName(fileName, number);
        if (files.exists(name))
            names.push_back(std::move(name));
    }
    return names;
}

// NAME.01234567.tmp; a pattern finds others, too, by their short names.
bool isTemporaryName(std::string_view path, std::string_view fileName)
{
    if (path.size() != fileName.size() + std::string_view(".01234567.tmp").size())
        return false;
    const std::string_view digits = path.substr(fileName.size() + 1, 8);
    return digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

constexpr std::size_t kBeginning = sizeof ts2::kFirstMagic;

bool isBeginningOfDatabase(const std::optional<std::vector<std::uint8_t>>& bytes)
{
    if (!bytes || bytes->empty())
        return bytes.has_value();
    std::uint32_t first = 0;
    std::memcpy(&first, bytes->data(), std::min(bytes->size(), sizeof first));
    return first == ts2::kFirstMagic;
}

} // namespace

std::string previousDatabase(const std::string& fileName)
{
    return fileName + ".bak";
}

std::string temporaryDatabase(const std::string& fileName)
{
    return format("%s.%08x.tmp", fileName.c_str(), std::random_device()());
}

std::vector<std::string> leftDatabases(const std::string& fileName, FileSystem& files)
{
    constexpr std::size_t kMost = 32; // a crash leaves one; others may have made any number
    const std::string folder = fileName.substr(0, findLastBackslash(withBackslashes(fileName)) + 1);
    std::vector<std::string> names;
    for (const std::string& name : files.findAll(fileName + ".????????.tmp")) {
        std::string path = folder + name;
        if (names.size() < kMost && isTemporaryName(path, fileName) &&
            isBeginningOfDatabase(files.readBeginning(path, kBeginning)))
            names.push_back(std::move(path));
    }
    return names;
}

std::vector<KeptMarks> keptMarks(const std::string& fileName, FileSystem& files,
                                 const std::atomic<bool>& terminating)
{
    std::vector<std::string> names = keptNames(fileName, files);
    names.push_back(previousDatabase(fileName));
    std::vector<KeptMarks> kept;
    for (std::string& name : names) {
        const std::size_t marked = look(name, files, terminating).marked.value_or(0);
        if (marked > 0)
            kept.push_back({std::move(name), marked});
    }
    return kept;
}

namespace {

Replacement planKept(const std::string& fileName, FileSystem& files, const std::atomic<bool>& terminating)
{
    const Content replaced = look(fileName, files, terminating);
    const Content previous = look(previousDatabase(fileName), files, terminating);
    if (!replaced.keeps || (previous.mayHoldMarks() && !replaced.mayHoldMarks()))
        return {};
    Replacement plan;
    plan.previous = previousDatabase(fileName);
    plan.mustStay = replaced.mayHoldMarks();
    std::vector<std::string> names = freeNames(fileName, files);
    names.resize(2);
    plan.spare = std::move(names[0]);
    if (previous.mayHoldMarks() && !supersedes(replaced, previous, terminating)) {
        plan.earlier = std::move(plan.spare);
        plan.spare = std::move(names[1]);
        if (plan.earlier.empty())
            plan.previous.clear(); // its holder stays
    }
    if (plan.mustStay) {
        for (std::string& name : keptNames(fileName, files)) {
            if (supersedes(replaced, look(name, files, terminating), terminating))
                plan.superseded.push_back(std::move(name));
        }
    }
    return plan;
}

} // namespace

Replacement planReplacement(const std::string& fileName, const std::string& written, FileSystem& files,
                            const std::atomic<bool>& terminating)
{
    Replacement plan = planKept(fileName, files, terminating);
    for (std::string& name : leftDatabases(fileName, files)) {
        if (name != written && !look(name, files, terminating).mayHoldMarks()) // some open what was left
            plan.superseded.push_back(std::move(name));
    }
    return plan;
}

} // namespace tessera
