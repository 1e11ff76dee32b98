#include "tag_state.h"

namespace sonorit {

QString TagStamp()
{
    return QStringLiteral("Tagged with ZEV's MP3 Sonorit (www.zevsonorit.net)");
}

}  // namespace sonorit
