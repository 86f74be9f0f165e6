#include "library/Database.h"

#include "library/Assertions.h"
#include "library/DatabaseReader.h"
#include "library/DatabaseWriter.h"
#include "library/LibraryLoader.h"
#include "library/LogSection.h"

namespace tessera {

namespace {

void tell(Prompt& prompt, const char* pattern, const std::string& fileName)
{
    prompt.message(Severity::Exclamation, format(pattern, fileName.c_str()));
}

// The one place where the reader's assertions and messages are shown.
void tell(Prompt& prompt, const ReadFailure& failure)
{
    if (failure.assertion)
        prompt.assertion(failure.assertion, assertions::kUnit, failure.line);
    else
        prompt.message(failure.severity, failure.message);
}

// The name under which the file of this name is kept; empty when it is not worth keeping.
std::string previousName(const std::string& fileName, JobContext& context)
{
    const auto bytes = context.files.readAll(fileName);
    return bytes && isSoundDatabase(*bytes, context) ? fileName + ".bak" : std::string();
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
    NewFile file(context.files, fileName);
    if (!file.isOpen()) {
        tell(context.prompt, "Could not create the database '%s'!", fileName);
        return false;
    }
    if (!DatabaseWriter(m_library, m_flags, file.output(), context).write() ||
        !file.takePlace(previousName(fileName, context))) {
        tell(context.prompt, "Could not write the database '%s'!", fileName);
        return false;
    }
    return true;
}

bool Database::read(const std::string& fileName, Host& host, JobContext& context,
                    const std::function<void()>& afterLinks)
{
    auto bytes = context.files.readAll(fileName);
    if (!bytes) {
        tell(context.prompt, "Could not open the database '%s'!", fileName);
        return false;
    }
    const LogSection section(context.log);
    try {
        LibraryLoader loader(m_library, m_flags, host);
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
