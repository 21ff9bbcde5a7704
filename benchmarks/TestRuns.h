#pragma once

#include <stdexcept>

#include "Tests/VornFontTester.h"

/// What asks for findings of every severity.
inline TestOptions AllSeverities() {
  TestOptions options;
  for (const Severity severity : kSeverities) options.severities.Add(severity);
  return options;
}

/// Runs a test over a font without messages and returns what it found. Throws when the test does not apply to the font.
template <class Tester>
SeveritySet Run(const FTFont& font) {
  const TestOptions options = AllSeverities();
  FindingSink sink;
  if (!RunTester<Tester>(&font, sink, &options)) throw std::invalid_argument("the test is not for this font");
  return sink.Severities();
}
