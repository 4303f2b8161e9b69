#include "tests/Sheetvane/FakeReader.h"

#include <RasterFeedLib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <sstream>

struct FileBlockRecord
{
};

struct RasterFeedReader
{
    RasterFeedCallbacks callbacks = {};
    FileBlock block = nullptr;
    SheetvaneTest::FakeSeparation separation;
    std::uint32_t nextLine = 0;
};

namespace SheetvaneTest
{
    FakeReader& FakeReader::Instance()
    {
        static FakeReader reader;
        return reader;
    }
}

using SheetvaneTest::FakeReader;
using Trouble = SheetvaneTest::FakeSeparation::Trouble;

FileBlock FileBlockAlloc(std::uint32_t flags, const char* access)
{
    FakeReader& fake = FakeReader::Instance();
    if (fake.blocksRunOut)
    {
        return nullptr;
    }
    fake.log += "alloc " + std::to_string(flags) + ' ' + access + '\n';
    ++fake.openBlocks;
    return new FileBlockRecord;
}

std::int32_t FileBlockOpen(FileBlock, const char* name, const char* defaultExtension, std::uint32_t flags)
{
    FakeReader::Instance().log +=
        std::string("open ") + name + ' ' + defaultExtension + ' ' + std::to_string(flags) + '\n';
    return -1;
}

std::int64_t FileBlockSeek(FileBlock, std::uint32_t)
{
    return -1;
}

std::int64_t FileBlockRead(FileBlock, void*, std::uint32_t)
{
    return -1;
}

std::int32_t FileBlockClose(FileBlock)
{
    FakeReader::Instance().log += "close\n";
    return 5;
}

std::int32_t FileBlockFree(FileBlock block)
{
    FakeReader::Instance().log += "free\n";
    --FakeReader::Instance().openBlocks;
    delete block;
    return 6;
}

RasterFeedHandle RasterFeedInit(const RasterFeedOpenRecord* record)
{
    FakeReader& fake = FakeReader::Instance();
    fake.log += "init\n";
    const auto found = fake.separations.find(record->path);
    if (found == fake.separations.end() || found->second.trouble == Trouble::NullReader)
    {
        return nullptr;
    }
    const FileBlock block = record->callbacks.open(record->path);
    ++fake.openReaders;
    return new RasterFeedReader{record->callbacks, block, found->second, 0};
}

std::int32_t RasterFeedSelect(RasterFeedHandle, const RasterFeedSelection* selection)
{
    std::ostringstream view;
    view << selection->resolution << ' ' << selection->reduceAbove << ' ' << selection->inputResolution << ' '
         << static_cast<int>(selection->orientation);
    FakeReader::Instance().log += "select " + view.str() + '\n';
    return FakeReader::Instance().selectionFails ? -1 : 0;
}

std::int32_t RasterFeedSelectChannels(
    RasterFeedHandle reader, const RasterFeedSelection* selection, const std::uint32_t* channels, std::uint32_t count)
{
    std::ostringstream choice;
    choice << "page " << selection->page << " channels";
    std::for_each(channels, channels + count, [&](std::uint32_t channel) { choice << ' ' << channel; });
    FakeReader::Instance().log += choice.str() + '\n';
    return RasterFeedSelect(reader, selection);
}

RasterFeedDescription RasterFeedProbe(const std::string&, RasterFeedDepth, const RasterFeedSelection&)
{
    return {};
}

std::int32_t RasterFeedHeader(RasterFeedHandle reader, RasterFeedImageHeader* header)
{
    const SheetvaneTest::FakeSeparation& separation = reader->separation;
    if (separation.trouble == Trouble::HeaderCallsFailure)
    {
        reader->callbacks.failure();
    }
    header->unitsPerInch = separation.unitsPerInch;
    header->widthExtent = separation.widthExtent;
    header->lineCount = separation.lineCount;
    header->lineLength = separation.lineLength;
    return separation.trouble == Trouble::HeaderFails ? 1 : 0;
}

std::int32_t RasterFeedLine(RasterFeedHandle reader, unsigned char* const* lines, std::uint32_t count)
{
    const std::uint32_t number = reader->nextLine++;
    const SheetvaneTest::FakeSeparation& separation = reader->separation;
    if (count != 1 || (separation.trouble == Trouble::LineFails && number == separation.troubleAtLine))
    {
        return -1;
    }
    if (number < separation.lines.size())
    {
        std::memcpy(lines[0], separation.lines[number].data(), separation.lineLength);
    }
    else
    {
        std::memset(lines[0], 255, separation.lineLength);
    }
    return 0;
}

void RasterFeedEnd(RasterFeedHandle reader, std::int32_t* scratch)
{
    const std::unique_ptr<RasterFeedReader> ended(reader);
    *scratch = -1;
    --FakeReader::Instance().openReaders;
    ended->callbacks.close(ended->block);
}
