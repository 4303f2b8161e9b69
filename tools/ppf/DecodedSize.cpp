#include "ppf/DecodedSize.h"

#include "ppf/EncodedSource.h"
#include "ppf/Keywords.h"
#include "ppf/RunLengthLanes.h"
#include "ppf/RunLengthToken.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace Ppf
{
    namespace
    {
        /// Encoded bytes that are looked at together.
        constexpr std::size_t BlockBytes = 256u << 10;

        /// Adds up the runs of data that comes in blocks.
        class RunCounter
        {
        public:
            void Add(std::string_view block)
            {
                std::size_t at = std::min(cut, block.size());
                cut -= at;
                if (cut > 0 || size.hasEndMark)
                {
                    size.bytesAfterMark += size.hasEndMark ? block.size() : 0;
                    return;
                }
                const RunLengthPlace place = PassTokens(block, at, std::numeric_limits<std::uint64_t>::max());
                size.bytes += place.passed;
                for (at = place.at; at < block.size() && !size.hasEndMark;)
                {
                    const auto length = static_cast<unsigned char>(block[at]);
                    if (length == Filter::RunLengthEnd)
                    {
                        size.hasEndMark = true;
                        size.bytesAfterMark = block.size() - at - 1;
                        return;
                    }
                    const RunLengthToken token(length);
                    size.bytes += token.Run();
                    at += 1 + token.DataBytes();
                }
                cut = at - std::min(at, block.size());
            }

            const DecodedSize& Size() const { return size; }
            bool IsWithinRun() const { return cut > 0; }

        private:
            DecodedSize size;
            /// Bytes of the last token that are still to come.
            std::size_t cut = 0;
        };
    }

    DecodedSize CountDecoded(const Document& document, const Preview& preview)
    {
        const bool isRunLength = preview.compression == Compression::RunLength;
        RunCounter runs;
        DecodedSize plain;
        if (preview.encoding == Encoding::Binary)
        {
            plain.bytes = preview.data.size();
            if (isRunLength)
            {
                runs.Add(preview.data);
            }
        }
        else
        {
            const std::unique_ptr<ByteSource> encoded = MakeEncodedSource(document, preview);
            std::vector<unsigned char> block(BlockBytes);
            for (std::size_t got = BlockBytes; got == BlockBytes;)
            {
                got = encoded->Read(block.data(), BlockBytes);
                plain.bytes += got;
                if (isRunLength)
                {
                    runs.Add({reinterpret_cast<const char*>(block.data()), got});
                }
            }
        }
        if (runs.IsWithinRun())
        {
            throw FormatError(
                document.OffsetOf(preview.data) + preview.data.size(), "run-length data ends within a run");
        }
        return isRunLength ? runs.Size() : plain;
    }
}
