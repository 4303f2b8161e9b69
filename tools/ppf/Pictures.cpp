#include "ppf/Pictures.h"

#include "ppf/ScanLineReader.h"

#include <algorithm>

namespace Ppf
{
    namespace
    {
        /// One upright row of a stored picture.
        void CopyUprightRow(
            const Picture& stored, const Orientation& orientation, std::uint64_t y, std::uint64_t width,
            unsigned char* out)
        {
            for (std::uint64_t x = 0; x < width; ++x)
            {
                const std::uint64_t row = orientation.StoredRow(x, y, stored.height);
                const std::uint64_t column = orientation.StoredColumn(x, y, stored.width);
                out[x] = stored.ink[static_cast<std::size_t>(row * stored.width + column)];
            }
        }

        /// A stored picture turned upright.
        Picture Upright(Picture stored, const Orientation& orientation)
        {
            if (orientation.IsUpright())
            {
                return stored;
            }
            Picture upright = stored;
            if (orientation.transposed)
            {
                std::swap(upright.width, upright.height);
            }
            for (std::uint64_t y = 0; y < upright.height; ++y)
            {
                CopyUprightRow(stored, orientation, y, upright.width, upright.ink.data() + y * upright.width);
            }
            return upright;
        }

        /// Adds up squares of pixels, rows of squares at a time.
        class Scaler
        {
        public:
            Scaler(const Preview& thePreview, std::uint64_t theFactor)
                : preview(thePreview)
                , factor(static_cast<std::size_t>(theFactor))
                , columns(static_cast<std::size_t>((thePreview.width + theFactor - 1) / theFactor))
                , sums(columns * thePreview.components)
                , pictures(thePreview.components)
            {
                for (Picture& picture : pictures)
                {
                    picture.width = columns;
                    picture.height = (thePreview.height + theFactor - 1) / theFactor;
                    picture.ink.reserve(columns * static_cast<std::size_t>(picture.height));
                }
            }

            void Add(const unsigned char* row)
            {
                const std::size_t components = pictures.size();
                const auto samples = static_cast<std::size_t>(preview.RowSamples());
                const std::size_t square = factor * components;
                for (std::size_t begin = 0, column = 0; begin < samples; begin += square, ++column)
                {
                    const std::size_t end = std::min(begin + square, samples);
                    for (std::size_t component = 0; component < components; ++component)
                    {
                        std::uint64_t sum = 0;
                        for (std::size_t i = begin + component; i < end; i += components)
                        {
                            sum += row[i];
                        }
                        sums[column * components + component] += sum;
                    }
                }
                if (++rows == factor)
                {
                    EndRow();
                }
            }

            std::vector<Picture> Pictures()
            {
                if (rows > 0)
                {
                    EndRow();
                }
                return std::move(pictures);
            }

        private:
            void EndRow()
            {
                const std::size_t components = pictures.size();
                for (std::size_t column = 0; column < columns; ++column)
                {
                    const auto width = static_cast<std::size_t>(preview.width);
                    const std::uint64_t pixels = std::min(factor, width - column * factor) * rows;
                    for (std::size_t component = 0; component < components; ++component)
                    {
                        std::uint64_t& sum = sums[column * components + component];
                        pictures[component].ink.push_back(static_cast<unsigned char>((sum + pixels / 2) / pixels));
                        sum = 0;
                    }
                }
                rows = 0;
            }

            const Preview& preview;
            std::size_t factor;
            std::size_t columns;
            std::size_t rows = 0;
            std::vector<std::uint64_t> sums;
            std::vector<Picture> pictures;
        };

        /// One component of a row, the other way round if wanted.
        void CopyComponent(
            const unsigned char* row, const Preview& preview, unsigned component, bool isReversed, unsigned char* out)
        {
            const unsigned char* from = row + component;
            for (std::uint64_t i = 0; i < preview.width; ++i, from += preview.components)
            {
                out[isReversed ? preview.width - 1 - i : i] = *from;
            }
        }
    }

    void DrawUpright(
        const Document& document, const Preview& preview, unsigned component,
        const std::function<void(unsigned char*)>& takeRow)
    {
        const Orientation orientation = preview.OrientationOnSheet();
        ScanLineReader rows(document, preview);
        std::vector<unsigned char> line(static_cast<std::size_t>(preview.UprightWidth()));
        if (!orientation.transposed && !orientation.rowsReversed)
        {
            while (const unsigned char* row = rows.Next())
            {
                CopyComponent(row, preview, component, orientation.columnsReversed, line.data());
                takeRow(line.data());
            }
            return;
        }
        Picture stored = {preview.width, preview.height, {}};
        stored.ink.resize(static_cast<std::size_t>(preview.width * preview.height));
        unsigned char* out = stored.ink.data();
        for (; const unsigned char* row = rows.Next(); out += preview.width)
        {
            CopyComponent(row, preview, component, false, out);
        }
        for (std::uint64_t y = 0; y < preview.UprightHeight(); ++y)
        {
            CopyUprightRow(stored, orientation, y, line.size(), line.data());
            takeRow(line.data());
        }
    }

    std::vector<Picture> ScaledPictures(const Document& document, const Preview& preview, std::uint64_t longest)
    {
        ScanLineReader rows(document, preview);
        const std::uint64_t longer = std::max(preview.width, preview.height);
        Scaler scaler(preview, (longer + longest - 1) / longest);
        while (const unsigned char* row = rows.Next())
        {
            scaler.Add(row);
        }
        std::vector<Picture> pictures = scaler.Pictures();
        for (Picture& picture : pictures)
        {
            picture = Upright(std::move(picture), preview.OrientationOnSheet());
        }
        return pictures;
    }
}
