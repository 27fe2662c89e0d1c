#pragma once

#include <string>

#include "command.h"

namespace tov {

// A report file of these column elements, with further attributes of the report.
std::string reportXml(const std::string& sColumns, const std::string& sAttributes = std::string());

// Runs a report over comma-separated data, with both files in the folder, and gives what it printed.
CommandResult render(const TemporaryFolder& tFolder, const std::string& sReport, const std::string& sData,
                     const std::string& sOutput);

}  // namespace tov
