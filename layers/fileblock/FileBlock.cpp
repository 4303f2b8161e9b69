// The block operations on files of the system: a position, and a descriptor that reads at positions.

#include "fileblock/FileDescriptor.h"

#include <FileBlockLib.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>

struct FileBlockRecord
{
    FileBlocks::FileDescriptor file;
    std::uint64_t position = 0;   ///< of the next read, bytes from the start
    bool sequential = false;      ///< the file will be read from front to back
    std::string name;             ///< the name the file was opened under, or that of the last attempt
    bool memoryExhausted = false; ///< the last opening failed for want of memory
};

namespace FileBlocks
{
    namespace
    {
        bool IsMissing(const FileDescriptor& file)
        {
            return file.LastFailure() == FileDescriptor::Failure::System &&
                   (file.SystemError() == ENOENT || file.SystemError() == ENAMETOOLONG);
        }

        bool OpenNamed(FileBlockRecord& block, std::string name)
        {
            block.name = std::move(name);
            return block.file.Open(block.name.c_str(), block.sequential);
        }

        std::string Describe(const FileBlockRecord& block)
        {
            if (block.memoryExhausted)
            {
                return "memory is exhausted";
            }
            switch (block.file.LastFailure())
            {
            case FileDescriptor::Failure::NotRegular:
                return "not a regular file";
            case FileDescriptor::Failure::TooLarge:
                return "larger than 4294967295 bytes";
            case FileDescriptor::Failure::System:
                return std::generic_category().message(block.file.SystemError());
            case FileDescriptor::Failure::None:
                break;
            }
            return block.file.IsOpen() ? "" : "no file is open";
        }
    }
}

FileBlock FileBlockAlloc(std::uint32_t, const char* access)
{
    const FileBlock block = new (std::nothrow) FileBlockRecord;
    if (block != nullptr)
    {
        block->sequential = access != nullptr && std::strstr(access, "SEQ") != nullptr;
    }
    return block;
}

std::int32_t FileBlockOpen(FileBlock block, const char* name, const char* defaultExtension, std::uint32_t)
{
    try
    {
        block->position = 0;
        block->memoryExhausted = false;
        if (defaultExtension != nullptr && !std::filesystem::path(name).has_extension())
        {
            if (FileBlocks::OpenNamed(*block, std::string(name) + defaultExtension))
            {
                return 0;
            }
            if (!FileBlocks::IsMissing(block->file))
            {
                return -1;
            }
        }
        return FileBlocks::OpenNamed(*block, name) ? 0 : -1;
    }
    catch (const std::bad_alloc&)
    {
        block->file.Close();
        block->memoryExhausted = true;
        return -1;
    }
}

std::int64_t FileBlockSeek(FileBlock block, std::uint32_t position)
{
    if (!block->file.IsOpen())
    {
        return -1;
    }
    const std::int64_t size = block->file.Size();
    if (size < 0)
    {
        return -1;
    }
    block->position = position;
    return size > position ? size - position : 0;
}

std::int64_t FileBlockRead(FileBlock block, void* buffer, std::uint32_t size)
{
    if (!block->file.IsOpen())
    {
        return -1;
    }
    const std::int64_t count = block->file.ReadAt(block->position, buffer, size);
    if (count > 0)
    {
        block->position += static_cast<std::uint64_t>(count);
    }
    return count;
}

std::int32_t FileBlockClose(FileBlock block)
{
    return block->file.Close() ? 0 : -1;
}

std::int32_t FileBlockFree(FileBlock block)
{
    delete block;
    return 0;
}

std::string FileBlockName(FileBlock block)
{
    return block->name;
}

std::string FileBlockProblem(FileBlock block)
{
    return FileBlocks::Describe(*block);
}
