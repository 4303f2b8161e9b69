// The library's one class for hosts: it collects a job, sheet by sheet, and writes it as one CIP3 PPF file.
#pragma once

#include <Sheetvane/KX_ECIP3Exception.h>
#include <kxtypes.h>

#include <cstdint>
#include <memory>

#include <rasteroutput/Export.h>

namespace Sheetvane
{
    class ConverterImpl;

    /// A job and its conversion. Order of calls:
    ///     (AddSheet | SetRequiredParameters | SetOptionalParameters | SetCompression | SetEncoding | SetPreviewResolution
    ///      | SetInputResolution | SetOrientation | SetSeparationImage | SetThreads)* CreateCIP3File
    /// any number of times, where parameters, orientations and images are given to sheets that have been added, and every
    /// sheet needs its required parameters before CreateCIP3File.
    ///
    /// Host objects are read during the call and never kept. Failures are KX_ECIP3Exceptions with the texts given below,
    /// unless said otherwise; where memory does not even suffice for one, std::bad_alloc comes in its place. A failed
    /// operation takes back nothing that it has done, and the converter can be used on. A converter and everything it is
    /// given belong to one thread at a time, and one converter can exist in a process at a time: constructing and
    /// destroying included, no two threads may be inside the library. Converters may be used up to the very end of the
    /// process, in exit handlers and destructors of statics.
    class SHEETVANE_EXPORT SheetvaneConverter
    {
    public:
        /// Compression of the preview data.
        enum CIP3Compression : std::int32_t
        {
            CIP3CompressionNone = 0,
            CIP3CompressionRunLength = 1 ///< the default
        };

        /// Encoding of the preview data.
        enum CIP3Encoding : std::int32_t
        {
            CIP3EncodingBinary = 0,
            CIP3EncodingASCIIHex = 1,
            CIP3EncodingASCII85 = 2 ///< the default
        };

        /// A side of a sheet.
        enum Side : std::int32_t
        {
            FrontSide = 0,
            BackSide = 1
        };

        /// How the upright image of a file is turned: rotated counterclockwise by so many degrees and then, with Flip,
        /// mirrored top to bottom; so Flip180 mirrors left to right.
        enum Orientation : std::int32_t
        {
            Rotate0 = 0, ///< the default
            Rotate90 = 1,
            Rotate180 = 2,
            Rotate270 = 3,
            Flip0 = 4,
            Flip90 = 5,
            Flip180 = 6,
            Flip270 = 7
        };

        /// An empty job. Throws RasterOutput::Exception (<rasteroutput/Exception.h>) with "CIP3Painter painter
        /// identifier already registered" while another converter exists, and std::bad_alloc.
        SheetvaneConverter();

        /// Forgets the job and makes room for another converter. Writes nothing, throws nothing.
        ~SheetvaneConverter();
        SheetvaneConverter(const SheetvaneConverter&) = delete;
        SheetvaneConverter& operator=(const SheetvaneConverter&) = delete;

        /// Appends a sheet: per surface the names of its separations (KX_TString) and the locations of their TIFF files
        /// (KX_TURL), the n-th name for the n-th file. A side that the sheet does not have is two empty arrays. No file
        /// is opened here. Names and paths are taken up to their first zero byte and go into the output as they are:
        /// PostScript syntax in a name is the host's affair.
        ///
        /// "Could not convert input data": an element is of another class, or a location has no local name.
        /// "No input files specified": neither side has a file.
        /// "Separation names do not match file paths": a side has not as many names as files.
        /// After any of these the sheet stays in the job, as far as it was filled. Throws std::bad_alloc, and then no
        /// sheet is added, if the job cannot grow.
        void AddSheet(
            const KX_TArray& frontSeparationNames, const KX_TArray& frontFiles, const KX_TArray& backSeparationNames,
            const KX_TArray& backFiles);

        /// Names the sheet at `sheetIndex` (from 0): the strings under "CIP3AdmJobName", which may not be empty when the
        /// file is written, and "CIP3AdmSheetName", which may be empty in a job of one sheet and has 214 bytes at most.
        /// Other keys are ignored. Replaces the names of an earlier call.
        ///
        /// "Sheet index out of bounds": no such sheet; nothing has changed.
        /// "Problems reading required input parameters": a value is not a string. The names are empty, or what was read.
        void SetRequiredParameters(unsigned int sheetIndex, const KX_TDict& parameters);

        /// Further entries of the section of the sheet at `sheetIndex` (from 0), written as `/key value def` in the
        /// order of their keys. A KX_TString is PostScript text and is written unchanged, a number in decimal, floats
        /// with six digits after the point. A KX_TDict with "value" and a string "units" is written as both with a blank
        /// between; a "value" that is not a number is empty text there. Any other value, and a KX_TDict that lacks one of the
        /// two, is written as empty text, `/key  def`, which a PostScript reader refuses: leave such an entry out. The entry
        /// "CIP3AdmPSExtent" stands in place of the computed extent of the sheet, unless its text is empty. Replaces the
        /// entries of an earlier call.
        ///
        /// "Sheet index out of bounds": no such sheet; nothing has changed.
        /// "Problems reading optional input parameters": a "units" entry is not a string. The entries before it are set.
        void SetOptionalParameters(unsigned int sheetIndex, const KX_TDict& parameters);

        /// Number of sheets, those whose AddSheet failed included. Never throws.
        unsigned int GetNumSheets() const;

        /// How the previews of the whole job are compressed; what is in force when CreateCIP3File runs counts. A value
        /// outside the enumeration stands for CIP3CompressionRunLength. Never throws.
        void SetCompression(CIP3Compression compression);

        /// How they are encoded, likewise. A value outside the enumeration stands for CIP3EncodingASCII85. Never throws.
        void SetEncoding(CIP3Encoding encoding);

        // Previews from plates. A host that calls none of the following five gets every file as it is.

        /// Reduces each file that has more than `pixelsPerInch`, and more than `onlyAbove`, pixels per inch both across and
        /// down to `pixelsPerInch`; any other is kept as it is. 50.8 is the trade's custom, and with an `onlyAbove` of 300 a
        /// file that is a preview already is left alone. 0 reduces nothing, the default. Holds for the whole job; what is in
        /// force when CreateCIP3File runs counts. A pixel of a reduced preview is the exact mean of what it covers. Memory
        /// stays that of reading, and one preview per thread.
        ///
        /// "Invalid preview resolution": one of the numbers is negative, infinite or not a number; nothing has changed.
        void SetPreviewResolution(double pixelsPerInch, double onlyAbove);

        /// Takes every file of the job to have `pixelsPerInch` pixels per inch in both directions, whatever it says itself.
        /// 0: what it says, the default.
        ///
        /// "Invalid input resolution": the number is negative, infinite or not a number; nothing has changed.
        void SetInputResolution(double pixelsPerInch);

        /// Turns all files of one side of the sheet at `sheetIndex` (from 0), before they are reduced. With a quarter turn a
        /// file's image is held in memory as it is delivered, so that reduced; CreateCIP3File refuses one of over 256 MiB.
        ///
        /// "Sheet index out of bounds": no such sheet. "Invalid orientation": a value outside the enumerations. Nothing has
        /// changed after either.
        void SetOrientation(unsigned int sheetIndex, Side side, Orientation orientation);

        /// Picks one ink of a file that holds several for the separation at `separationIndex` (from 0) of one side of the
        /// sheet at `sheetIndex` (from 0): the page, every one of the TIFF's directories counted, and the channel, a sample
        /// of its pixels; both from 1, and 0 stands for 1. Both 0, the default: the file is one ink. A file without that page
        /// or channel fails in CreateCIP3File. Where separations that follow each other are channels of one page and are
        /// reduced, the page is decoded once for them, and up to 256 MiB of their previews are held.
        ///
        /// "Sheet index out of bounds": no such sheet. "Separation index out of bounds": no such separation, or a side
        /// outside the enumeration. Nothing has changed after either. Throws std::bad_alloc.
        void SetSeparationImage(
            unsigned int sheetIndex, Side side, unsigned int separationIndex, unsigned int page, unsigned int channel);

        /// How many files are read side by side where they are reduced: CreateCIP3File starts at most `count` threads of its
        /// own for it, 1 to 256, and ends them before it returns. They hold at most `count` finished previews ahead; all
        /// channels of a page that is decoded once count as one. File and failures are those of one thread. 1, the default,
        /// starts none.
        ///
        /// "Invalid number of threads": nothing has changed.
        void SetThreads(unsigned int count);

        /// Writes the job to the file at `location`, whose local name is taken as UTF-8 and has to have a folder part.
        /// Missing folders are created, an existing file is replaced. Can be called again, for the same or another
        /// location: the same job gives the same bytes.
        ///
        /// Errors while the finished document is written are not reported: on a full disk, and past a limit of file sizes,
        /// the call returns as if all were well. A host that has to know compares the file's size with its directory, or
        /// reads it back. Nor is the file brought to the disk; that is the host's affair, too.
        ///
        /// "Error creating folder for CIP3 file".
        /// "Could not open CIP3 file": no such file can be written there.
        /// "Invalid sheet parameters": an empty sheet name in a job of several sheets, one that is too long, or a sheet
        /// whose first TIFF gives it no extent above 0.
        /// "Problem converting TIFF files to CIP3": an empty job name, a sheet without a file, a TIFF that cannot be
        /// read, exhausted memory, or whatever else went wrong.
        /// What the location or the file system throw before that, for a path that cannot be looked up, comes unchanged:
        /// KX_EException, boost::filesystem::filesystem_error or std::bad_alloc.
        /// The output file is opened before the first TIFF is looked at. After a failure before that (the first two, the
        /// unchanged ones, and "Could not make painter CIP3Painter", for want of memory) an older file of that name is
        /// untouched; after any other the file is there and empty. The job is as before in each case, and folders that were
        /// created stay.
        void CreateCIP3File(const KX_TURL& location);

    private:
        std::unique_ptr<ConverterImpl> impl;
    };
}

/// Prepares the library and those it stands on; the constructor does it too. True on success. Once true, further calls
/// do nothing. Never throws.
extern "C" SHEETVANE_EXPORT bool __KX_INITIALIZATION_FUNCTION_Sheetvane__();
