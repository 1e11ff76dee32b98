#pragma once
// The program's icon: the SVG for the desktop's icon theme and a rendering of
// it that the window can show without an SVG image plugin.
#include <QByteArray>
#include <QIcon>

namespace sonorit::ui {

QByteArray Program_Icon_Svg();
QIcon Program_Icon();

}  // namespace sonorit::ui
