#include "pdf2ppf/SeparationLines.h"

#include "host/Failure.h"

#include <cstring>
#include <new>

namespace Pdf2Ppf
{
    namespace
    {
        constexpr unsigned char Paper = 255;

        /// A file that cannot be read. The reason is looked for afterwards, by the reader's own means.
        struct FileProblem
        {
        };

        FileBlock Open(const char* name)
        {
            const FileBlock block = FileBlockAlloc(0, "STR,SEQ");
            if (block == nullptr)
            {
                throw std::bad_alloc();
            }
            if (FileBlockOpen(block, name, ".tif", 0) != 0)
            {
                FileBlockFree(block);
                throw FileProblem();
            }
            return block;
        }
    }

    void SeparationLines::ReaderEnd::operator()(RasterFeedReader* ended) const
    {
        std::int32_t scratch = 0;
        RasterFeedEnd(ended, &scratch);
    }

    SeparationLines::SeparationLines(const std::string& thePath, const RasterFeedSelection& theSelection)
        : path(thePath)
        , selection(theSelection)
    {
        RasterFeedOpenRecord record = {};
        record.callbacks = {&Open, &FileBlockSeek, &FileBlockRead, &FileBlockFree, [] {}, [] { throw FileProblem(); }};
        record.valueWords[1] = Paper;
        record.valueWords[3] = Paper;
        if (path.size() >= sizeof record.path)
        {
            Fail();
        }
        std::memcpy(record.path, path.c_str(), path.size() + 1);
        try
        {
            reader.reset(RasterFeedInit(&record));
            if (!reader || RasterFeedSelect(reader.get(), &selection) != 0 ||
                RasterFeedHeader(reader.get(), &header) != 0)
            {
                Fail();
            }
        }
        catch (const FileProblem&)
        {
            Fail();
        }
        line.resize(header.lineLength);
    }

    const std::vector<unsigned char>& SeparationLines::Next()
    {
        try
        {
            unsigned char* const lines[] = {line.data()};
            if (RasterFeedLine(reader.get(), lines, 1) != 0)
            {
                Fail();
            }
        }
        catch (const FileProblem&)
        {
            Fail();
        }
        return line;
    }

    void SeparationLines::Fail() const
    {
        const std::string reason = RasterFeedProbe(path, RasterFeedDepth::Lines, selection).reason;
        throw Host::Failure(reason.empty() ? path + ": it could not be read at first, and can be now" : reason);
    }
}
