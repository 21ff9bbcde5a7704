#include "Formats/ReportFormat.h"

#include "Formats/GithubReport.h"
#include "Formats/HtmlReport.h"
#include "Formats/JUnitReport.h"
#include "Formats/JsonReport.h"
#include "Formats/MarkdownReport.h"
#include "Formats/PropertyListReport.h"
#include "Formats/SarifReport.h"
#include "Formats/TextReport.h"

namespace tool {

std::unique_ptr<ReportFormat> MakeReportFormat(Format format, const Options& options, const Destination& destination) {
  switch (format) {
    case Format::kHtml:
      return std::make_unique<HtmlReport>(options);
    case Format::kJson:
      return std::make_unique<JsonReport>(options);
    case Format::kJsonLines:
      return std::make_unique<JsonLinesReport>(options);
    case Format::kPropertyList:
      return std::make_unique<PropertyListReport>(options);
    case Format::kSarif:
      return std::make_unique<SarifReport>(options);
    case Format::kJUnit:
      return std::make_unique<JUnitReport>(options);
    case Format::kGithub:
      return std::make_unique<GithubReport>(options);
    case Format::kMarkdown:
      return std::make_unique<MarkdownReport>(options);
    case Format::kText:
      break;
  }
  return std::make_unique<TextReport>(options, destination);
}

}  // namespace tool
