#include "ppf/Pictures.h"

#include "ppf/ScanLineReader.h"

#include <algorithm>
#include <utility>

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

    Scaler::Scaler(std::uint64_t width, std::uint64_t height, std::uint64_t longest)
        : factor(static_cast<std::size_t>((std::max(width, height) + longest - 1) / longest))
        , columns(static_cast<std::size_t>(width))
        , sums((columns + factor - 1) / factor)
    {
        picture.width = sums.size();
        picture.height = (height + factor - 1) / factor;
        picture.ink.reserve(sums.size() * static_cast<std::size_t>(picture.height));
    }

    void Scaler::Add(const unsigned char* row)
    {
        for (std::size_t begin = 0, i = 0; begin < columns; begin += factor, ++i)
        {
            const std::size_t end = std::min(begin + factor, columns);
            std::uint64_t sum = 0;
            for (std::size_t column = begin; column < end; ++column)
            {
                sum += row[column];
            }
            sums[i] += sum;
        }
        if (++rows == factor)
        {
            EndRow();
        }
    }

    Picture Scaler::Finish()
    {
        if (rows > 0)
        {
            EndRow();
        }
        return std::move(picture);
    }

    void Scaler::EndRow()
    {
        for (std::size_t i = 0; i < sums.size(); ++i)
        {
            const std::uint64_t pixels = std::min(factor, columns - i * factor) * rows;
            picture.ink.push_back(static_cast<unsigned char>((sums[i] + pixels / 2) / pixels));
        }
        std::fill(sums.begin(), sums.end(), 0);
        rows = 0;
    }
}
