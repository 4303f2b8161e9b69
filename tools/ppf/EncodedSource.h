// The first link of a chain of decoders: preview data in any encoding as the bytes that were encoded.
#pragma once

#include "ppf/ByteSource.h"
#include "ppf/Document.h"

namespace Ppf
{
    std::unique_ptr<ByteSource> MakeEncodedSource(const Document& document, const Preview& preview);
}
