// A look at a TIFF without a host's reader: the same road as a reader's, with the reasons kept.

#include "rasterfeed/Inks.h"
#include "rasterfeed/Refusal.h"
#include "rasterfeed/SeparationReader.h"

#include <RasterFeedLib.h>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace RasterFeed
{
    namespace
    {
        constexpr const char* DefaultExtension = ".tif";
        constexpr const char* NeededFile = "; a readable TIFF file of up to 4294967295 bytes is needed";

        /// A block that is freed with its scope.
        class OwnedBlock
        {
        public:
            OwnedBlock()
                : block(FileBlockAlloc(0, "STR,SEQ"))
            {
                if (block == nullptr)
                {
                    throw std::bad_alloc();
                }
            }
            OwnedBlock(const OwnedBlock&) = delete;
            OwnedBlock& operator=(const OwnedBlock&) = delete;
            ~OwnedBlock() { FileBlockFree(block); }

            FileBlock Get() const { return block; }
            FileBlock Release() { return std::exchange(block, nullptr); }

        private:
            FileBlock block;
        };

        [[noreturn]] void RefuseFile(FileBlock block)
        {
            throw Refusal(FileBlockProblem(block) + NeededFile);
        }

        FileBlock OpenOrRefuse(const char* name)
        {
            OwnedBlock block;
            if (FileBlockOpen(block.Get(), name, DefaultExtension, 0) != 0)
            {
                RefuseFile(block.Get());
            }
            return block.Release();
        }

        std::int64_t SeekOrRefuse(FileBlock block, std::uint32_t position)
        {
            const std::int64_t left = FileBlockSeek(block, position);
            if (left < 0)
            {
                RefuseFile(block);
            }
            return left;
        }

        std::int64_t ReadOrRefuse(FileBlock block, void* buffer, std::uint32_t size)
        {
            const std::int64_t count = FileBlockRead(block, buffer, size);
            if (count < 0)
            {
                RefuseFile(block);
            }
            return count;
        }

        constexpr RasterFeedCallbacks RefusingCallbacks = {OpenOrRefuse,  SeekOrRefuse, ReadOrRefuse,
                                                           FileBlockFree, [] {},        [] {}};

        /// The name that the default extension may have been appended to.
        std::string OpenedName(const std::string& path)
        {
            const OwnedBlock block;
            FileBlockOpen(block.Get(), path.c_str(), DefaultExtension, 0);
            std::string name = FileBlockName(block.Get());
            if (name.empty() && !path.empty())
            {
                throw std::bad_alloc(); // before any name was tried
            }
            return name;
        }

        /// `text` on one line: what would end or colour it becomes '?'.
        std::string OneLine(std::string text)
        {
            std::replace_if(
                text.begin(), text.end(),
                [](char c)
                {
                    const auto byte = static_cast<unsigned char>(c);
                    return byte < 0x20 || byte == 0x7f;
                },
                '?');
            return text;
        }

        RasterFeedDescription
        Describe(const std::string& path, RasterFeedDepth depth, const RasterFeedSelection& selection)
        {
            RasterFeedDescription description = {};
            const std::string name = OpenedName(path);
            try
            {
                SeparationReader reader(RefusingCallbacks, name.c_str());
                reader.ReadHeader(selection);
                if (depth == RasterFeedDepth::Lines)
                {
                    std::vector<unsigned char> line(reader.Width());
                    for (std::uint32_t i = 0; i < reader.Height(); ++i)
                    {
                        reader.ReadLine(line.data());
                    }
                }
                description.accepted = true;
                description.width = reader.Width();
                description.height = reader.Height();
                description.resolution = ResolutionOf(reader.Width(), reader.Units());
                const View& view = reader.Shown();
                description.isReduced = view.isReduced;
                description.sharesDecoding = reader.SharesDecoding();
                description.inputWidth = view.across.pixels;
                description.inputHeight = view.down.pixels;
                description.inputAcross = view.across.resolution;
                description.inputDown = view.down.resolution;
            }
            catch (const Refusal& refusal)
            {
                description.reason = OneLine(name + ": " + refusal.what());
            }
            return description;
        }
    }
}

RasterFeedDescription
RasterFeedProbe(const std::string& path, RasterFeedDepth depth, const RasterFeedSelection& selection)
{
    return RasterFeed::Describe(path, depth, selection);
}

RasterFeedInkList RasterFeedInks(const std::string& path)
{
    RasterFeedInkList list;
    const std::string name = RasterFeed::OpenedName(path);
    try
    {
        RasterFeed::SourceFile source(RasterFeed::RefusingCallbacks, name.c_str());
        RasterFeed::TiffFile file(source);
        list.inks = RasterFeed::InksOf(file);
    }
    catch (const RasterFeed::Refusal& refusal)
    {
        list.reason = RasterFeed::OneLine(name + ": " + refusal.what());
    }
    return list;
}
