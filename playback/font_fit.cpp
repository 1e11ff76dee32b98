#include "font_fit.h"

#include <cmath>

namespace sonorit {

LyricLayout Fit_Lyric_Font(TextMeasure& measure, const QString& longestLine, double imageWidth,
                           double imageHeight, int offset)
{
    // Sizes walk upward from 8; when the toolkit gives the same whole size
    // again, the step grows, so that fonts with few sizes are passed quickly.
    double size = measure.applySize(8);
    long long whole = static_cast<long long>(std::floor(size));
    double step = 1;
    const double limit = imageWidth * 0.8;
    for (int guard = 0; guard < 4096; ++guard) {
        size = measure.applySize(size + step);
        const long long now = static_cast<long long>(std::floor(size));
        if (now == whole)
            step += 1;
        else
            whole = now;
        if (measure.textWidth(size, longestLine) > limit)
            break;
    }
    LyricLayout layout;
    layout.fontSize = size;
    layout.labelHeight = static_cast<int>(measure.textHeight(size, QStringLiteral("A")) * 1.11);
    const int top = static_cast<int>(std::floor(imageHeight * 0.7));
    layout.tops = {top, top + layout.labelHeight, top + offset, top + layout.labelHeight + offset};
    measure.applySize(8);
    return layout;
}

}  // namespace sonorit
