#include "ppf/Orientation.h"

#include <cmath>

namespace Ppf
{
    bool IsOrthogonal(const Matrix& matrix)
    {
        const auto [a, b, c, d, tx, ty] = matrix;
        const bool straight = a != 0 && d != 0 && b == 0 && c == 0;
        const bool turned = a == 0 && d == 0 && b != 0 && c != 0;
        return straight || turned;
    }

    Orientation OrientationOf(const Matrix& matrix)
    {
        const auto [a, b, c, d, tx, ty] = matrix;
        Orientation orientation;
        orientation.transposed = a == 0;
        // The unit square's second axis points up, upright rows count down: so what falls with it is not reversed.
        orientation.columnsReversed = orientation.transposed ? c > 0 : a < 0;
        orientation.rowsReversed = orientation.transposed ? b < 0 : d > 0;
        return orientation;
    }

    bool Spans(const Matrix& matrix, std::uint64_t width, std::uint64_t height)
    {
        const auto [a, b, c, d, tx, ty] = matrix;
        const double x = a + c;
        const double y = b + d;
        return std::abs(x) == static_cast<double>(width) && std::abs(y) == static_cast<double>(height) &&
               tx == (x < 0 ? -x : 0) && ty == (y < 0 ? -y : 0);
    }
}
