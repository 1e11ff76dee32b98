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
    try {
        if (Same_File(source, target))
            return false;
        FileSource in(source);
        // Without audio the target is not touched at all.
        if (!in.isOpen() || !Is_Mpeg(in))
            return false;
        return Build_New_File(target, [&](QIODevice& out) { return Strip_Tag2(in, out); });
    } catch (...) {
        return false;
    }
}

}  // namespace sonorit
