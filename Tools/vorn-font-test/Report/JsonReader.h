#pragma once

#include <Tova/Tova.hpp>
#include <string>
#include <string_view>

namespace tool {

/// What a line of a report in JSON lines tells at a glance.
struct ReportLineSurvey {
  std::string path;         ///< as it stands there; empty when the line tells of no file
  bool hasProblem = false;  ///< the file was not tested
  bool isWhole = false;     ///< the line is a whole JSON object
};

ReportLineSurvey SurveyReportLine(std::string_view line);

/// The values of a line that JsonLinesReport wrote, with dates where there were dates. Keys in a report that the
/// library does not know are left out: this program made them, and makes them anew. Null for anything else.
Tova::Dictionary ReadJsonLine(std::string_view line);

}  // namespace tool
