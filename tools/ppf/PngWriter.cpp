#include "ppf/PngWriter.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <string>

namespace Ppf
{
    namespace
    {
        /// Pixels per metre for pixels per inch, within what the chunk can hold.
        png_uint_32 PerMetre(double perInch)
        {
            constexpr double MetresPerInch = 0.0254;
            const double rounded = std::round(perInch / MetresPerInch);
            return static_cast<png_uint_32>(std::min(std::max(rounded, 1.0), double{PNG_UINT_31_MAX}));
        }

        int ColourType(PngWriter::Colours colours)
        {
            switch (colours)
            {
            case PngWriter::Colours::Grey:
                return PNG_COLOR_TYPE_GRAY;
            case PngWriter::Colours::Rgb:
                return PNG_COLOR_TYPE_RGB;
            default:
                return PNG_COLOR_TYPE_PALETTE;
            }
        }
    }

    /// Between setjmp and longjmp no object with a destructor is alive but this one.
    struct PngWriter::State
    {
        explicit State(std::ostream& target)
            : stream(target)
        {
            png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, &State::OnError, &State::OnWarning);
            info = png == nullptr ? nullptr : png_create_info_struct(png);
            if (info == nullptr)
            {
                png_destroy_write_struct(&png, &info);
                throw std::bad_alloc();
            }
            png_set_write_fn(png, this, &State::OnWrite, &State::OnFlush);
        }
        ~State() { png_destroy_write_struct(&png, &info); }
        State(const State&) = delete;
        State& operator=(const State&) = delete;

        template <typename Step>
        void Run(const Step& step)
        {
            if (!Try(step))
            {
                throw std::runtime_error(message);
            }
        }

        template <typename Step>
        bool Try(const Step& step)
        {
            if (setjmp(png_jmpbuf(png)) != 0)
            {
                return false;
            }
            step();
            return true;
        }

        static void OnError(png_structp png, png_const_charp text)
        {
            State& state = *static_cast<State*>(png_get_error_ptr(png));
            std::snprintf(state.message, sizeof state.message, "PNG: %s", text);
            png_longjmp(png, 1);
        }

        static void OnWarning(png_structp, png_const_charp) {}

        static void OnWrite(png_structp png, png_bytep bytes, std::size_t count)
        {
            State& state = *static_cast<State*>(png_get_io_ptr(png));
            state.stream.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
        }

        static void OnFlush(png_structp) {}

        std::ostream& stream;
        png_structp png = nullptr;
        png_infop info = nullptr;
        char message[200] = {};
    };

    PngWriter::PngWriter(
        std::ostream& stream, std::uint64_t width, std::uint64_t height, Colours colours,
        const std::optional<Resolution>& resolution, const Palette& palette)
        : state(std::make_unique<State>(stream))
    {
        state->Run(
            [&, png = state->png, info = state->info]
            {
                png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
                png_set_IHDR(
                    png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
                    ColourType(colours), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
                if (colours == Colours::Palette)
                {
                    std::array<png_color, std::tuple_size<Palette>::value> entries = {};
                    for (std::size_t i = 0; i < entries.size(); ++i)
                    {
                        entries[i] = {palette[i][0], palette[i][1], palette[i][2]};
                    }
                    png_set_PLTE(png, info, entries.data(), static_cast<int>(entries.size()));
                }
                if (resolution)
                {
                    png_set_pHYs(png, info, PerMetre(resolution->x), PerMetre(resolution->y), PNG_RESOLUTION_METER);
                }
                png_write_info(png, info);
            });
    }

    PngWriter::~PngWriter() = default;

    void PngWriter::WriteRow(const unsigned char* samples)
    {
        state->Run([&] { png_write_row(state->png, samples); });
    }

    void PngWriter::Finish()
    {
        state->Run([&] { png_write_end(state->png, state->info); });
    }
}
