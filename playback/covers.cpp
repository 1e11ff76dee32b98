#include "covers.h"

#include <QFile>

#include "shell/helpers.h"
#include "tags/byte_source.h"
#include "tags/frame_names.h"
#include "tags/id3v2_frames.h"
#include "tags/tag2_header.h"

namespace sonorit {

bool Extract_Cover(const QString& path, const QString& target)
{
    FileSource src(path);
    const auto tag = Find_Tag2(src);
    if (!tag)
        return false;
    const qint64 end = tag->End();
    qint64 p = tag->firstFramePosition();
    while (p < end) {
        const auto frame = Read_Frame_Header(src, p);
        if (!frame)
            return false;
        const FrameClass kind = Classify_Frame(frame->Frame_ID);
        if (kind == FrameClass::Stop)
            return false;
        if (frame->Frame_ID == "APIC")
            return Extract_Picture(src, p, target, CoverWrite::Replace);
        p += qint64(frame->Frame_Size) + 10;
    }
    return false;
}

QString Playing_Cover_Path(const AppState& app)
{
    return app.Data_Folder() + QStringLiteral("Playing.jpg");
}

QString Load_Play_Cover(PlaybackContext& c, const QString& path)
{
    const QString target = Playing_Cover_Path(c.app);
    QFile::remove(target);
    Extract_Cover(path, target);
    const bool found = File_Exists(target);
    const QString shown = found ? target : QString();
    c.view.showPlayCover(shown);
    if (c.play.Cover_Window_Open)
        c.view.setImageSaveEnabled(found);
    return shown;
}

QString Load_Tag_Cover(PlaybackContext& c)
{
    const QString cover = c.app.Data_Folder() + QStringLiteral("Cover.jpg");
    const QString shown = File_Exists(cover) ? cover : QString();
    c.view.showTagCover(shown);
    return shown;
}

}  // namespace sonorit
