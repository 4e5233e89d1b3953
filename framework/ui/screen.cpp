#include "framework/ui/screen.h"

#include <cmath>

namespace tessaly {

namespace {

constexpr double kPixelsPerUnitX = 1.65;
constexpr double kPixelsPerUnitY = 1.72;

} // namespace

int dialogUnitsToPixelsX(int units) {
    return int(std::lround(units * kPixelsPerUnitX));
}

int dialogUnitsToPixelsY(int units) {
    return int(std::lround(units * kPixelsPerUnitY));
}

QRect dialogUnitsToPixels(int x, int y, int width, int height) {
    const int left = dialogUnitsToPixelsX(x);
    const int top = dialogUnitsToPixelsY(y);
    // Map both edges so that neighbouring controls neither overlap nor leave a gap.
    return QRect(QPoint(left, top),
                 QPoint(dialogUnitsToPixelsX(x + width) - 1, dialogUnitsToPixelsY(y + height) - 1));
}

const QFont& smallFont() {
    static const QFont font = [] {
        QFont f(QStringLiteral("DejaVu Sans"));
        f.setPixelSize(11);
        return f;
    }();
    return font;
}

} // namespace tessaly
