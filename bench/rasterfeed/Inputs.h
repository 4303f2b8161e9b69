// The TIFFs that the benchmarks read: made once per run in a temporary folder, of two kinds of image.
#pragma once

#include "TiffMaker.h"

#include <string>

/// Pictures as prepress has them.
enum class Kind
{
    Flat, ///< text and tints: long runs of equal pixels
    Photo ///< noisy gradients
};

/// The rule for an 8-bit image of that kind.
SampleRule Picture(Kind kind);

/// The path of a file of that form, made when first asked for and removed with the process.
std::string InputFile(const TiffForm& form, const SampleRule& rule, const std::string& name);
