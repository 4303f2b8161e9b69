// libjpeg's source manager and error handling around its scan lines.
#include "ppf/DCTSource.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>

#include <jerror.h>
#include <jpeglib.h>

#include "ppf/Failure.h"

namespace ppf
{
    namespace
    {
        constexpr std::size_t blockSize = 64u << 10;
        /// What libjpeg may take for a progressive picture, in bytes, beside the size of the decoded one; and the
        /// growth up to which that size counts.
        constexpr std::uint64_t workingMemory = 40u << 20;
        constexpr std::uint64_t usualGrowth = 64;
        /// Passes over the picture that a progressive file may make. Encoders make about ten; each costs the time of a
        /// whole picture, however few bytes it has.
        constexpr int mostScans = 64;
    }

    /// The state that libjpeg's callbacks see. No exception passes through libjpeg: what a callback catches waits here
    /// until libjpeg was left by longjmp. Between setjmp and longjmp no object with a destructor is alive but this one.
    class DCTSource::Decoder
    {
    public:
        Decoder(std::unique_ptr<ByteSource> encoded, const Preview& preview)
            : m_encoded(std::move(encoded))
            , m_width(preview.width)
            , m_height(preview.height)
            , m_components(preview.components)
            , m_memory(workingMemory + std::min(preview.StoredBytes(), preview.data.size() * usualGrowth))
        {
            m_jpeg.err = jpeg_std_error(&m_errors);
            m_jpeg.client_data = this;
            m_errors.error_exit = &Decoder::OnError;
            m_errors.emit_message = &Decoder::OnMessage;
            m_input.init_source = [](j_decompress_ptr) {};
            m_input.fill_input_buffer = &Decoder::OnFill;
            m_input.skip_input_data = &Decoder::OnSkip;
            m_input.resync_to_restart = jpeg_resync_to_restart;
            m_input.term_source = [](j_decompress_ptr) {};
            m_progress.progress_monitor = &Decoder::OnProgress;
        }

        ~Decoder() { jpeg_destroy_decompress(&m_jpeg); }
        Decoder(const Decoder&) = delete;
        Decoder& operator=(const Decoder&) = delete;

        std::size_t Read(unsigned char* out, std::size_t count)
        {
            if (!Run(out, count))
            {
                if (m_failure)
                {
                    std::rethrow_exception(std::exchange(m_failure, nullptr));
                }
                throw FormatError(Offset(), "DCT data: " + std::string(m_message));
            }
            return m_read;
        }

        std::uint64_t Offset() const { return m_encoded->Offset(); }

    private:
        /// Everything that may end in longjmp. False if it did.
        bool Run(unsigned char* out, std::size_t count)
        {
            m_read = 0;
            if (setjmp(m_return) != 0)
            {
                return false;
            }
            if (!m_started)
            {
                Start();
            }
            const std::size_t row = static_cast<std::size_t>(m_width) * m_components;
            while (m_read + row <= count && m_jpeg.output_scanline < m_jpeg.output_height)
            {
                JSAMPROW rows[] = {out + m_read};
                m_read += row * jpeg_read_scanlines(&m_jpeg, rows, 1);
            }
            return true;
        }

        void Start()
        {
            m_started = true;
            jpeg_create_decompress(&m_jpeg);
            m_jpeg.src = &m_input;
            m_jpeg.progress = &m_progress;
            m_jpeg.mem->max_memory_to_use = static_cast<long>(m_memory);
            jpeg_read_header(&m_jpeg, TRUE);
            if (m_jpeg.image_width != m_width || m_jpeg.image_height != m_height)
            {
                Fail("the picture's size is not width x height of the preview");
            }
            if (static_cast<unsigned>(m_jpeg.num_components) != m_components)
            {
                Fail("the picture has another number of components than the preview");
            }
            if (m_jpeg.arith_code)
            {
                Fail("arithmetic coding is not part of the filter");
            }
            m_jpeg.out_color_space = m_components == 1 ? JCS_GRAYSCALE : JCS_CMYK;
            jpeg_start_decompress(&m_jpeg);
        }

        static Decoder& Of(j_common_ptr jpeg) { return *static_cast<Decoder*>(jpeg->client_data); }

        [[noreturn]] void Fail(const char* message)
        {
            std::snprintf(m_message, sizeof m_message, "%s", message);
            std::longjmp(m_return, 1);
        }

        [[noreturn]] static void OnError(j_common_ptr jpeg)
        {
            jpeg->err->format_message(jpeg, Of(jpeg).m_message);
            std::longjmp(Of(jpeg).m_return, 1);
        }

        /// A warning is a fault, since libjpeg goes on with invented pixels, but for those about mere form.
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
                got = decoder.m_encoded->Read(decoder.m_block.data(), decoder.m_block.size());
            }
            catch (...)
            {
                decoder.m_failure = std::current_exception();
            }
            if (decoder.m_failure)
            {
                std::longjmp(decoder.m_return, 1);
            }
            if (got == 0)
            {
                decoder.Fail("the picture is cut off");
            }
            decoder.m_input.next_input_byte = decoder.m_block.data();
            decoder.m_input.bytes_in_buffer = got;
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
            if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > mostScans)
            {
                Of(jpeg).Fail("the picture has more scans than any encoder makes");
            }
        }

        std::unique_ptr<ByteSource> m_encoded;
        const std::uint64_t m_width;
        const std::uint64_t m_height;
        const unsigned m_components;
        const std::uint64_t m_memory;
        jpeg_decompress_struct m_jpeg = {};
        jpeg_error_mgr m_errors = {};
        jpeg_source_mgr m_input = {};
        jpeg_progress_mgr m_progress = {};
        std::array<unsigned char, blockSize> m_block = {};
        std::jmp_buf m_return = {};
        char m_message[JMSG_LENGTH_MAX] = {};
        std::exception_ptr m_failure;
        std::size_t m_read = 0;
        bool m_started = false;
    };

    DCTSource::DCTSource(std::unique_ptr<ByteSource> encoded, const Preview& preview)
        : m_decoder(std::make_unique<Decoder>(std::move(encoded), preview))
    {
    }

    DCTSource::~DCTSource() = default;

    std::size_t DCTSource::Read(unsigned char* out, std::size_t count)
    {
        return m_decoder->Read(out, count);
    }

    std::uint64_t DCTSource::Offset() const
    {
        return m_decoder->Offset();
    }
}
