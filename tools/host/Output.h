// Where a file goes that a program writes, the same for all programs. Whatever the output is, a draft is written first,
// and only a finished one is published: a regular file appears whole or not at all, and a device or pipe gets the bytes
// of a whole file.
#pragma once

#include "host/DescriptorStream.h"
#include "host/Draft.h"

#include <optional>
#include <string>

#include <sys/stat.h>

namespace Host
{
    /// Whether a published file has to outlive a power cut.
    enum class Durability
    {
        OnDisk, ///< file and name are on the disk when Publish returns
        Scratch ///< the system writes them when it likes
    };

    /// Calls: Output (Stream | Path | File)* Publish. Without Publish the place stays as it is and nothing is left.
    class Output
    {
    public:
        /// The output at `place`: a path, or "-" for standard output. Missing folders are made. Links are followed, also
        /// one to a file that does not exist, so that they stay. A regular file, or one that does not exist yet, has its
        /// draft beside its place. Anything else gets the bytes of a draft in the folder for temporary files (TMPDIR, else
        /// /tmp) that has no name; a pipe is opened here, which waits for its reader, and standard output stays open.
        /// Throws Failure if it can be seen at once that nothing may be written there.
        Output(const std::string& place, Durability theDurability);
        ~Output();
        Output(const Output&) = delete;
        Output& operator=(const Output&) = delete;

        /// The output for a person.
        const std::string& Name() const { return name; }

        /// The draft for what writes by a stream, by a path, or by a descriptor. One of them is used.
        std::ostream& Stream();
        std::string Path() const { return draft->Path(); }
        int File() const { return draft->Number(); }

        /// Puts the draft in its place. A file that is replaced passes on its permissions, and its owner where the system
        /// allows that; the rights of a group that cannot be passed on are dropped. Throws Failure; then a regular file is
        /// as it was, unless the text says that the new one is in its place.
        void Publish();

        /// Why the draft cannot be written, as "No space left on device"; empty if it can. Tries it by lengthening it.
        std::string ObstacleToWriting() const;

    private:
        void ChooseFile(const std::string& place);
        void ChooseStream(const std::string& place, const struct stat& status);
        void TakeOverPermissions() const;
        void CopyToStream();
        [[noreturn]] void Fail(const std::string& why) const;

        std::string name;
        Durability durability;
        std::string path;                       ///< of the file, at the end of the links; empty for a stream
        std::optional<struct stat> replaced;    ///< the status of the file that is there now
        Descriptor stream;                      ///< open if the output is not a regular file
        std::optional<Draft> draft;             ///< always there once constructed
        std::optional<DescriptorStream> writer; ///< made by Stream
    };
}
