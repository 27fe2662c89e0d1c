#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace tov {

// What a sub-command does once its arguments are read; throws InputError for input that is wrong.
using CommandAction = std::function<void()>;

// Each adds a sub-command with its options to the command line. When it is chosen, `tAction` is what is to be done.
void addReportCommand(CLI::App& tApp, CommandAction& tAction);
void addValueCommand(CLI::App& tApp, CommandAction& tAction);
void addExplainCommand(CLI::App& tApp, CommandAction& tAction);
void addBatchCommand(CLI::App& tApp, CommandAction& tAction);
void addListCommand(CLI::App& tApp, CommandAction& tAction);

}  // namespace tov
