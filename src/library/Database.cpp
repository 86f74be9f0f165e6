#include "library/Database.h"

#include "base/PatientFiles.h"
#include "library/Assertions.h"
#include "library/DatabaseReader.h"
#include "library/DatabaseWriter.h"
#include "library/KeptDatabases.h"
#include "library/LibraryLoader.h"
#include "library/LogSection.h"

namespace tessera {

namespace {

constexpr const char* kCouldNotWrite = "Could not write the database '%s'!";
constexpr const char* kTooLarge = "\n\nIt would be larger than 2 GB, which is more than can be loaded.";

void tell(Prompt& prompt, const char* pattern, const std::string& fileName, const std::string& more = {})
{
    prompt.message(Severity::Exclamation, format(pattern, shownName(fileName).c_str()) + more);
}

// The one place where the reader's assertions and messages are shown.
void tell(Prompt& prompt, const ReadFailure& failure)
{
    if (failure.assertion)
        prompt.assertion(failure.assertion, assertions::kUnit, failure.line);
    else
        prompt.message(failure.severity, failure.message);
}

// What stands beside a name that is missing, as after a crash while a new file took its place.
std::string whatIsBeside(const std::string& fileName, FileSystem& files)
{
    if (files.exists(fileName))
        return {};
    std::string found;
    const auto look = [&](const std::string& name, const char* what) {
        if (files.exists(name))
            found += format("%s - %s\n", shownName(name).c_str(), what);
    };
    look(previousDatabase(fileName), "the database that was there before");
    for (const std::string& name : leftDatabases(fileName, files))
        look(name, "a new one, which may not be complete");
    return found.empty() ? found
                         : format("\n\nBeside it are:\n%s\nRename one of them to open it.", found.c_str());
}

} // namespace

void Database::clear()
{
    m_unsaved.clear();
    m_library.clear();
}

Library Database::takeLibrary()
{
    m_unsaved.clear();
    return std::exchange(m_library, {});
}

bool Database::write(const std::string& fileName, JobContext& context)
{
    context.log.line("Writing Database");
    const LogSection section(context.log);
    PatientFiles files(context.files, context.terminating);
    NewFile file(files, fileName);
    if (!file.isOpen()) {
        tell(context.prompt, "Could not create the database '%s'!", fileName);
        return false;
    }
    DatabaseWriter writer(m_library, m_flags, file.output(), context);
    if (!writer.write()) {
        tell(context.prompt, kCouldNotWrite, fileName, writer.tooLarge() ? kTooLarge : "");
        return false;
    }
    const Replacement plan = planReplacement(fileName, file.temporaryName(), files, context.terminating);
    if (!plan.earlier.empty())
        context.log.print("Keeping the marks of an earlier database - %s", plan.earlier.c_str());
    const NewFile::Outcome outcome = file.takePlace(plan);
    if (!outcome.placed) {
        std::string where = format("\n\nThe new database is complete and stays as '%s'.",
                                   shownName(file.temporaryName()).c_str());
        if (!outcome.previous.empty())
            where += format("\n\nThe previous one is '%s'.", shownName(outcome.previous).c_str());
        tell(context.prompt, kCouldNotWrite, fileName, where);
        return false;
    }
    return true;
}

bool Database::read(const std::string& fileName, Host& host, JobContext& context,
                    const std::function<void()>& afterLinks)
{
    auto bytes = PatientFiles(context.files, context.terminating).readAll(fileName);
    if (!bytes) {
        tell(context.prompt, "Could not open the database '%s'!", fileName,
             whatIsBeside(fileName, context.files));
        return false;
    }
    const LogSection section(context.log);
    try {
        LibraryLoader loader(m_library, m_flags, host, context);
        DatabaseReader(*bytes, fileName, context, loader).read();
    } catch (const ReadFailure& failure) {
        tell(context.prompt, failure);
        return false;
    }
    m_fileSize = bytes->size();
    bytes.reset();
    if (afterLinks)
        afterLinks();
    return true;
}

} // namespace tessera
