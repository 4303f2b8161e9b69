// Every separation's preview as a picture file of its own.
#pragma once

#include "ppf/Document.h"

#include <optional>
#include <string>

namespace PpfInfo
{
    /// Writes FOLDER/SHEET-SIDE-NN-NAME.png for each separation, upright, in 8-bit grey with ink as dark. Makes the
    /// folder if need be. A preview that cannot be decoded gets no file; returns the first finding among them. Throws
    /// Host::Failure if a file cannot be written.
    std::optional<Ppf::Finding> ExtractPictures(const Ppf::Document& document, const std::string& folder);
}
