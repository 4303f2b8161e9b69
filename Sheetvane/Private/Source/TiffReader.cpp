// The record that a reader is opened with.
#include "frontend/TiffReader.h"

#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/SeparationCallbacks.h"

#include <cstring>

namespace Sheetvane
{
    RasterFeedHandle OpenTiffReader(const std::string& path)
    {
        RasterFeedOpenRecord record; // NOLINT(cppcoreguidelines-pro-type-member-init): what is reserved is not ours
        if (path.size() >= sizeof record.path)
        {
            ThrowFailure(FailureText::TiffNotOpened, __LINE__);
        }

        std::memcpy(record.path, path.c_str(), path.size() + 1);
        record.callbacks = SeparationCallbacks;
        record.valueWords[0] = 0;
        record.valueWords[1] = 255;
        record.valueWords[2] = 0;
        record.valueWords[3] = 255;
        record.word1 = 0;
        record.word2 = 0;
        record.word3 = 0;
        record.text[0] = '\0';

        const RasterFeedHandle reader = RasterFeedInit(&record);
        if (reader == nullptr)
        {
            ThrowFailure(FailureText::TiffNotOpened, __LINE__);
        }
        return reader;
    }

    TiffReaderGuard::~TiffReaderGuard()
    {
        std::int32_t scratch; // NOLINT(cppcoreguidelines-init-variables): the reader's own
        RasterFeedEnd(reader, &scratch);
    }
}
