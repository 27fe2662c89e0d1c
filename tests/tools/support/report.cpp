#include "report.h"

namespace tov {

std::string reportXml(const std::string& sColumns, const std::string& sAttributes)
{
    return "<tov:report xmlns:tov=\"urn:tov:schemas:report:v1\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"" +
           sAttributes + ">\n" + sColumns + "\n</tov:report>\n";
}

CommandResult render(const TemporaryFolder& tFolder, const std::string& sReport, const std::string& sData,
                     const std::string& sOutput)
{
    return runCommand(
        {"report", tFolder.write("r.xml", sReport), "--data", tFolder.write("d.csv", sData), "--output", sOutput});
}

}  // namespace tov
