#include "program_icon.h"

#include <QFile>
#include <QImageReader>

namespace sonorit::ui {

QByteArray Program_Icon_Svg()
{
    QFile f(QStringLiteral(":/icons/zevsonorit.svg"));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QIcon Program_Icon()
{
    QIcon icon(QStringLiteral(":/icons/zevsonorit.png"));
    // Sharp at every size where the SVG plugin happens to be installed.
    if (QImageReader::supportedImageFormats().contains("svg"))
        icon.addFile(QStringLiteral(":/icons/zevsonorit.svg"));
    return icon;
}

}  // namespace sonorit::ui
