// The TIFFs that the benchmarks read, made once per run in a temporary folder.
#pragma once

#include "bench/pages/Pages.h"
#include "tests/support/TiffMaker.h"

#include <string>

using TestSupport::SampleRule;
using TestSupport::TiffForm;

/// Size of the 8-bit pages, in pixels.
constexpr std::uint32_t pageWidth = 4000;
constexpr std::uint32_t pageHeight = 6000;

/// The rule for an 8-bit page of that kind.
SampleRule Page(Pages::Kind kind);

/// The rule for a bilevel plate: a slow gradient in round dots, 16 pixels from one to the next. 1 is paper.
SampleRule Plate();

/// The path of a file of that form, made when first asked for and removed with the process.
std::string InputFile(const TiffForm& form, const SampleRule& rule, const std::string& name);
std::string InputFile(const TiffForm& form, const TestSupport::InkRule& rule, const std::string& name);
