#include "ppf/InkColumns.h"

#include "ppf/ScanLineReader.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

namespace Ppf
{
    namespace
    {
        constexpr double FullInk = 255;
        constexpr double PerCent = 100;

        /// Columns times components that are summed at most. A sheet of two metres at 2400 pixels per inch has a
        /// twenty-fifth of it; the sums of as many take 50 MiB.
        constexpr std::uint64_t MostColumns = 5u << 20;

        /// Sums samples of many rows position by position. Rows gather in 16 bits, which the compiler turns into
        /// vector additions, and move to the 64 bits of the inks before they could overflow.
        class PositionSums
        {
        public:
            explicit PositionSums(std::vector<InkColumns>& theInks)
                : inks(theInks)
                , recent(theInks.size() * theInks[0].sums.size())
            {
            }

            void Add(const unsigned char* samples)
            {
                constexpr unsigned RowsBeforeOverflow = 65535 / 255;
                if (recentRows == RowsBeforeOverflow)
                {
                    Flush();
                }
                std::uint16_t* const sums = recent.data();
                const std::size_t count = recent.size();
                for (std::size_t i = 0; i < count; ++i)
                {
                    sums[i] = static_cast<std::uint16_t>(sums[i] + samples[i]);
                }
                ++recentRows;
            }

            /// Moves what has gathered to the inks.
            void Flush()
            {
                const std::size_t count = inks.size();
                for (std::size_t ink = 0; ink < count; ++ink)
                {
                    std::vector<std::uint64_t>& sums = inks[ink].sums;
                    for (std::size_t column = 0; column < sums.size(); ++column)
                    {
                        sums[column] += recent[column * count + ink];
                    }
                }
                std::fill(recent.begin(), recent.end(), std::uint16_t{0});
                recentRows = 0;
            }

        private:
            std::vector<InkColumns>& inks;
            std::vector<std::uint16_t> recent;
            unsigned recentRows = 0;
        };

        /// Sums along the stored columns, for images whose rows run across the sheet.
        void SumColumns(ScanLineReader& rows, std::vector<InkColumns>& inks)
        {
            PositionSums sums(inks);
            while (const unsigned char* row = rows.Next())
            {
                sums.Add(row);
            }
            sums.Flush();
        }

        /// Sums along the stored rows, for images whose rows run up or down the sheet.
        void SumRows(ScanLineReader& rows, std::size_t rowSamples, std::vector<InkColumns>& inks)
        {
            for (std::size_t column = 0; const unsigned char* row = rows.Next(); ++column)
            {
                for (std::size_t ink = 0; ink < inks.size(); ++ink)
                {
                    std::uint64_t sum = 0;
                    for (std::size_t i = ink; i < rowSamples; i += inks.size())
                    {
                        sum += row[i];
                    }
                    inks[ink].sums[column] = sum;
                }
            }
        }
    }

    double InkColumns::Coverage() const
    {
        return MeanBetween(0, static_cast<double>(sums.size()));
    }

    std::vector<double> InkColumns::Zones(const std::vector<double>& edges) const
    {
        std::vector<double> zones;
        for (std::size_t i = 0; i + 1 < edges.size(); ++i)
        {
            zones.push_back(MeanBetween(edges[i], edges[i + 1]));
        }
        return zones;
    }

    /// Mean coverage from `left` to `right`, both in columns.
    double InkColumns::MeanBetween(double left, double right) const
    {
        double ink = 0;
        for (auto i = static_cast<std::size_t>(std::clamp(left, 0.0, static_cast<double>(sums.size())));
             i < sums.size() && static_cast<double>(i) < right; ++i)
        {
            const auto begin = static_cast<double>(i);
            const double share = std::min(right, begin + 1) - std::max(left, begin);
            ink += static_cast<double>(sums[i]) * share;
        }
        return ink / (FullInk * static_cast<double>(rows) * (right - left)) * PerCent;
    }

    std::vector<double> EdgesOfEqualZones(std::uint64_t columns, std::uint64_t count)
    {
        std::vector<double> edges;
        for (std::uint64_t i = 0; i <= count; ++i)
        {
            edges.push_back(static_cast<double>(i) * static_cast<double>(columns) / static_cast<double>(count));
        }
        return edges;
    }

    double CountOfZones(std::uint64_t columns, double width)
    {
        constexpr double Rounding = 1e-6;
        return std::max(1.0, std::ceil(static_cast<double>(columns) / width - Rounding));
    }

    std::vector<double> EdgesOfZones(std::uint64_t columns, double width)
    {
        const auto count = static_cast<std::size_t>(CountOfZones(columns, width));
        std::vector<double> edges;
        edges.reserve(count + 1);
        for (std::size_t i = 0; i < count; ++i)
        {
            edges.push_back(static_cast<double>(i) * width);
        }
        edges.push_back(static_cast<double>(columns));
        return edges;
    }

    Measurement Measure(const Document& document, const Preview& preview)
    {
        const Orientation orientation = preview.OrientationOnSheet();
        const std::uint64_t columns = preview.UprightWidth();
        if (columns * preview.components > MostColumns)
        {
            throw FormatError(
                preview.offset, "preview is " + std::to_string(columns) + " pixels wide, which no sheet needs");
        }
        // First of all, since it holds the size against the data before memory is taken for it.
        ScanLineReader rows(document, preview);
        Measurement measurement;
        std::vector<InkColumns>& inks = measurement.inks;
        inks.resize(preview.components);
        for (InkColumns& ink : inks)
        {
            ink.sums.resize(static_cast<std::size_t>(columns));
            ink.rows = preview.UprightHeight();
        }
        orientation.transposed ? SumRows(rows, static_cast<std::size_t>(preview.RowSamples()), inks)
                               : SumColumns(rows, inks);
        if (orientation.transposed ? orientation.rowsReversed : orientation.columnsReversed)
        {
            for (InkColumns& ink : inks)
            {
                std::reverse(ink.sums.begin(), ink.sums.end());
            }
        }
        measurement.excess = rows.CountExcess();
        return measurement;
    }
}
