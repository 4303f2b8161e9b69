#include "ppf/DCTSource.h"

#include "ppf/Failure.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include <jerror.h>
#include <jpeglib.h>

namespace Ppf
{
    namespace
    {
        constexpr std::size_t BlockSize = 64u << 10;
        /// What libjpeg may take for a progressive picture, in bytes, beside the size of the decoded one; and the
        /// growth up to which that size counts.
        constexpr std::uint64_t WorkingMemory = 40u << 20;
        constexpr std::uint64_t UsualGrowth = 64;
        /// Passes over the picture that a progressive file may make. Encoders make about ten; each costs the time of a
        /// whole picture, however few bytes it has.
        constexpr int MostScans = 64;
    }

    /// The state that libjpeg's callbacks see. No exception passes through libjpeg: what a callback catches waits here
    /// until libjpeg was left by longjmp. Between setjmp and longjmp no object with a destructor is alive but this one.
    class DCTSource::Decoder
    {
    public:
        Decoder(std::unique_ptr<ByteSource> theEncoded, const Preview& preview)
            : encoded(std::move(theEncoded))
            , width(preview.width)
            , height(preview.height)
            , components(preview.components)
            , memory(WorkingMemory + std::min(preview.StoredBytes(), preview.data.size() * UsualGrowth))
        {
            jpeg.err = jpeg_std_error(&errors);
            jpeg.client_data = this;
            errors.error_exit = &Decoder::OnError;
            errors.emit_message = &Decoder::OnMessage;
            input.init_source = [](j_decompress_ptr) {};
            input.fill_input_buffer = &Decoder::OnFill;
            input.skip_input_data = &Decoder::OnSkip;
            input.resync_to_restart = jpeg_resync_to_restart;
            input.term_source = [](j_decompress_ptr) {};
            progress.progress_monitor = &Decoder::OnProgress;
        }

        ~Decoder() { jpeg_destroy_decompress(&jpeg); }
        Decoder(const Decoder&) = delete;
        Decoder& operator=(const Decoder&) = delete;

        std::size_t Read(unsigned char* out, std::size_t count)
        {
            if (!Run(out, count))
            {
                if (failure)
                {
                    std::rethrow_exception(std::exchange(failure, nullptr));
                }
                if (jpeg.err->msg_code == JERR_OUT_OF_MEMORY)
                {
                    throw std::bad_alloc();
                }
                throw FormatError(Offset(), "DCT data: " + std::string(message));
            }
            return read;
        }

        std::uint64_t Offset() const { return encoded->Offset(); }

    private:
        /// Everything that may end in longjmp. False if it did.
        bool Run(unsigned char* out, std::size_t count)
        {
            read = 0;
            if (setjmp(escape) != 0)
            {
                return false;
            }
            if (!started)
            {
                Start();
            }
            const std::size_t row = static_cast<std::size_t>(width) * components;
            while (read + row <= count && jpeg.output_scanline < jpeg.output_height)
            {
                JSAMPROW rows[] = {out + read};
                read += row * jpeg_read_scanlines(&jpeg, rows, 1);
            }
            return true;
        }

        void Start()
        {
            started = true;
            jpeg_create_decompress(&jpeg);
            jpeg.src = &input;
            jpeg.progress = &progress;
            jpeg.mem->max_memory_to_use = static_cast<long>(memory);
            jpeg_read_header(&jpeg, TRUE);
            if (jpeg.image_width != width || jpeg.image_height != height)
            {
                Fail("the picture's size is not width x height of the preview");
            }
            if (static_cast<unsigned>(jpeg.num_components) != components)
            {
                Fail("the picture has another number of components than the preview");
            }
            if (jpeg.arith_code)
            {
                Fail("arithmetic coding is not part of the filter");
            }
            jpeg.out_color_space = components == 1 ? JCS_GRAYSCALE : JCS_CMYK;
            jpeg_start_decompress(&jpeg);
        }

        static Decoder& Of(j_common_ptr jpeg) { return *static_cast<Decoder*>(jpeg->client_data); }

        [[noreturn]] void Fail(const char* theMessage)
        {
            std::snprintf(message, sizeof message, "%s", theMessage);
            std::longjmp(escape, 1);
        }

        [[noreturn]] static void OnError(j_common_ptr jpeg)
        {
            jpeg->err->format_message(jpeg, Of(jpeg).message);
            std::longjmp(Of(jpeg).escape, 1);
        }

        /// A warning ends the decoding, since libjpeg goes on with invented pixels, but for those about mere form.
        static void OnMessage(j_common_ptr jpeg, int level)
        {
            const int code = jpeg->err->msg_code;
            if (level < 0 && code != JWRN_ADOBE_XFORM && code != JWRN_JFIF_MAJOR && code != JWRN_EXTRANEOUS_DATA)
            {
                OnError(jpeg);
            }
        }

        static boolean OnFill(j_decompress_ptr jpeg)
        {
            Decoder& decoder = Of(reinterpret_cast<j_common_ptr>(jpeg));
            std::size_t got = 0;
            try
            {
                got = decoder.encoded->Read(decoder.block.data(), decoder.block.size());
            }
            catch (...)
            {
                decoder.failure = std::current_exception();
            }
            if (decoder.failure)
            {
                std::longjmp(decoder.escape, 1);
            }
            if (got == 0)
            {
                decoder.Fail("the picture is cut off");
            }
            decoder.input.next_input_byte = decoder.block.data();
            decoder.input.bytes_in_buffer = got;
            return TRUE;
        }

        static void OnSkip(j_decompress_ptr jpeg, long count)
        {
            jpeg_source_mgr& input = *jpeg->src;
            auto left = static_cast<std::size_t>(count > 0 ? count : 0);
            while (left > input.bytes_in_buffer)
            {
                left -= input.bytes_in_buffer;
                OnFill(jpeg);
            }
            input.next_input_byte += left;
            input.bytes_in_buffer -= left;
        }

        static void OnProgress(j_common_ptr jpeg)
        {
            if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > MostScans)
            {
                Of(jpeg).Fail("the picture has more scans than any encoder makes");
            }
        }

        std::unique_ptr<ByteSource> encoded;
        const std::uint64_t width;
        const std::uint64_t height;
        const unsigned components;
        const std::uint64_t memory;
        jpeg_decompress_struct jpeg = {};
        jpeg_error_mgr errors = {};
        jpeg_source_mgr input = {};
        jpeg_progress_mgr progress = {};
        std::array<unsigned char, BlockSize> block = {};
        std::jmp_buf escape = {};
        char message[JMSG_LENGTH_MAX] = {};
        std::exception_ptr failure;
        std::size_t read = 0;
        bool started = false;
    };

    DCTSource::DCTSource(std::unique_ptr<ByteSource> encoded, const Preview& preview)
        : decoder(std::make_unique<Decoder>(std::move(encoded), preview))
    {
    }

    DCTSource::~DCTSource() = default;

    std::size_t DCTSource::Read(unsigned char* out, std::size_t count)
    {
        return decoder->Read(out, count);
    }

    std::uint64_t DCTSource::Offset() const
    {
        return decoder->Offset();
    }
}
