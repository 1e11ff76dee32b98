#include "strip.h"

#include <QIODevice>

#include "id3v2_writer_target.h"
#include "mpeg_info.h"

namespace sonorit {

bool Strip_Tag2(ByteSource& source, QIODevice& target)
{
    try {
        Mpeg_Info info;
        const qint64 audio = Find_First_Frame(source, info);
        return audio != 0 && Copy_Source_Range(source, audio, source.size() - (audio - 1), target);
    } catch (...) {
        return false;
    }
}

bool Strip_Tag2(const QString& source, const QString& target)
{
    return Build_From_Audio(source, target, [&](ByteSource& in, QIODevice& out) { return Strip_Tag2(in, out); });
}

}  // namespace sonorit
