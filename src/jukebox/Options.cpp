#include "jukebox/Options.h"

#include "jukebox/WideText.h"

#include <algorithm>

namespace tessera::jukebox {

namespace {

std::string inconsistency(const Options& options)
{
    if (options.library.empty()) {
        return "--library is missing";
    }
    const bool database = !options.database.empty();
    const bool open = !options.open.empty();
    const bool checkMarks = !options.checkMarks.empty();
    if (!options.walk && (database || open || checkMarks)) {
        return "--database, --open and --check-marks belong to --walk";
    }
    if (database && (open || checkMarks)) {
        return "--database excludes --open and --check-marks";
    }
    return {};
}

} // namespace

std::optional<Options> parseOptions(const std::vector<std::wstring>& arguments, std::string& problem)
{
    Options options;
    std::wstring walk;
    const struct {
        std::wstring_view name;
        std::wstring* value;
    } values[] = {{L"--library", &options.library},
                  {L"--walk", &walk},
                  {L"--database", &options.database},
                  {L"--open", &options.open},
                  {L"--check-marks", &options.checkMarks}};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto known = std::find_if(std::begin(values), std::end(values),
                                        [&](const auto& value) { return value.name == arguments[i]; });
        if (arguments[i] == L"--skin") {
            options.skin = true;
        } else if (known == std::end(values)) {
            problem = "unknown argument: " + toUtf8(arguments[i]);
            return std::nullopt;
        } else if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
            problem = toUtf8(arguments[i]) + " needs a value";
            return std::nullopt;
        } else {
            *known->value = arguments[++i];
        }
    }
    if (!walk.empty()) {
        options.walk = walk;
    }
    problem = inconsistency(options);
    return problem.empty() ? std::optional(options) : std::nullopt;
}

} // namespace tessera::jukebox
