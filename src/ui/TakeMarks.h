#pragma once

#include "library/MarksTransfer.h"
#include "windowing/Dialog.h"

#include <optional>

namespace tessera {

class Commands;

// The dialog in which the user chooses the database to take marks from, and sees what it would bring.
class TakeMarks : public Mapped<TakeMarks, Dialog> {
public:
    static constexpr UINT kFileName = 1101;
    static constexpr UINT kBrowse = 1102;
    static constexpr UINT kReport = 1103;

    // Begins with the database of this name; with an empty one, with the previous one where it is kept.
    TakeMarks(Commands& commands, std::string fileName)
        : m_commands(commands), m_suggested(std::move(fileName))
    {
    }
    static std::span<const MapEntry<TakeMarks>> messageMap();

    // Modal. Changes nothing itself; none when the user cancelled.
    std::optional<MarksPlan> ask(HWND owner);

protected:
    bool onInitDialog() override;
    void onOk() override;

private:
    std::string suggestedName() const;
    bool isInUse(const std::string& fileName) const;
    std::string report() const;
    void look();
    void onNameChanged(const Command& command);
    void onBrowse(const Command& command);
    Handled onTimer(const Message& message);

    Commands& m_commands;
    std::string m_suggested;
    std::string m_fileName; // the one that the plan is for
    MarksPlan m_plan;
    bool m_waiting = false; // for OK, before a name on the network is looked up
};

// What the user wants to take over from another database; none when it was cancelled.
std::optional<MarksPlan> askMarks(HWND owner, Commands& commands, const std::string& fileName);

} // namespace tessera
