#pragma once

#include <string>

namespace tessera {

enum class Severity { Stop, Exclamation, Information };

// What the user must see. Any thread: a call from a worker is answered, or withdrawn when the
// plug-in terminates.
class Prompt {
public:
    virtual ~Prompt() = default;
    // The message box captioned with the product's name and an OK button.
    virtual void message(Severity severity, const std::string& text) = 0;
    // The assertion box; returns when the user chose to continue.
    virtual void assertion(const std::string& expression, const std::string& unit, unsigned long line) = 0;
};

} // namespace tessera
