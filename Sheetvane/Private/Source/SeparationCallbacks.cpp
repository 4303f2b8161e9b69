// The callbacks hold no state: a block is all that goes from one to the next.
#include "frontend/SeparationCallbacks.h"

#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"

namespace Sheetvane
{
    FileBlock OpenSeparationFile(const char* name)
    {
        const FileBlock block = FileBlockAlloc(0, "STR,SEQ");
        if (block == nullptr)
        {
            ThrowFailure(FailureText::NoFileHandle, __LINE__);
        }
        FileBlockOpen(block, name, ".tif", 0);
        return block;
    }

    std::int64_t SeekSeparationFile(FileBlock block, std::uint32_t position)
    {
        return FileBlockSeek(block, position);
    }

    std::int32_t CloseSeparationFile(FileBlock block)
    {
        FileBlockClose(block);
        return FileBlockFree(block);
    }

    void IgnoreSeparationEvent() {}

    void FailSeparationRead()
    {
        ThrowFailure(FailureText::FileAccessFailed, __LINE__);
    }
}
