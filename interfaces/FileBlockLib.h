// Block access to one file for reading, as the callbacks of a TIFF reader use it.
//
// Calls on a block: FileBlockAlloc FileBlockOpen? (FileBlockSeek | FileBlockRead)* FileBlockClose? FileBlockFree
#pragma once

#include <cstdint>
#include <string>

/// Handle of one file. Owned by whoever called FileBlockAlloc, until FileBlockFree.
struct FileBlockRecord;
using FileBlock = FileBlockRecord*;

/// A new block without a file. `access` describes the use to come ("STR,SEQ": a stream, read in sequence, for which the
/// system is told to read ahead). Null if memory is exhausted. Never throws; nor do the operations below, unless they
/// say so.
FileBlock FileBlockAlloc(std::uint32_t flags, const char* access);

/// Opens `name` (zero-terminated bytes) for reading. A name without an extension is looked for with
/// `defaultExtension` appended first, and as it stands if there is no such file. Only a regular file of at most
/// 4294967295 bytes opens; a pipe or a device is refused without waiting for it.
/// 0 on success, -1 on failure; a block that failed to open stays safe for every other operation.
std::int32_t FileBlockOpen(FileBlock block, const char* name, const char* defaultExtension, std::uint32_t flags);

/// Sets the read position, in bytes from the start of the file. Gives the number of bytes from there to the file's
/// present end (0 at or after the end), or -1 if the block has no open file.
std::int64_t FileBlockSeek(FileBlock block, std::uint32_t position);

/// Reads up to `size` bytes at the read position into `buffer` and moves the position past them. Gives the number
/// of bytes read, less than `size` only at the end of the file, or -1 on an error. Interrupted and short reads of the
/// system are continued.
std::int64_t FileBlockRead(FileBlock block, void* buffer, std::uint32_t size);

/// Closes the file, if one is open. 0 on success, -1 if the system reported an error; the file is closed either way.
std::int32_t FileBlockClose(FileBlock block);

/// Ends the block; closes its file if that is still open. Null is allowed. Always 0.
std::int32_t FileBlockFree(FileBlock block);

/// The name the block's file was opened under, with the default extension if that was taken; after a failure the name
/// that was tried last. Throws std::bad_alloc.
std::string FileBlockName(FileBlock block);

/// Why the last operation on `block` failed, in words for a person ("No such file or directory"); empty if none
/// failed. Throws std::bad_alloc.
std::string FileBlockProblem(FileBlock block);
