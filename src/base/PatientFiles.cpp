#include "base/PatientFiles.h"

#include "base/Clock.h"

#include <chrono>
#include <thread>

namespace tessera {

namespace {

constexpr std::uint32_t kPatience = 2000; // milliseconds
constexpr std::chrono::milliseconds kPause{20};

} // namespace

template <class Call>
auto PatientFiles::patiently(Call call)
{
    const std::uint32_t start = tickCount();
    for (;;) {
        auto result = call();
        if (result || !m_files.heldByAnother() || m_terminating || tickCount() - start >= kPatience)
            return result;
        if (m_beforePause)
            m_beforePause();
        std::this_thread::sleep_for(kPause);
    }
}

std::optional<std::vector<std::uint8_t>> PatientFiles::readAll(const std::string& path)
{
    return patiently([&] { return m_files.readAll(path); });
}

std::unique_ptr<OutputFile> PatientFiles::create(const std::string& path)
{
    return patiently([&] { return m_files.create(path); });
}

std::unique_ptr<OutputFile> PatientFiles::createNew(const std::string& path)
{
    return patiently([&] { return m_files.createNew(path); });
}

std::unique_ptr<OutputFile> PatientFiles::openForUpdate(const std::string& path)
{
    return patiently([&] { return m_files.openForUpdate(path); });
}

bool PatientFiles::rename(const std::string& from, const std::string& to)
{
    return patiently([&] { return m_files.rename(from, to); });
}

} // namespace tessera
