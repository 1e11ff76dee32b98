#pragma once
// The font of the synced lyrics: the largest size at which the longest line
// just spans 80% of the picture, with the four labels' heights and tops. Pure
// arithmetic over a text-measuring callback, so any toolkit (and a test) can
// answer it. Lengths are in the measure's own unit.
#include <QString>
#include <array>

namespace sonorit {

class TextMeasure {
public:
    virtual ~TextMeasure() = default;
    // The size the toolkit really gives when `requested` is asked for
    // (fonts offer only some sizes).
    virtual double applySize(double requested) = 0;
    virtual double textWidth(double size, const QString& text) = 0;
    virtual double textHeight(double size, const QString& text) = 0;
};

struct LyricLayout {
    double fontSize = 8;
    int labelHeight = 0;       // TextHeight("A") * 1.11
    std::array<int, 4> tops{};  // Label1(0..3)
};

// `offset` is the shift of the white and grey lines from their shadows (10 in
// the design's unit).
LyricLayout Fit_Lyric_Font(TextMeasure& measure, const QString& longestLine, double imageWidth,
                           double imageHeight, int offset = 10);

}  // namespace sonorit
