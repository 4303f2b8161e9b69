// The checksum of what was decoded against the one in the file; where they differ, as they do if a strip holds more rows
// than the image, all of the data is decoded once more to its end.
#include "rasterfeed/DeflateCheck.h"

#include "rasterfeed/ChunkDecoding.h"
#include "rasterfeed/Refusal.h"
#include "rasterfeed/TiffFile.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace RasterFeed
{
    namespace
    {
        constexpr std::uint32_t EmptyChecksum = 1; // Adler-32 of no bytes
        constexpr std::size_t ChecksumBytes = 4;   // at the end of the data, highest byte first

        // Bytes handled at once; an even number.
        constexpr std::size_t PieceBytes = std::size_t{32} * 1024;

        /// Writes `bytes` bytes of `row` from `begin` on as differences of samples from the same one of the pixel before, which
        /// is how predictor 2 stores them.
        template <class Sample>
        void Difference(
            const unsigned char* row, std::size_t begin, std::size_t bytes, std::size_t pixelBytes, unsigned char* to)
        {
            for (std::size_t i = begin; i < begin + bytes; i += sizeof(Sample))
            {
                Sample sample;
                Sample before = 0;
                std::memcpy(&sample, row + i, sizeof sample);
                if (i >= pixelBytes)
                {
                    std::memcpy(&before, row + i - pixelBytes, sizeof before);
                }
                const auto difference = static_cast<Sample>(sample - before);
                std::memcpy(to + i - begin, &difference, sizeof difference);
            }
        }
    }

    DeflateCheck::DeflateCheck(TiffFile& tiff, const SeparationForm& imageForm)
        : file(tiff)
        , form(imageForm)
        , checksum(EmptyChecksum)
    {
    }

    void DeflateCheck::Take(const unsigned char* rows, std::uint64_t bytes)
    {
        taken += bytes;
        if (!form.differences && !(form.bits == 16 && form.byteSwapped))
        {
            checksum = libdeflate_adler32(checksum, rows, static_cast<std::size_t>(bytes));
            return;
        }
        const auto rowBytes = static_cast<std::size_t>(form.ChunkRowBytes());
        for (std::uint64_t done = 0; done < bytes; done += rowBytes)
        {
            TakeRow(rows + done, rowBytes);
        }
    }

    void DeflateCheck::TakeRow(const unsigned char* row, std::size_t bytes)
    {
        unsigned char stored[PieceBytes];
        const std::size_t pixelBytes = std::size_t{form.samples} * form.bits / 8;
        for (std::size_t done = 0; done < bytes; done += PieceBytes)
        {
            const std::size_t count = std::min(PieceBytes, bytes - done);
            if (!form.differences)
            {
                std::memcpy(stored, row + done, count);
            }
            else if (form.bits == 16)
            {
                Difference<std::uint16_t>(row, done, count, pixelBytes, stored);
            }
            else
            {
                Difference<std::uint8_t>(row, done, count, pixelBytes, stored);
            }
            if (form.bits == 16 && form.byteSwapped)
            {
                for (std::size_t i = 0; i < count; i += 2)
                {
                    std::swap(stored[i], stored[i + 1]);
                }
            }
            checksum = libdeflate_adler32(checksum, stored, count);
        }
    }

    void DeflateCheck::Finish(std::uint32_t chunk)
    {
        const std::uint64_t begin = file.ChunkOffset(chunk);
        const std::uint64_t end = begin + file.ChunkBytes(chunk);
        if (!EndsInChecksum(end) && !InflatesWhole(begin, end))
        {
            throw Refusal(
                "Deflate data that ends early or is damaged, by its checksum; image data that is all there is needed");
        }
        checksum = EmptyChecksum;
        taken = 0;
    }

    bool DeflateCheck::EndsInChecksum(std::uint64_t end)
    {
        unsigned char stated[ChecksumBytes];
        ReadStored(file, form, end - std::min<std::uint64_t>(end, ChecksumBytes), stated, ChecksumBytes);
        std::uint32_t number = 0;
        for (const unsigned char byte : stated)
        {
            number = number << 8 | byte;
        }
        return number == checksum;
    }

    bool DeflateCheck::InflatesWhole(std::uint64_t begin, std::uint64_t end)
    {
        z_stream stream = {};
        if (inflateInit(&stream) != Z_OK)
        {
            throw std::bad_alloc();
        }
        const std::unique_ptr<z_stream, decltype(&inflateEnd)> owner(&stream, inflateEnd);
        unsigned char input[PieceBytes];
        unsigned char output[PieceBytes];
        std::uint64_t inflated = 0;
        int result = Z_OK;
        for (std::uint64_t at = begin; result == Z_OK && at < end;)
        {
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(PieceBytes, end - at));
            ReadStored(file, form, at, input, count);
            at += count;
            stream.next_in = input;
            stream.avail_in = static_cast<uInt>(count);
            do
            {
                stream.next_out = output;
                stream.avail_out = sizeof output;
                result = inflate(&stream, Z_NO_FLUSH);
                inflated += sizeof output - stream.avail_out;
            } while (result == Z_OK && (stream.avail_in != 0 || stream.avail_out == 0));
            result = result == Z_BUF_ERROR ? Z_OK : result; // no progress without more input
        }
        return result == Z_STREAM_END && inflated >= taken;
    }
}
