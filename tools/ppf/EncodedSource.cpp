#include "ppf/EncodedSource.h"

#include "ppf/ASCII85Source.h"
#include "ppf/ASCIIHexSource.h"
#include "ppf/BinarySource.h"

namespace Ppf
{
    std::unique_ptr<ByteSource> MakeEncodedSource(const Document& document, const Preview& preview)
    {
        const EncodedText data = {preview.data, document.OffsetOf(preview.data), 0};
        switch (preview.encoding)
        {
        case Encoding::AsciiHex:
            return std::make_unique<ASCIIHexSource>(data);
        case Encoding::Ascii85:
            return std::make_unique<ASCII85Source>(data);
        default:
            return std::make_unique<BinarySource>(data);
        }
    }
}
